// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "host/files/files.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// How to make one picture from a source that may be far larger than memory.
// The steps run in the order of the fields: check, crop, scale, rotate, convert to grey, encode.
struct HugeOrder {
  std::string source;
  std::string target;             // the extension selects the format
  base::Size minimum;             // a source with a smaller side is refused
  std::optional<base::Rect> cut;  // clipped to the picture, not padded
  base::Size size;                // size to scale to; empty keeps the size
  bool shrink = true;             // scale if the picture is larger than size
  bool enlarge = true;  // scale if it is smaller; larger on one side and smaller on the other needs both flags
  double angle = 0;     // degrees, positive counter-clockwise, about the centre, on white
  bool grey = false;
  int quality = 98;  // jpeg only, 0..100
};

// Carries out the order and replaces target with the finished file.
// Memory: a crop holds a few rows, or one row of tiles of a tiled TIFF. A JPEG is decoded to little more than the
// wanted size. Only a picture that is rotated is held as a whole: in memory, or in a TileStore above
// Limits::pixelsInMemory.
// Damage outside the crop is not looked for.
// ICC profile, resolution and orientation are copied, EXIF is not.
// Other: the crop misses the picture. Unsupported: the source is no picture, or smaller than minimum.
// If the call fails, an older target is discarded, unless it is the source or must not be replaced.
Status MakeFromHuge(host::Files& files, const HugeOrder& order, const Limits& limits);

}  // namespace quillon::imaging
