// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

#include "imaging/codecs/bmp_light.h"
#include "imaging/codecs/encode.h"
#include "imaging/pixels/draft_target.h"

namespace quillon::imaging {
namespace {

constexpr std::uint32_t kFileHeader = 14;
constexpr std::uint32_t kPlainHeader = 40;
constexpr std::uint32_t kProfileHeader = 124;  // BITMAPV5HEADER, the only one that can refer to a profile
constexpr std::uint32_t kEmbeddedProfile = 0x4D424544;
constexpr std::uint32_t kPaletteEntry = 4;  // bytes
constexpr double kMetresPerInch = 0.0254;

void Put16(std::string& out, std::size_t at, std::uint32_t value) {
  out[at] = static_cast<char>(value & 0xFF);
  out[at + 1] = static_cast<char>(value >> 8 & 0xFF);
}

void Put32(std::string& out, std::size_t at, std::uint32_t value) {
  Put16(out, at, value & 0xFFFF);
  Put16(out, at + 2, value >> 16);
}

std::uint32_t PaletteBytes(int bits) { return bits <= 8 ? kPaletteEntry << bits : 0; }

// Returns file header and info header. All numbers are little-endian.
std::string HeaderOf(const Picture& picture, int bits, std::uint32_t pixelBytes) {
  const std::string& profile = picture.tags.profile;
  const std::uint32_t info = profile.empty() ? kPlainHeader : kProfileHeader;
  const std::uint32_t start = kFileHeader + info + PaletteBytes(bits);
  std::string head(kFileHeader + info, '\0');
  head[0] = 'B';
  head[1] = 'M';
  Put32(head, 2, start + pixelBytes + static_cast<std::uint32_t>(profile.size()));
  Put32(head, 10, start);
  Put32(head, 14, info);
  Put32(head, 18, static_cast<std::uint32_t>(picture.pixels.width()));
  Put32(head, 22, static_cast<std::uint32_t>(picture.pixels.height()));
  Put16(head, 26, 1);
  Put16(head, 28, static_cast<std::uint32_t>(bits));
  Put32(head, 34, pixelBytes);
  const auto perMetre = static_cast<std::uint32_t>(std::lround(picture.tags.dpi / kMetresPerInch));
  Put32(head, 38, perMetre);
  Put32(head, 42, perMetre);
  if (!profile.empty()) {
    Put32(head, kFileHeader + 56, kEmbeddedProfile);
    Put32(head, kFileHeader + 112, start - kFileHeader + pixelBytes);
    Put32(head, kFileHeader + 116, static_cast<std::uint32_t>(profile.size()));
  }
  return head;
}

// Packs rows of RGB, or of RGBA with 64 bits, as a BMP stores them.
class Packer {
 public:
  explicit Packer(int bits) : bits_(bits) {}

  // Returns false if the pixels have more colours than the palette holds.
  bool Pack(const unsigned char* from, std::size_t width, unsigned char* to) {
    switch (bits_) {
      case 4:
      case 8:
        return PackIndices(from, width, to);
      case 16:
        PackFives(from, width, to);
        return true;
      case 48:
        PackLight(reinterpret_cast<const std::uint16_t*>(from), width, 3, to);
        return true;
      case 64:
        PackLight(reinterpret_cast<const std::uint16_t*>(from), width, 4, to);
        return true;
      default:
        PackBytes(from, width, to);
        return true;
    }
  }

  // The colours of the packed rows; the rest of the palette is black.
  std::string Palette() const {
    std::string entries(PaletteBytes(bits_), '\0');
    for (const auto& [colour, index] : indices_) Put32(entries, index * kPaletteEntry, colour);
    return entries;
  }

