// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "host/files/files.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// What is made of a picture that may be far larger than memory. Steps are taken in the order of the fields.
struct HugeOrder {
  std::string source;
  std::string target;             // its extension tells the format
  base::Size least;               // a source that is smaller on a side is refused
  std::optional<base::Rect> cut;  // as far as it lies inside the picture; what lies outside is left off, not filled
  base::Size size;                // to scale to; empty leaves the scale as it is
  bool shrink = true;             // whether what is larger than size is scaled
  bool enlarge = true;            // whether what is smaller is; what is neither is scaled with both
  double angle = 0;               // degrees, counter-clockwise, about the centre, on white
  bool grey = false;
  int quality = 98;  // of a jpeg, 0..100
};

// Writes the target. A cut decodes no more than it needs and holds some rows at most (of a tiled tiff, one row of
// tiles); a jpeg that is scaled down is decoded to little more than the size wanted; only a picture that is turned is
// held whole, above the limit of memory in a nameless file of the folder $TMPDIR. The rest of a source beside a cut is
// not looked at, so damage there does not show. ICC profile, resolution and orientation go along, EXIF does not.
//
// Other: the cut misses the picture. Unsupported: no picture, or smaller than least. A target that stood there before
// does not outlive a failure (see DiscardStaleOutput).
Status MakeFromHuge(host::Files& files, const HugeOrder& order, const Limits& limits);

}  // namespace quillon::imaging
