// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

// The samples of BMP files with 48 and 64 bits a pixel: proportional to light, 8192 is white. Other programs store
// values below 0 and above white in them.
namespace quillon::imaging {

inline constexpr int kBmpWhite = 8192;

// Returns the sample for an sRGB value of 16 bits.
std::uint16_t BmpLightOf(std::uint16_t value);
// Returns the sRGB value of 8 bits for a sample. What was made of 8 bits by BmpLightOf comes back exactly.
unsigned char ValueOfBmpLight(std::int16_t light);

// Alpha is stored in proportion.
std::uint16_t BmpAlphaOf(std::uint16_t alpha);
unsigned char ValueOfBmpAlpha(std::int16_t alpha);

}  // namespace quillon::imaging
