// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// A command line of ImageMagick's convert, limited to what the program orders: a picture, options, and the picture to
// write.
struct PicOrder {
  std::string source;
  std::string target;
  std::vector<std::string> profiles;
  int quality = 0;  // 1 to 100, 0 if not given
  int dpi = 0;      // 0 if not given
};

// Reads the words of the helper. Any option but -profile, -quality, -density, and those that do not affect the results
// (-interlace, -units, -depth, -colorspace, -verbose), is a usage error. So is a profile that does not lie directly in
// the folder ColorConfigs of the program.
host::Status ReadPicOrder(const Helper& helper, PicOrder& order);

// Writes a PDF with one page, as large as the picture is at its resolution: that of the order, otherwise that of the
// picture, otherwise 72 dpi.
// A JPEG is embedded byte for byte. Any other picture is encoded as JPEG with the quality of the order, 92 by default.
host::Status MakePdf(Helper& helper, const PicOrder& order);

}  // namespace quillon::helpers
