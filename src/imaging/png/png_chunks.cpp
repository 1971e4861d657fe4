// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/png/png_chunks.h"

#include <algorithm>
#include <vector>

#include <zlib.h>

namespace quillon::imaging {
namespace {

constexpr std::size_t kBlock = std::size_t{64} << 10;
// A match of deflate stands for at most 258 bytes and needs at least two bits.
constexpr std::uint64_t kMostPerDeflatedByte = 1032;

std::uint64_t BigEndian(const unsigned char* at) {
  return std::uint64_t{at[0]} << 24 | std::uint64_t{at[1]} << 16 | std::uint64_t{at[2]} << 8 | at[3];
}

// The checksum is that of type and data.
bool HasChecksum(Bytes& bytes, const PngChunk& chunk, std::vector<unsigned char>& block) {
  uLong sum = crc32(0, nullptr, 0);
  std::uint64_t at = chunk.at + 4;
  const std::uint64_t end = chunk.End() - 4;
  while (at < end) {
    block.resize(static_cast<std::size_t>(std::min<std::uint64_t>(end - at, kBlock)));
    if (!bytes.ReadAt(at, block.data(), block.size())) return false;
    sum = crc32(sum, block.data(), static_cast<uInt>(block.size()));
    at += block.size();
  }
  std::array<unsigned char, 4> stored{};
  return bytes.ReadAt(end, stored.data(), stored.size()) && BigEndian(stored.data()) == sum;
}

}  // namespace

bool PngChunks::Next(PngChunk& out) {
  const std::uint64_t whole = bytes_.Size();
  if (at_ > whole || whole - at_ < PngChunk::kOverhead) return false;
  std::array<unsigned char, 8> head{};
  if (!bytes_.ReadAt(at_, head.data(), head.size())) return false;
  PngChunk chunk;
  chunk.at = at_;
  chunk.size = BigEndian(head.data());
  std::copy_n(head.begin() + 4, chunk.type.size(), chunk.type.begin());
  if (chunk.size > whole - at_ - PngChunk::kOverhead) return false;
  at_ = chunk.End();
  out = chunk;
  return true;
}

bool IsPngComplete(Bytes& bytes) {
  PngChunks chunks(bytes);
  for (PngChunk chunk; chunks.Next(chunk);) {
    if (chunk.Is("IEND")) return true;
  }
  return false;
}

bool HasPngChecksums(Bytes& bytes, std::uint64_t start, std::uint64_t checked) {
  PngChunks chunks(bytes, start);
  std::vector<unsigned char> block;
  for (PngChunk chunk; chunks.Next(chunk);) {
    if (chunk.End() > checked && !HasChecksum(bytes, chunk, block)) return false;
    if (chunk.Is("IEND")) return true;
  }
  return false;
}

bool CanPngHold(Bytes& bytes, base::Size size) {
  constexpr std::uint64_t kDepth = 24;  // offset of the bits a sample, followed by the colour type
  std::array<unsigned char, 2> kind{};
  if (!bytes.ReadAt(kDepth, kind.data(), kind.size())) return false;
  constexpr std::array<unsigned, 7> kSamples = {1, 1, 3, 1, 2, 1, 4};  // by colour type
  const std::uint64_t bits = std::uint64_t{kind[0]} * kSamples[std::min<std::size_t>(kind[1], 6)];
  const std::uint64_t pixels = static_cast<std::uint64_t>(size.width) * static_cast<std::uint64_t>(size.height);
  return pixels * bits / 8 / kMostPerDeflatedByte <= bytes.Size();
}

}  // namespace quillon::imaging
