// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/rect.h"
#include "imaging/io/bytes.h"

// The structure of PNG files, which is read without decoding any pixel.
namespace quillon::imaging {

// One chunk: 4 bytes of length, 4 of type, the data, and 4 of checksum.
struct PngChunk {
  static constexpr std::uint64_t kOverhead = 12;  // bytes around the data

  std::uint64_t at = 0;    // offset of the length in the file
  std::uint64_t size = 0;  // bytes of data
  std::array<char, 4> type{};

  bool Is(std::string_view name) const { return std::string_view(type.data(), type.size()) == name; }
  std::uint64_t Data() const { return at + 8; }
  std::uint64_t End() const { return at + size + kOverhead; }
};

// Walks the chunks of a file in their order. The number of steps is bounded by the length of the file.
class PngChunks {
 public:
  static constexpr std::uint64_t kFirst = 8;  // offset of the first chunk, after the signature

  // bytes has to outlive the object. start is the offset of a chunk.
  explicit PngChunks(Bytes& bytes, std::uint64_t start = kFirst) : bytes_(bytes), at_(start) {}
  // Returns false after the last chunk, and if the next one does not lie inside the file.
  bool Next(PngChunk& out);

 private:
  BlockBytes bytes_;
  std::uint64_t at_;
};

// Returns true if every chunk up to IEND lies inside the file.
bool IsPngComplete(Bytes& bytes);

// Returns true if the file is complete and the checksums from the chunk at offset start up to IEND are right.
// Chunks that end at the offset checked or before are trusted.
bool HasPngChecksums(Bytes& bytes, std::uint64_t start, std::uint64_t checked);

// Returns false if the file is too short to hold that many pixels of its depth, however well they are compressed.
bool CanPngHold(Bytes& bytes, base::Size size);

}  // namespace quillon::imaging
