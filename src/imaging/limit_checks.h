// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "imaging/services.h"

namespace quillon::imaging {

// Whether a picture of this size may be opened at all.
inline bool WithinLimits(std::int64_t width, std::int64_t height, const Limits& limits) {
  return width > 0 && height > 0 && width <= limits.side && height <= limits.side && width * height <= limits.pixels;
}

// Whether a picture of this size may be held whole; pixelBytes is at most a few dozen.
inline bool FitsMemory(std::int64_t width, std::int64_t height, int pixelBytes, const Limits& limits) {
  return width * height <= limits.memory / pixelBytes;
}

}  // namespace quillon::imaging
