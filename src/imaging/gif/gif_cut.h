// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"
#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Cuts every frame of an animated GIF to a window, in the indices of its palettes: no colour is computed, so each frame
// of the result, drawn on the frames before it, has exactly the pixels of the source in the window.
// Kept: colour tables, transparency, delays, disposal, the number of repetitions, comments and all other extensions but
// plain text, which no program draws. A frame outside the window becomes one transparent pixel with its delay.
// An interlaced frame is stored without interlacing. A missing trailer is added.
//
// A row is held in memory; of an interlaced frame its part in the window. The frames are read to their ends, so that
// damage outside the window is found too.
// window is in pixels of the screen; parts outside the screen are cut off.
// Other: nothing of the window is left. TooLarge: sides above the limits, or an interlaced frame above
// limits.pixelsInMemory. Further errors are those of GifReader and of sink.
Status CutGif(Bytes& bytes, base::Rect window, const Limits& limits, const ByteSink& sink);

}  // namespace quillon::imaging
