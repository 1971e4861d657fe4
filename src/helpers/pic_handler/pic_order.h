// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// A command line of ImageMagick's convert: a picture, options, and the picture to write.
struct PicOrder {
  std::string source;
  std::string target;
  std::vector<std::string> options;  // the words between source and target

  // The options that this program understands.
  bool plain = true;  // there are no others
  std::vector<std::string> profiles;
  int quality = 0;  // 1 to 100, 0 if not given
  int dpi = 0;      // 0 if not given
};
host::Status ReadPicOrder(const std::vector<std::string>& words, PicOrder& order);

// Writes a PDF with one page, as large as the picture is at its resolution: that of the order, otherwise that of the
// picture, otherwise 72 dpi.
// A JPEG is embedded byte for byte. Any other picture is encoded as JPEG with the quality of the order, 92 by default.
host::Status MakePdf(Helper& helper, const PicOrder& order);

// Runs ImageMagick for an order.
// It works on files with plain names in the program folder, because it interprets special characters in file names. The
// result is then copied to its target.
host::Status RunConvert(Helper& helper, const PicOrder& order);

}  // namespace quillon::helpers
