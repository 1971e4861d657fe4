// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"
#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Paints over a region of every frame of an animated GIF, so that a logo there disappears, and keeps the size.
// The colours come from the pixels around the region, as a player shows them with that frame: each pixel gets the mean
// of the four that lie left, right, above and below at the edge, weighted by nearness. Edges of the screen and
// transparent pixels have no weight. A pixel without a colour around it becomes transparent.
//
// Frames that do not touch the region are copied. Other frames get a local table, in which new colours replace entries
// that no pixel of the frame uses; if there are too few of those, the nearest entry is used. Everything else is kept as
// CutGif keeps it.
// The pixels of the region and around it, and those of one frame, are held in memory.
//
// region is in pixels of the screen; parts outside it are cut off.
// Other: nothing of the region is left, or it covers the whole screen. Unsupported: pixels must become transparent, and
// their frame uses all 256 colours elsewhere. TooLarge: a region, or a frame that touches it, above
// limits.pixelsInMemory. Further errors are those of GifReader and of sink.
Status RemoveLogo(Bytes& bytes, base::Rect region, const Limits& limits, const ByteSink& sink);

}  // namespace quillon::imaging
