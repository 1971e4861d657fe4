// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/measure/frame_count.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "imaging/faults.h"
#include "imaging/metadata/picture_format.h"

namespace quillon::imaging {
namespace {

enum class ByteOrder { Little, Big };

// Returns the unsigned number of size bytes at an offset; nothing if the file ends before.
std::optional<std::uint64_t> NumberAt(Bytes& bytes, std::uint64_t at, std::size_t size, ByteOrder order) {
  std::array<unsigned char, 8> raw{};
  if (!bytes.ReadAt(at, raw.data(), size)) return std::nullopt;
  if (order == ByteOrder::Little) std::reverse(raw.begin(), raw.begin() + static_cast<std::ptrdiff_t>(size));
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < size; ++i) value = value << 8 | raw[i];
  return value;
}

std::optional<std::uint64_t> ByteAt(Bytes& bytes, std::uint64_t at) { return NumberAt(bytes, at, 1, ByteOrder::Big); }

// Returns the bytes of a colour table. The top bit says whether there is one, the low three bits its size.
std::uint64_t ColourTableBytes(std::uint64_t packed) { return packed & 0x80 ? std::uint64_t{6} << (packed & 7) : 0; }

// Moves at to the end of a chain of data blocks, each of which starts with its length. Returns false if it is cut off.
bool SkipGifBlocks(Bytes& bytes, std::uint64_t& at) {
  while (const auto size = ByteAt(bytes, at)) {
    at += 1 + *size;
    if (*size == 0) return true;
  }
  return false;
}

std::uint64_t GifFrames(Bytes& bytes) {
  constexpr std::uint64_t kScreen = 13;     // bytes of signature and screen descriptor
  constexpr std::uint64_t kDescriptor = 9;  // bytes after the introducer of an image
  const auto screen = ByteAt(bytes, 10);
  if (!screen) return 0;
  std::uint64_t frames = 0;
  std::uint64_t at = kScreen + ColourTableBytes(*screen);
  while (const auto kind = ByteAt(bytes, at++)) {
    if (*kind == 0x21) {
      ++at;  // the label of the extension
    } else if (*kind == 0x2C) {
      const auto packed = ByteAt(bytes, at + kDescriptor - 1);
      if (!packed) break;
      ++frames;
      at += kDescriptor + ColourTableBytes(*packed) + 1;
    } else if (*kind == 0) {
      continue;  // padding between blocks
    } else {
      break;
    }
    if (!SkipGifBlocks(bytes, at)) break;
  }
  return frames;
}

std::uint64_t TiffDirectories(Bytes& bytes) {
  const ByteOrder order = ByteAt(bytes, 0) == 'I' ? ByteOrder::Little : ByteOrder::Big;
  const bool wide = NumberAt(bytes, 2, 2, order) == 43;  // BigTIFF
  const std::size_t countSize = wide ? 8 : 2;
  const std::size_t offsetSize = wide ? 8 : 4;
  const std::uint64_t entrySize = wide ? 20 : 12;
  std::unordered_set<std::uint64_t> seen;
  auto next = NumberAt(bytes, wide ? 8 : 4, offsetSize, order);
  while (next.value_or(0) != 0) {
    const std::uint64_t at = *next;
    const auto entries = NumberAt(bytes, at, countSize, order);
    const bool whole = entries && *entries > 0 && *entries <= (bytes.Size() - at) / entrySize;
    if (!whole || !seen.insert(at).second) break;
    next = NumberAt(bytes, at + countSize + *entries * entrySize, offsetSize, order);
  }
  return seen.size();
}

// Where a chunk before the pixels of a png begins.
struct PngChunk {
  bool pixels = false;       // the search has reached the pixels, or the chunk was found before them
  std::uint64_t offset = 0;  // of its content; 0 if there is no such chunk
};

PngChunk FindBeforePixels(Bytes& bytes, std::string_view wanted) {
  constexpr std::uint64_t kSignature = 8;
  constexpr std::uint64_t kAround = 12;  // length, type and checksum of a chunk
  for (std::uint64_t at = kSignature;;) {
    const auto size = NumberAt(bytes, at, 4, ByteOrder::Big);
    std::array<char, 4> type{};
    if (!size || !bytes.ReadAt(at + 4, type.data(), type.size())) return {};
    const std::string_view name(type.data(), type.size());
    if (name == "IDAT") return {.pixels = true};
    if (name == wanted) return {.pixels = true, .offset = at + 8};
    at += kAround + *size;
  }
}

std::uint64_t PngFrames(Bytes& bytes) {
  const PngChunk control = FindBeforePixels(bytes, "acTL");
  if (!control.pixels) return 0;
  if (control.offset == 0) return 1;
  return std::max<std::uint64_t>(1, NumberAt(bytes, control.offset, 4, ByteOrder::Big).value_or(1));
}

}  // namespace

Status CountFrames(Bytes& file, int& frames) {
  if (file.Size() == 0) return fault::EmptyFile();
  BlockBytes bytes(file);
  std::array<char, 16> start{};
  const std::size_t known = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.Size(), start.size()));
  if (!bytes.ReadAt(0, start.data(), known)) return fault::DamagedPicture();
  std::uint64_t count = 1;
  switch (FormatOf({start.data(), known})) {
    case Format::Gif:
      count = GifFrames(bytes);
      break;
    case Format::Tiff:
      count = TiffDirectories(bytes);
      break;
    case Format::Png:
      count = PngFrames(bytes);
      break;
    case Format::Unknown:
      return fault::NotAPicture();
    default:
      break;
  }
  if (count == 0) return fault::DamagedPicture();
  frames = static_cast<int>(std::min<std::uint64_t>(count, std::numeric_limits<int>::max()));
  return Status::Ok();
}

bool PngHasAlpha(Bytes& file) {
  constexpr std::uint64_t kColourType = 25;
  constexpr std::uint64_t kAlphaBit = 4;
  BlockBytes bytes(file);
  std::array<char, 16> start{};
  if (!bytes.ReadAt(0, start.data(), start.size()) || FormatOf({start.data(), start.size()}) != Format::Png)
    return false;
  const bool samples = (ByteAt(bytes, kColourType).value_or(0) & kAlphaBit) != 0;
  return samples || FindBeforePixels(bytes, "tRNS").offset > 0;
}

}  // namespace quillon::imaging
