// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/rect.h"
#include "host/files/files.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// One frame of an animation.
struct Frame {
  std::string path;  // picture file; its first frame or page
  int left = 0;      // position of the top left corner on the canvas, in pixels; may be negative
  int top = 0;
  int milliseconds = 100;  // how long the frame is shown; GIF stores hundredths of a second
};

// Writes the frames as a GIF that repeats forever. Frames are not scaled.
// The part of the canvas that a frame leaves free is transparent, as are its own transparent pixels.
// One frame is held in memory at a time. done receives the number of frames read so far, before each frame and at the
// end.
// A frame that cannot be read fails the whole call, with its error.
// Other: no frames, or an empty canvas.
// TooLarge: a side above 65535, or the canvas height times the number of frames above the limit of libvips.
Status WriteAnimation(const host::Files& files, const std::vector<Frame>& frames, base::Size canvas,
                      const Limits& limits, const std::function<void(int)>& done, host::Draft& draft);

}  // namespace quillon::imaging
