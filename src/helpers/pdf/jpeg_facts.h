// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "host/status.h"

namespace quillon::helpers {

// What a PDF has to know of a JPEG that it takes in as it is.
struct JpegFacts {
  int width = 0;
  int height = 0;
  int components = 0;     // 1 grey, 3 RGB or YCbCr, 4 CMYK
  bool inverted = false;  // CMYK that counts light, as an Adobe marker tells
  int dpi = 0;            // 0: not told
  std::string profile;    // ICC, "" for none or where it is not for these colours
};

// From the bytes of a whole file. Damaged: no JPEG, or cut off. Unsupported: a kind that PDF does not take (arithmetic
// coding, lossless, more than 8 bits).
host::Status ReadJpegFacts(std::string_view bytes, JpegFacts& facts);

}  // namespace quillon::helpers
