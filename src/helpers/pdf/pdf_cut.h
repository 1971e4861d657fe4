// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "helpers/pdf/page_box.h"
#include "host/files/files.h"

namespace quillon::helpers {

// Takes the margins off every page by its boxes alone: text stays text, and links, outlines and everything else stay.
// The media box and the crop box become what is left; the other boxes are cut to it. progress is told pages done and
// all pages. source and target may be the same file; a source that had to be repaired to be read is then refused.
host::Status CutPdf(host::Files& files, const std::string& source, const std::string& target, const Margins& margins,
                    const std::function<void(int, int)>& progress);

}  // namespace quillon::helpers
