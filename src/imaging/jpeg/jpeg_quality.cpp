// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_quality.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace quillon::imaging {
namespace {

// The luminance table of the standard, which encoders scale by quality.
constexpr std::array<int, 64> kStandard = {16, 11, 10, 16, 24,  40,  51,  61,  12, 12, 14, 19, 26,  58,  60,  55,
                                           14, 13, 16, 24, 40,  57,  69,  56,  14, 17, 22, 29, 51,  87,  80,  62,
                                           18, 22, 37, 56, 68,  109, 103, 77,  24, 35, 55, 64, 81,  104, 113, 92,
                                           49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98, 112, 100, 103, 99};

unsigned Byte(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

// The sum of the table with number 0 in a segment of tables, or 0.
unsigned LuminanceSum(std::string_view tables) {
  while (!tables.empty()) {
    const bool wide = Byte(tables, 0) >> 4 != 0;
    const bool wanted = (Byte(tables, 0) & 15) == 0;
    const std::size_t size = 1 + (wide ? 2 : 1) * kStandard.size();
    if (tables.size() < size) return 0;
    unsigned sum = 0;
    for (std::size_t i = 0; i < kStandard.size(); ++i) {
      sum += wide ? Byte(tables, 1 + 2 * i) << 8 | Byte(tables, 2 + 2 * i) : Byte(tables, 1 + i);
    }
    if (wanted) return sum;
    tables.remove_prefix(size);
  }
  return 0;
}

// The sum of the table that an encoder uses at that quality.
int SumAt(int quality) {
  const int scale = quality < 50 ? 5000 / quality : 200 - 2 * quality;
  int sum = 0;
  for (const int value : kStandard) sum += std::clamp((value * scale + 50) / 100, 1, 255);
  return sum;
}

int QualityOfSum(unsigned sum) {
  int best = 1;
  for (int quality = 2; quality <= 100; ++quality) {
    const int wanted = static_cast<int>(sum);
    if (std::abs(SumAt(quality) - wanted) <= std::abs(SumAt(best) - wanted)) best = quality;
  }
  return best;
}

}  // namespace

int JpegQuality(std::string_view bytes) {
  constexpr unsigned kTables = 0xDB;
  constexpr unsigned kPicture = 0xDA;
  std::size_t at = 2;
  while (at + 4 <= bytes.size() && Byte(bytes, at) == 0xFF) {
    const unsigned marker = Byte(bytes, at + 1);
    const std::size_t size = Byte(bytes, at + 2) << 8 | Byte(bytes, at + 3);
    if (marker == kPicture || size < 2) return 0;
    if (marker == kTables && at + 2 + size <= bytes.size()) {
      if (const unsigned sum = LuminanceSum(bytes.substr(at + 4, size - 2)); sum > 0) return QualityOfSum(sum);
    }
    at += 2 + size;
  }
  return 0;
}

}  // namespace quillon::imaging
