// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::regions {

// The offset of the colour type in a PNG file (a byte of the IHDR chunk), and two of its values.
inline constexpr std::size_t kColourType = 25;
inline constexpr char kRgb = 2;
inline constexpr char kRgbWithAlpha = 6;

// Returns a PNG of 8 x 8 pixels: one colour with alpha, the left half wholly transparent, the right half opaque. Given
// in hexadecimal, so that the test does not depend on an encoder.
inline std::string HalfTransparentPng() {
  const std::string hex =
      "89504E470D0A1A0A0000000D4948445200000008000000080806000000C40FBE8B000000154944415478DA63389162C4"
      "8086FF23638691A10000B47C7761F5CA3B6D0000000049454E44AE426082";
  std::string bytes;
  for (std::size_t i = 0; i < hex.size(); i += 2) bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  return bytes;
}

}  // namespace quillon::regions
