// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "helpers/pdf/page_box.h"
#include "host/files/files.h"

namespace quillon::helpers {

// Crops the margins of every page by changing its page boxes only: text, links, outlines and everything else are kept.
// The media box and the crop box become the remaining part; other boxes are clipped to it.
// progress is called with the number of finished pages and of all pages.
// source and target may be the same file, unless source is damaged so that qpdf had to repair it.
host::Status CutPdf(host::Files& files, const std::string& source, const std::string& target, const Margins& margins,
                    const std::function<void(int, int)>& progress);

}  // namespace quillon::helpers
