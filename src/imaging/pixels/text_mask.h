// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "base/colour.h"
#include "base/rect.h"
#include "imaging/image.h"
#include "imaging/types.h"

namespace quillon::imaging {

// A line of text as the desktop's font draws it: how much each pixel is covered, 0 to 255, row by row.
struct TextMask {
  base::Size size;
  std::vector<unsigned char> cover;
};

// pixels is the height of the font, 4 to 1000; values outside are clamped. Text that is no UTF-8 is shown with marks
// for what it is not. Other: nothing is to be drawn.
Status DrawTextMask(const std::string& text, double pixels, TextMask& mask);

// The mask as a picture of that colour on nothing.
Status ImageOfMask(const TextMask& mask, base::Colour colour, Image& out);

}  // namespace quillon::imaging
