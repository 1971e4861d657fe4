// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/vips_loader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "imaging/metadata/tiff_tags.h"
#include "imaging/png/png_chunks.h"

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

// Returns the bytes of a colour table. The top bit says whether there is one, the low three bits its size.
std::uint64_t GifTableBytes(unsigned char packed) { return packed & 0x80 ? std::uint64_t{6} << (packed & 7) : 0; }

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
  if (!cursor.Read(head.data(), head.size()) || !cursor.Skip(GifTableBytes(head[10]))) return false;
  std::array<unsigned char, 9> frame{};
  for (unsigned char kind = 0; cursor.Read(&kind, 1);) {
    switch (kind) {
      case 0x3B:
        return true;
      case 0x21:
        if (!cursor.Skip(1) || !SkipGifBlocks(cursor)) return false;
        break;
      case 0x2C:
        if (!cursor.Read(frame.data(), frame.size()) || !cursor.Skip(GifTableBytes(frame[8]) + 1)) return false;
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

// A match of deflate stands for at most 258 bytes and needs at least two bits.
constexpr std::uint64_t kMostPerDeflatedByte = 1032;
// A code of LZW has at most 12 bits and stands for less than 4096 values; shorter codes stand for fewer values a bit.
constexpr std::uint64_t kMostPerLzwByte = 4096 * 8 / 12 + 1;
// Two bytes of PackBits stand for at most 128 bytes.
constexpr std::uint64_t kMostPerPackedByte = 64;
// A canvas may be larger than its frames. Up to this number of pixels that costs little, and no question is asked.
constexpr std::uint64_t kFreeCanvas = std::uint64_t{64} << 20;

std::uint64_t PixelsOf(base::Size size) {
  return static_cast<std::uint64_t>(size.width) * static_cast<std::uint64_t>(size.height);
}

// The decoder ignores a canvas that it does not believe, but its size is what the file is measured by.
bool CanGifHold(Bytes& bytes, base::Size size) {
  constexpr std::uint64_t kCanvas = 6;  // offset of width and height
  std::array<unsigned char, 4> sides{};
  if (!bytes.ReadAt(kCanvas, sides.data(), sides.size())) return false;
  const std::uint64_t canvas = (sides[0] | std::uint64_t{sides[1]} << 8) * (sides[2] | std::uint64_t{sides[3]} << 8);
  const std::uint64_t pixels = std::max(canvas, PixelsOf(size));
  return pixels <= kFreeCanvas || pixels / kMostPerLzwByte <= bytes.Size();
}

// The numbers of the first directory that decide how many bytes its pixels need.
struct TiffStorage {
  std::uint64_t bits = 1;  // a sample
  std::uint64_t samples = 1;
  std::uint64_t compression = 1;
  bool ycc = false;         // colours may be stored for several pixels at once
  std::uint64_t bytes = 0;  // of all strips or tiles
};

// Several strips may share the same bytes, so they can hold more than the file has.
std::uint64_t SumOf(const TiffTags& tags, const TiffEntry& entry) {
  constexpr std::uint64_t kMostBytes = std::uint64_t{32} << 20;
  const std::optional<std::string> values = tags.Values(entry, kMostBytes);
  const auto unit = static_cast<std::size_t>(TiffNumberSize(entry.type));
  std::uint64_t sum = 0;
  for (std::size_t at = 0; values && unit > 0 && at + unit <= values->size(); at += unit) {
    std::uint64_t value = 0;
    for (std::size_t i = unit; i-- > 0;) value = value << 8 | static_cast<unsigned char>((*values)[at + i]);
    sum += std::min(value, std::uint64_t{1} << 40);
  }
  return sum;
}

std::uint64_t FirstOf(const TiffTags& tags, const TiffEntry& entry) {
  const std::optional<std::string> values = tags.Values(entry, 64);
  if (!values || values->size() < 2) return 1;
  return static_cast<unsigned char>((*values)[0]) | static_cast<std::uint64_t>(static_cast<unsigned char>((*values)[1]))
                                                        << 8;
}

TiffStorage StorageOf(const TiffTags& tags, const std::vector<TiffEntry>& directory) {
  TiffStorage storage;
  for (const TiffEntry& entry : directory) {
    switch (entry.tag) {
      case 258:
        storage.bits = FirstOf(tags, entry);
        break;
      case 259:
        storage.compression = tags.Integer(entry).value_or(1);
        break;
      case 262:
        storage.ycc = tags.Integer(entry).value_or(0) == 6;
        break;
      case 277:
        storage.samples = tags.Integer(entry).value_or(1);
        break;
      case 279:  // of strips
      case 325:  // of tiles
        storage.bytes = SumOf(tags, entry);
        break;
      default:
        break;
    }
  }
  return storage;
}

// Returns how many bytes of pixels one byte can stand for; 0 if there is no bound worth checking: a byte of fax, JPEG,
// WebP, LZMA or Zstandard data may stand for thousands of pixels.
std::uint64_t MostPerByte(std::uint64_t compression) {
  switch (compression) {
    case 1:
      return 1;
    case 5:
      return kMostPerLzwByte;
    case 8:
    case 32946:
      return kMostPerDeflatedByte;
    case 32773:
      return kMostPerPackedByte;
    default:
      return 0;
  }
}

bool CanTiffHold(Bytes& bytes, base::Size size) {
  const std::optional<TiffTags> tags = TiffTags::Open(bytes);
  const auto directory = tags ? tags->Directory(tags->First()) : std::nullopt;
  if (!directory) return false;
  const TiffStorage storage = StorageOf(*tags, *directory);
  const std::uint64_t most = MostPerByte(storage.compression);
  if (most == 0) return true;
  // Readers estimate counts that are missing or wrong from the length of the file.
  const std::uint64_t held = std::max(storage.bytes, bytes.Size());
  // YCbCr: the colours may be stored for few pixels only, so the luminance alone counts.
  const std::uint64_t samples = storage.ycc ? 1 : std::min<std::uint64_t>(storage.samples, 16);
  const std::uint64_t bits = std::min<std::uint64_t>(storage.bits, 64) * samples;
  return PixelsOf(size) * bits / 8 / most <= held;
}

}  // namespace

bool CanHold(Format format, Bytes& bytes, base::Size size) {
  switch (format) {
    case Format::Png:
      return CanPngHold(bytes, size);
    case Format::Gif:
      return CanGifHold(bytes, size);
    case Format::Tiff:
      return CanTiffHold(bytes, size);
    default:
      return true;
  }
}

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