 private:
  bool PackIndices(const unsigned char* from, std::size_t width, unsigned char* to) {
    for (std::size_t x = 0; x < width; ++x, from += 3) {
      const std::uint32_t colour = std::uint32_t{from[0]} << 16 | std::uint32_t{from[1]} << 8 | from[2];
      const auto [place, isNew] = indices_.try_emplace(colour, static_cast<unsigned>(indices_.size()));
      if (isNew && place->second >> bits_ != 0) return false;
      const unsigned index = place->second;
      if (bits_ == 8) {
        to[x] = static_cast<unsigned char>(index);
      } else {
        to[x / 2] = static_cast<unsigned char>(x % 2 == 0 ? index << 4 : to[x / 2] | index);
      }
    }
    return true;
  }

  static void PackFives(const unsigned char* from, std::size_t width, unsigned char* to) {
    const auto five = [](unsigned value) { return (value * 31 + 127) / 255; };
    for (std::size_t x = 0; x < width; ++x, from += 3, to += 2) {
      const unsigned pixel = five(from[0]) << 10 | five(from[1]) << 5 | five(from[2]);
      to[0] = static_cast<unsigned char>(pixel & 0xFF);
      to[1] = static_cast<unsigned char>(pixel >> 8);
    }
  }

  void PackBytes(const unsigned char* from, std::size_t width, unsigned char* to) const {
    const std::size_t step = static_cast<std::size_t>(bits_) / 8;
    for (std::size_t x = 0; x < width; ++x, from += 3, to += step) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
    }
  }

  static void PackLight(const std::uint16_t* from, std::size_t width, std::size_t bands, unsigned char* to) {
    const auto put = [&](std::uint16_t sample) {
      *to++ = static_cast<unsigned char>(sample & 0xFF);
      *to++ = static_cast<unsigned char>(sample >> 8);
    };
    for (std::size_t x = 0; x < width; ++x, from += bands) {
      put(BmpLightOf(from[2]));
      put(BmpLightOf(from[1]));
      put(BmpLightOf(from[0]));
      if (bands == 4) put(BmpAlphaOf(from[3]));
    }
  }

  const int bits_;
  std::unordered_map<std::uint32_t, unsigned> indices_;  // of the palette, by colour
};

}  // namespace

// BMP stores the bottom row first, so each batch of rows is written at its own position. The palette is known last.
Status WriteBmp(const Picture& picture, int bits, host::Draft& draft) {
  const auto width = static_cast<std::uint64_t>(picture.pixels.width());
  const auto height = static_cast<std::uint64_t>(picture.pixels.height());
  const std::string& profile = picture.tags.profile;
  const std::uint64_t stride = (width * static_cast<unsigned>(bits) + 31) / 32 * 4;
  const std::uint64_t room =
      std::numeric_limits<std::uint32_t>::max() - kFileHeader - kProfileHeader - PaletteBytes(bits);
  if (stride * height + profile.size() > room) return fault::ResultTooLarge();

  const std::string head = HeaderOf(picture, bits, static_cast<std::uint32_t>(stride * height));
  const std::uint64_t start = head.size() + PaletteBytes(bits);
  if (Status status = draft.Write(head.data(), head.size()); !status) return status;
  Packer packer(bits);
  std::vector<unsigned char> block;
  Status status = ForEachRows(picture.pixels, [&](const RowBlock& rows) {
    const auto count = static_cast<std::uint64_t>(rows.count);
    block.assign(stride * count, 0);
    for (std::uint64_t y = 0; y < count; ++y) {
      if (!packer.Pack(rows.first + rows.step * y, width, block.data() + stride * (count - 1 - y))) {
        return fault::NotSaved();
      }
    }
    const std::uint64_t below = height - static_cast<std::uint64_t>(rows.top) - count;
    if (Status moved = draft.Seek(start + below * stride); !moved) return moved;
    return draft.Write(block.data(), block.size());
  });
  if (!status) return status;
  if (const std::string palette = packer.Palette(); !palette.empty()) {
    if (Status moved = draft.Seek(head.size()); !moved) return moved;
    if (Status written = draft.Write(palette.data(), palette.size()); !written) return written;
  }
  if (profile.empty()) return Status::Ok();
  if (Status moved = draft.Seek(start + stride * height); !moved) return moved;
  return draft.Write(profile.data(), profile.size());
}

}  // namespace quillon::imaging
