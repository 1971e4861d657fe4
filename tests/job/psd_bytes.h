// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "job/cut_fixture.h"

namespace quillon::job {

// The bytes of a psd of one colour, uncompressed, 8 bits, RGB.
inline std::string PsdBytes(int width, int height, Pixel pixel) {
  std::string bytes;
  const auto number = [&](std::uint32_t value, int length) {
    for (int i = length - 1; i >= 0; --i) bytes.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
  };
  bytes += "8BPS";
  number(1, 2);
  bytes.append(6, '\0');
  number(3, 2);
  number(static_cast<std::uint32_t>(height), 4);
  number(static_cast<std::uint32_t>(width), 4);
  number(8, 2);
  number(3, 2);
  for (int section = 0; section < 3; ++section) number(0, 4);
  number(0, 2);
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  for (const int sample : {pixel.red, pixel.green, pixel.blue}) {
    bytes.append(pixels, static_cast<char>(sample));
  }
  return bytes;
}

}  // namespace quillon::job
