// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace quillon::cli {

// A 24-bit BMP whose pixels differ, as the simplest picture that the program lists and cuts.
inline std::string BmpPicture(int width, int height) {
  const auto number = [](std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
    return text;
  };
  const std::uint32_t stride = (static_cast<std::uint32_t>(width) * 3 + 3) / 4 * 4;
  const std::uint32_t size = stride * static_cast<std::uint32_t>(height);
  std::string bytes = "BM" + number(54 + size, 4) + number(0, 4) + number(54, 4);
  bytes += number(40, 4) + number(static_cast<std::uint32_t>(width), 4) + number(static_cast<std::uint32_t>(height), 4);
  bytes += number(1, 2) + number(24, 2) + number(0, 4) + number(size, 4) + number(11811, 4) + number(11811, 4);
  bytes += number(0, 4) + number(0, 4);
  for (int y = 0; y < height; ++y) {
    std::string row;
    for (int x = 0; x < width; ++x) {
      row += static_cast<char>(x * 7);
      row += static_cast<char>(y * 5);
      row += static_cast<char>(x + y);
    }
    row.resize(stride);
    bytes += row;
  }
  return bytes;
}

// A PNG of 40 x 30 that has a size but ends before its pixels do.
inline std::string BrokenPngPicture() {
  static constexpr char kBytes[] =
      "\x89PNG\r\n\x1A\n"
      "\0\0\0\x0DIHDR\0\0\0\x28\0\0\0\x1E\x08\0\0\0\0"
      "\x7B\xB6\x03\x01"
      "\0\0\x01\0IDAT\x78\x9C\0\0";
  return {kBytes, sizeof kBytes - 1};
}

}  // namespace quillon::cli
