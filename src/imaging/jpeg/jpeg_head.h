// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/rect.h"

namespace quillon::imaging {

// What the segments before the picture data of a JPEG file hold. The views point into the bytes that were parsed.
struct JpegHead {
  enum class Unit { None = 0, Inch = 1, Centimetre = 2 };

  base::Size frame;  // width and height of the first frame header, in pixels; empty until one was read
  bool avi = false;  // a frame of a video: the picture may have twice as many rows, of which the frame has every other
  bool jfif = false;
  Unit unit = Unit::None;  // of density; None: the densities are only a ratio
  int densityX = 1;
  int densityY = 1;
  bool adobe = false;                 // has an Adobe marker: CMYK values are stored inverted
  std::string_view exif;              // TIFF block of the first EXIF segment, without "Exif\0\0"; empty: none
  std::vector<std::string_view> icc;  // whole payloads of the ICC profile segments, in file order

  // Dots per inch of JFIF, else of EXIF, else 0.
  int Dpi() const;
  // The ICC profile joined of its numbered segments; "" if one is missing.
  std::string Profile() const;
};

enum class HeadState {
  Complete,  // everything up to the picture data was there
  More,      // bytes ends before the picture data begins
  NotJpeg,   // does not begin as a JPEG file
  Broken     // the segments cannot be followed
};

// Parses the beginning of a file. With Complete head is valid as a whole, otherwise as far as the segments were read.
HeadState ParseJpegHead(std::string_view bytes, JpegHead& head);

// The quality 1..100 that the luminance table of a JPEG was made for, 0 if bytes hold no such table. The beginning of a
// file is enough.
int JpegQuality(std::string_view bytes);

}  // namespace quillon::imaging
