// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillon::imaging {

// Limits that are checked before anything is allocated. Public members are the defaults.
struct Limits {
  int side = 500000;
  std::int64_t pixels = 4'000'000'000;
  int jpegSide = 65500;
  std::int64_t memory = std::int64_t{2} << 30;  // a decoded picture held whole
};

// How many picture sizes are remembered by default.
inline constexpr std::size_t kSizesRemembered = 300'000;

// Whether a picture of this size may be opened at all.
inline bool WithinLimits(std::int64_t width, std::int64_t height, const Limits& limits) {
  return width > 0 && height > 0 && width <= limits.side && height <= limits.side && width * height <= limits.pixels;
}

// Whether a picture of this size may be held whole; pixelBytes is at most a few dozen.
inline bool FitsMemory(std::int64_t width, std::int64_t height, int pixelBytes, const Limits& limits) {
  return width * height <= limits.memory / pixelBytes;
}

}  // namespace quillon::imaging
