// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quillon::imaging {

// Compresses the pixels of one frame after another with the LZW variant of GIF, and appends them to a text as a code
// size and a chain of data blocks.
//
// The encoder of giflib is not used, because it drops the bits of an index that its colour table does not have, and
// because it clears the dictionary as soon as it is full. Here a full dictionary is used on until it serves worse than
// a new one.
class LzwEncoder {
 public:
  // out receives the bytes; it has to outlive the encoder, and may be emptied by its owner at any time.
  explicit LzwEncoder(std::string& out) : out_(out), slots_(kSlots) {}

  // Begins a frame whose pixels have codeBits bits, 1..8.
  void Begin(int codeBits);
  // Pixels above the bits of Begin are not allowed.
  void Add(const unsigned char* pixels, std::size_t count);
  // Ends the frame. A frame without pixels is allowed.
  void End();

 private:
  static constexpr unsigned kMostCodes = 4096;
  static constexpr std::size_t kSlots = 8192;
  static constexpr std::uint32_t kFree = 0xFFFFFFFF;
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  void Clear();
  void Emit(unsigned code);
  void EmitByte(unsigned char byte);
  bool ServesBadly(std::uint64_t pixel);

  std::string& out_;
  // Open addressing. An entry holds the prefix (12 bits), the pixel (8 bits) and the code of both together (12 bits).
  std::vector<std::uint32_t> slots_;
  std::array<unsigned char, 255> block_{};
  std::size_t blockSize_ = 0;
  std::uint32_t bits_ = 0;  // not yet emitted, the oldest lowest
  unsigned bitCount_ = 0;
  unsigned codeBits_ = 0;
  unsigned width_ = 0;  // bits of a code
  unsigned clear_ = 0;
  unsigned next_ = 0;  // the code of the next entry
  std::uint32_t prefix_ = kNone;
  // Pixels of the frame before the current row, before the dictionary was begun, and before the current stretch.
  std::uint64_t added_ = 0;
  std::uint64_t begun_ = 0;
  std::uint64_t stretchBegun_ = 0;
  unsigned stretchCodes_ = 0;
  double fillingBits_ = 0;  // bits of the codes that fill a dictionary
  double filling_ = 0;      // pixels a bit while the dictionary was filled; 0 until it is full
};

}  // namespace quillon::imaging
