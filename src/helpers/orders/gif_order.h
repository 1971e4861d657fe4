// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"

namespace quillon::helpers {

// What is done to the frames of an animated GIF, as the words of a call state it.
struct GifOrder {
  enum class Kind { Cut, RemoveLogo };
  Kind kind = Kind::Cut;
  std::string source;
  std::string target;
  base::Rect window = {};  // in pixels of the screen
};

// Returns the order if the words are one of these calls, which state a rectangle R as x=X:y=Y:w=W:h=H:
//   -i SOURCE -vf crop=R -y -q:v 0 TARGET
//   -i SOURCE -i PALETTE -filter_complex crop=R,scale=-1:-1:flags=lanczos[x];[x][1:v]paletteuse -y -q:v 0 TARGET
//   the same with delogo=R in the place of crop=R
// The numbers are whole and not negative. Source and target are absolute paths. The palette is not used, because the
// colours of the source are kept. Returns nothing for any other words.
std::optional<GifOrder> ReadGifOrder(const std::vector<std::string>& words);

}  // namespace quillon::helpers
