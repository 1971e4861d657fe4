// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/files/files.h"

namespace quillon::helpers {

// A page as it is seen: turned, in 1/72 inch.
struct PdfPageFacts {
  double width = 0;
  double height = 0;
  double unit = 1;      // of the page's own numbers, in 1/72 inch
  double imageDpi = 0;  // resolution that the largest image on it has if it fills the page; 0 without images
};

// What a PDF tells of its pages, all of them.
host::Status ReadPdfFacts(const host::Files& files, const std::string& path, std::vector<PdfPageFacts>& pages);

}  // namespace quillon::helpers
