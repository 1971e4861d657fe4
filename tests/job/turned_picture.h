// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

#include "imaging/metadata/exif_block.h"
#include "job/cut_fixture.h"

// Photographs whose tag says how they are turned.
namespace quillon::job {

// Four flat colours, so that every turn shows, and a gif holds nearly all of it.
inline Pixel Quarters(int x, int y) {
  if (y < 20) return x < 30 ? Pixel{200, 20, 20} : Pixel{20, 200, 20};
  return x < 30 ? Pixel{20, 20, 200} : Pixel{220, 220, 20};
}

// Returns the JPEG with an EXIF block that holds the orientation, 1..8.
inline std::string WithOrientation(std::string jpeg, int orientation) {
  const std::string block = imaging::MinimalExif(orientation, 0);
  if (block.empty()) return jpeg;
  const std::string head{'\xFF', '\xE1', '\0', static_cast<char>(block.size() + 8)};
  return jpeg.insert(2, head + std::string("Exif\0\0", 6) + block);
}

// Returns what a program shows that honours the orientation of these pixels.
inline Picture Upright(const Picture& stored, int orientation) {
  const int right = stored.width - 1;
  const int bottom = stored.height - 1;
  const auto place = [&](int x, int y) -> std::pair<int, int> {
    switch (orientation) {
      case 2:
        return {right - x, y};
      case 3:
        return {right - x, bottom - y};
      case 4:
        return {x, bottom - y};
      case 5:
        return {y, x};
      case 6:
        return {y, bottom - x};
      case 7:
        return {right - y, bottom - x};
      case 8:
        return {right - y, x};
      default:
        return {x, y};
    }
  };
  const bool onItsSide = orientation >= 5;
  return Painted(onItsSide ? stored.height : stored.width, onItsSide ? stored.width : stored.height, [&](int x, int y) {
    const auto [fromX, fromY] = place(x, y);
    return stored.At(fromX, fromY);
  });
}

// The mean difference of all samples, 1000 if the sizes differ.
inline double MeanDifference(const Picture& a, const Picture& b) {
  if (a.width != b.width || a.height != b.height) return 1000;
  double sum = 0;
  for (std::size_t i = 0; i < a.pixels.size(); ++i) {
    sum += std::abs(a.pixels[i].red - b.pixels[i].red) + std::abs(a.pixels[i].green - b.pixels[i].green) +
           std::abs(a.pixels[i].blue - b.pixels[i].blue);
  }
  return sum / (3 * static_cast<double>(a.pixels.size()));
}

}  // namespace quillon::job
