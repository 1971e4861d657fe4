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

// A line of text drawn with the font of the desktop. cover holds one byte a pixel, row by row without padding:
// 0 is not covered, 255 fully covered.
struct TextMask {
  base::Size size;
  std::vector<unsigned char> cover;
};

// Draws one line of text. pixels is the font size, from 4 to 1000; values outside are clamped.
// Bytes that are not UTF-8 are drawn as replacement characters, control characters as blanks.
// Other: the text is empty, longer than 1000 bytes, or draws nothing.
Status DrawTextMask(const std::string& text, double pixels, TextMask& mask);

// Makes an RGB image of the given colour whose alpha is the mask. Other: the mask is empty.
Status ImageOfMask(const TextMask& mask, base::Colour colour, Image& out);

}  // namespace quillon::imaging
