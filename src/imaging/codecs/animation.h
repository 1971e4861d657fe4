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

// A picture on its way into an animation: its upper left corner on the canvas, and how long it stands.
struct Frame {
  std::string path;
  int left = 0;
  int top = 0;
  int milliseconds = 100;
};

// Writes the frames as a GIF that repeats for ever. Frames are not scaled; what they leave of the canvas, and what is
// transparent in them, is transparent. One frame is held at a time. done is told the number of frames taken so far.
// A frame that cannot be read fails the whole. TooLarge: sides above 65535, or the canvas times the frames too high.
Status WriteAnimation(const host::Files& files, const std::vector<Frame>& frames, base::Size canvas,
                      const Limits& limits, const std::function<void(int)>& done, host::Draft& draft);

}  // namespace quillon::imaging
