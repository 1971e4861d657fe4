// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "base/rect.h"

// Reads and edits EXIF blocks. A block here is the TIFF structure that follows "Exif\0\0" in the JPEG segment.
// Blocks come from untrusted files: every offset and count is checked, and what cannot be followed is left unchanged.
namespace quillon::imaging {

// The tags of a block that a picture needs to be shown.
struct ExifFacts {
  int orientation = 1;  // 1..8; 1 if the tag is missing or invalid
  int dpi = 0;          // horizontal, dots per inch, rounded to nearest; 0 if there is none
};

// Returns the facts of a block, with the defaults for everything that cannot be read.
ExifFacts ReadExif(std::string_view block);

// Returns the block for a crop of size pixels:
//   - tags with the pixel dimensions are set to size,
//   - dpi above 0 is written to the resolution tags that exist; none are added,
//   - the thumbnail directory is unlinked,
//   - its picture and every other embedded JPEG (previews in maker notes) is overwritten with zeros, or removed if it
//     is the end of the block.
// Nothing else moves, so the offsets inside maker notes stay valid. Empty if the block is not a TIFF structure.
std::string CutExif(std::string_view block, base::Size size, int dpi);

// Returns the block with its orientation set to that value, 1..8, if it has one.
std::string OrientedExif(std::string_view block, int orientation);
// Used after a picture was rotated.
inline std::string UprightExif(std::string_view block) { return OrientedExif(block, 1); }

// Returns a new block with the orientation, unless it is 1, and the resolution in dpi, unless it is 0.
// Empty if both are missing.
std::string MinimalExif(int orientation, int dpi);

}  // namespace quillon::imaging
