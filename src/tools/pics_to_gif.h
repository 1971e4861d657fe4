// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/rect.h"
#include "tools/tools.h"

namespace quillon::tools {

// A picture that becomes a frame of an animated gif, and its place on the canvas in pixels.
struct GifFrame {
  std::string picture;
  int left = 0;
  int top = 0;
  int milliseconds = 100;
};

// Assembles the frames into the animated gif out with PicsToAniGif. show is called with the number of finished frames
// until the helper has finished all of them. The list of frames is {App}/Gif.txt; the folder {App}/GifTmp is empty when
// the helper starts, and removed afterwards.
// Succeeds if out is a new picture. An older file at out that was not replaced is moved to the trash, unless it is one
// of the pictures.
host::Status PicsToGif(Tools& tools, const std::vector<GifFrame>& frames, base::Size canvas, const std::string& out,
                       const std::function<void(int)>& show);

}  // namespace quillon::tools
