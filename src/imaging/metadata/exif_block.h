// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "base/rect.h"

namespace quillon::imaging {

// EXIF blocks here are the TIFF structure that follows "Exif\0\0" in the JPEG segment. Blocks come from strangers:
// every offset and count is checked, and what cannot be followed is left as it is.

struct ExifFacts {
  int orientation = 1;  // 1..8
  int dpi = 0;          // horizontal, dots per inch, nearest integer; 0: not told
};

ExifFacts ReadExif(std::string_view block);

// The block for a cut of size pixels: tags that tell the pixel dimensions are put right; dpi above 0 goes into the
// resolution tags that are there. The thumbnail directory is unlinked, and its picture and every JPEG stream inside
// the block (previews in maker notes) are overwritten with zeros or left off at the end. Nothing else moves, so maker
// notes stay readable. Empty when the block is no TIFF structure.
std::string CutExif(std::string_view block, base::Size size, int dpi);

// The block of a picture that was turned: its orientation, where it tells one, becomes 1.
std::string UprightExif(std::string_view block);

// A block with just the orientation (unless it is 1) and the resolution (unless it is 0); empty when both are absent.
std::string MinimalExif(int orientation, int dpi);

}  // namespace quillon::imaging
