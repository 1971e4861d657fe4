// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "job/cut_fixture.h"

namespace quillon::job {

// An uncompressed tiff of 16 bits a sample with alpha, 0..255; opaque without the last argument.
inline std::string DeepTiff(int width, int height, const Paint& paint,
                            const std::function<int(int x, int y)>& alpha = {}) {
  std::string bytes("II*\0", 4);
  const auto number = [&](int value, int length) {
    for (int i = 0; i < length; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
  };
  constexpr int kFields = 10;
  constexpr int kBitsAt = 8 + 2 + kFields * 12 + 4;
  constexpr int kPixelsAt = kBitsAt + 8;
  const int fields[kFields][4] = {{256, 3, 1, width}, {257, 3, 1, height}, {258, 3, 4, kBitsAt},
                                  {259, 3, 1, 1},     {262, 3, 1, 2},      {273, 4, 1, kPixelsAt},
                                  {277, 3, 1, 4},     {278, 3, 1, height}, {279, 4, 1, width * height * 8},
                                  {338, 3, 1, 2}};
  number(8, 4);
  number(kFields, 2);
  for (const auto& field : fields) {
    number(field[0], 2);
    number(field[1], 2);
    number(field[2], 4);
    number(field[3], 4);
  }
  number(0, 4);
  for (int i = 0; i < 4; ++i) number(16, 2);
  for (int i = 0; i < width * height; ++i) {
    const int x = i % width;
    const int y = i / width;
    const Pixel pixel = paint(x, y);
    for (const int sample : {pixel.red, pixel.green, pixel.blue, alpha ? alpha(x, y) : 255}) number(sample * 257, 2);
  }
  return bytes;
}

}  // namespace quillon::job
