// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/vips_loader.h"

#include <algorithm>
#include <array>
#include <vector>

#include "imaging/metadata/tiff_tags.h"

namespace quillon::imaging {
namespace {

// Reads forward in blocks of 16 KB. A read or skip beyond the end of the file returns false.
class Cursor {
 public:
  explicit Cursor(Bytes& bytes) : bytes_(bytes) {}

  bool Read(unsigned char* out, std::size_t size) {
    if (!Within(size)) return false;
    if (at_ < blockAt_ || at_ + size > blockAt_ + block_.size()) {
      constexpr std::uint64_t kBlock = 16384;
      block_.resize(static_cast<std::size_t>(std::min(kBlock, bytes_.Size() - at_)));
      blockAt_ = at_;
      if (size > block_.size() || !bytes_.ReadAt(at_, block_.data(), block_.size())) return false;
    }
    std::copy_n(block_.begin() + static_cast<std::ptrdiff_t>(at_ - blockAt_), size, out);
    at_ += size;
    return true;
  }

  bool Skip(std::uint64_t size) {
    if (!Within(size)) return false;
    at_ += size;
    return true;
  }

 private:
  bool Within(std::uint64_t size) const { return size <= bytes_.Size() - at_; }

  Bytes& bytes_;
  std::vector<unsigned char> block_;
  std::uint64_t blockAt_ = 0;
  std::uint64_t at_ = 0;
};

bool IsPngComplete(Bytes& bytes) {
  Cursor cursor(bytes);
  std::array<unsigned char, 8> chunk{};
  bool more = cursor.Skip(8);
  while (more && cursor.Read(chunk.data(), chunk.size())) {
    const std::uint64_t size = std::uint64_t{chunk[0]} << 24 | chunk[1] << 16 | chunk[2] << 8 | chunk[3];
    more = cursor.Skip(size + 4);
    if (std::equal(chunk.begin() + 4, chunk.end(), "IEND")) return more;
  }
  return false;
}

// Returns the bytes of a colour table. The top bit says whether there is one, the low three bits its size.
std::uint64_t GifTable(unsigned char packed) { return packed & 0x80 ? std::uint64_t{6} << (packed & 7) : 0; }

// Skips a chain of data blocks, each of which starts with its length; a length of 0 ends it.
bool SkipGifBlocks(Cursor& cursor) {
  unsigned char size = 0;
  while (cursor.Read(&size, 1)) {
    if (size == 0) return true;
    if (!cursor.Skip(size)) return false;
  }
  return false;
}

bool IsGifComplete(Bytes& bytes) {
  Cursor cursor(bytes);
  std::array<unsigned char, 13> head{};
  if (!cursor.Read(head.data(), head.size()) || !cursor.Skip(GifTable(head[10]))) return false;
  std::array<unsigned char, 9> frame{};
  for (unsigned char kind = 0; cursor.Read(&kind, 1);) {
    switch (kind) {
      case 0x3B:
        return true;
      case 0x21:
        if (!cursor.Skip(1) || !SkipGifBlocks(cursor)) return false;
        break;
      case 0x2C:
        if (!cursor.Read(frame.data(), frame.size()) || !cursor.Skip(GifTable(frame[8]) + 1)) return false;
        if (!SkipGifBlocks(cursor)) return false;
        break;
      default:
        break;  // padding between blocks
    }
  }
  return false;
}

// Private tags are not checked, since programs store anything in them.
bool IsTiffComplete(Bytes& bytes) {
  constexpr std::uint32_t kFirstKnown = 0x0100;
  constexpr std::uint32_t kLastKnown = 0x015B;
  constexpr std::uint32_t kProfile = 0x8773;
  const std::optional<TiffTags> tags = TiffTags::Open(bytes);
  const auto directory = tags ? tags->Directory(tags->First()) : std::nullopt;
  if (!directory) return false;
  return std::all_of(directory->begin(), directory->end(), [&](const TiffEntry& entry) {
    const bool known = (entry.tag >= kFirstKnown && entry.tag <= kLastKnown) || entry.tag == kProfile;
    return !known || tags->Holds(entry);
  });
}

}  // namespace

bool IsComplete(Format format, Bytes& bytes) {
  switch (format) {
    case Format::Png:
      return IsPngComplete(bytes);
    case Format::Gif:
      return IsGifComplete(bytes);
    case Format::Tiff:
      return IsTiffComplete(bytes);
    default:
      return true;
  }
}

}  // namespace quillon::imaging
