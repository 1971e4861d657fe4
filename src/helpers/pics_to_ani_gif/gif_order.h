// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "base/rect.h"
#include "helpers/runtime/helper.h"
#include "imaging/codecs/animation.h"

namespace quillon::helpers {

struct GifOrder {
  std::string target;
  base::Size canvas;
  std::vector<imaging::Frame> frames;
};

// The fields of the call: working folder, 0, 0, 98, 0, width and height of the picture, milliseconds a frame (100
// without), target ("Tmp.gif" in the working folder without). The frames stand in "Gif.txt" of the working folder, else
// of the program folder, a line each: path, then, each behind a tab and each may be missing, left, top, milliseconds.
// A path that is not absolute lies in "GifTmp" of the working folder.
host::Status ReadGifOrder(Helper& helper, GifOrder& order);

}  // namespace quillon::helpers
