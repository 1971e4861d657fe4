// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "base/rect.h"
#include "host/status.h"

namespace quillon::helpers {

// The properties of a JPEG that a PDF needs to embed it unchanged.
struct JpegFacts {
  int width = 0;
  int height = 0;
  int components = 0;     // 1 grey, 3 RGB or YCbCr, 4 CMYK
  bool inverted = false;  // CMYK with 0 for full ink, as an Adobe marker indicates
  int dpi = 0;            // 0 if not given
  int orientation = 1;    // EXIF orientation, 1..8; no PDF viewer applies it to an embedded picture
  std::string profile;    // ICC, "" if there is none or it does not match the components

  // Returns the size of the picture when its orientation is applied.
  base::Size Upright() const { return orientation >= 5 ? base::Size{height, width} : base::Size{width, height}; }
};

// Reads the properties from the bytes of a complete file.
// Errors: Damaged if it is not a JPEG or is truncated, Unsupported if PDF cannot embed it (arithmetic coding, lossless,
// more than 8 bits).
host::Status ReadJpegFacts(std::string_view bytes, JpegFacts& facts);

}  // namespace quillon::helpers
