// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/files/files.h"

namespace quillon::helpers {

// A page as displayed, that is, rotated. Sizes are in 1/72 inch.
struct PdfPageFacts {
  double width = 0;
  double height = 0;
  double unit = 1;      // the unit of the page's own coordinates, in 1/72 inch
  double imageDpi = 0;  // the resolution of the largest image if it fills the page, 0 if there are no images
};

// Reads the properties of all pages of a PDF. Fails with Damaged if it has none.
host::Status ReadPdfFacts(const host::Files& files, const std::string& path, std::vector<PdfPageFacts>& pages);

}  // namespace quillon::helpers
