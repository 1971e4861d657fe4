// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon::imaging {

// Upper limits for pictures. They are checked before any memory is allocated.
// The defaults apply to the program; tests set smaller ones.
struct Limits {
  int side = 500000;                            // width and height, in pixels
  std::int64_t pixels = 4'000'000'000;          // width x height
  int jpegSide = 65500;                         // width and height of a jpeg that is written; libjpeg allows no more
  int gifSide = 65535;                          // width and height of a gif; its header has 16 bits for each
  std::int64_t memory = std::int64_t{2} << 30;  // bytes of one decoded picture, in memory or in a TileStore
  std::int64_t pixelsInMemory = 100'000'000;    // of a picture held in memory; more of them are kept in a TileStore
};

// Default number of entries of the cache of picture sizes (see Services::RememberSizes).
inline constexpr std::size_t kSizesRemembered = 300'000;

// Returns true if a picture of this size may be opened. A side of 0 or less is refused.
// The product cannot overflow, because both sides are compared with the limit first.
inline bool WithinLimits(std::int64_t width, std::int64_t height, const Limits& limits) {
  return width > 0 && height > 0 && width <= limits.side && height <= limits.side && width * height <= limits.pixels;
}

// Returns true if a picture of this size is kept in a TileStore, if there is disk for it.
inline bool IsLarge(std::int64_t width, std::int64_t height, const Limits& limits) {
  return width * height > limits.pixelsInMemory;
}

// Returns true if a picture of this size may be decoded as a whole. pixelBytes is at least 1.
inline bool FitsMemory(std::int64_t width, std::int64_t height, int pixelBytes, const Limits& limits) {
  return width * height <= limits.memory / pixelBytes;
}

}  // namespace quillon::imaging
