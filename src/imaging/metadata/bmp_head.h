// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "imaging/io/bytes.h"

namespace quillon::imaging {

// The fields that the info headers of all BMP files have in common, as the file states them.
struct BmpHead {
  static constexpr std::uint32_t kFileHeader = 14;  // bytes before the info header
  static constexpr std::uint32_t kCoreHeader = 12;  // bytes of the oldest info header, which has sides of 16 bits
  static constexpr std::uint32_t kInfoHeader = 40;  // bytes of the first info header with a resolution

  std::uint32_t size = 0;     // bytes of the info header
  std::uint32_t pixels = 0;   // offset of the pixel data in the file; 0 if they follow the header
  std::int64_t width = 0;     // pixels; may be 0 or negative in a damaged file
  std::int64_t height = 0;    // pixels; negative if the top row is stored first
  std::uint32_t bits = 0;     // bits a pixel
  std::int64_t perMetre = 0;  // horizontal pixels a metre; 0 if the header has no such field
};

// Reads the header of a file that begins with "BM". Returns nothing if the file ends within these fields or if the info
// header is shorter than any known one.
std::optional<BmpHead> ReadBmpHead(Bytes& bytes);

}  // namespace quillon::imaging
