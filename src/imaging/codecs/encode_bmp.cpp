// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "imaging/codecs/encode.h"
#include "imaging/pixels/draft_target.h"

namespace quillon::imaging {
namespace {

constexpr std::uint32_t kFileHeader = 14;
constexpr std::uint32_t kPlainHeader = 40;
constexpr std::uint32_t kProfileHeader = 124;  // BITMAPV5HEADER, the only one that can refer to a profile
constexpr std::uint32_t kEmbeddedProfile = 0x4D424544;
constexpr double kMetresPerInch = 0.0254;

void Put16(std::string& out, std::size_t at, std::uint32_t value) {
  out[at] = static_cast<char>(value & 0xFF);
  out[at + 1] = static_cast<char>(value >> 8 & 0xFF);
}

void Put32(std::string& out, std::size_t at, std::uint32_t value) {
  Put16(out, at, value & 0xFFFF);
  Put16(out, at + 2, value >> 16);
}

// Returns file header and info header. All numbers are little-endian.
std::string HeaderOf(const Picture& rgb, std::uint32_t pixelBytes) {
  const std::string& profile = rgb.tags.profile;
  const std::uint32_t info = profile.empty() ? kPlainHeader : kProfileHeader;
  const std::uint32_t start = kFileHeader + info;
  std::string head(start, '\0');
  head[0] = 'B';
  head[1] = 'M';
  Put32(head, 2, start + pixelBytes + static_cast<std::uint32_t>(profile.size()));
  Put32(head, 10, start);
  Put32(head, 14, info);
  Put32(head, 18, static_cast<std::uint32_t>(rgb.pixels.width()));
  Put32(head, 22, static_cast<std::uint32_t>(rgb.pixels.height()));
  Put16(head, 26, 1);
  Put16(head, 28, 24);
  Put32(head, 34, pixelBytes);
  const auto perMetre = static_cast<std::uint32_t>(std::lround(rgb.tags.dpi / kMetresPerInch));
  Put32(head, 38, perMetre);
  Put32(head, 42, perMetre);
  if (!profile.empty()) {
    Put32(head, kFileHeader + 56, kEmbeddedProfile);
    Put32(head, kFileHeader + 112, info + pixelBytes);
    Put32(head, kFileHeader + 116, static_cast<std::uint32_t>(profile.size()));
  }
  return head;
}

}  // namespace

// BMP stores the bottom row first, so each batch of rows is written at its own position.
Status WriteBmp(const Picture& rgb, host::Draft& draft) {
  const auto width = static_cast<std::uint64_t>(rgb.pixels.width());
  const auto height = static_cast<std::uint64_t>(rgb.pixels.height());
  const std::uint64_t stride = (width * 3 + 3) / 4 * 4;
  const std::uint64_t room = std::numeric_limits<std::uint32_t>::max() - kFileHeader - kProfileHeader;
  if (stride * height + rgb.tags.profile.size() > room) return fault::ResultTooLarge();

  const std::string head = HeaderOf(rgb, static_cast<std::uint32_t>(stride * height));
  if (Status status = draft.Write(head.data(), head.size()); !status) return status;
  std::vector<unsigned char> block;
  Status status = ForEachRows(rgb.pixels, [&](const RowBlock& rows) {
    const auto count = static_cast<std::uint64_t>(rows.count);
    block.assign(stride * count, 0);
    for (std::uint64_t y = 0; y < count; ++y) {
      const unsigned char* from = rows.first + rows.step * y;
      unsigned char* to = block.data() + stride * (count - 1 - y);
      for (std::uint64_t x = 0; x < width; ++x, from += 3, to += 3) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
      }
    }
    const std::uint64_t below = height - static_cast<std::uint64_t>(rows.top) - count;
    if (Status moved = draft.Seek(head.size() + below * stride); !moved) return moved;
    return draft.Write(block.data(), block.size());
  });
  if (!status || rgb.tags.profile.empty()) return status;
  if (Status moved = draft.Seek(head.size() + stride * height); !moved) return moved;
  return draft.Write(rgb.tags.profile.data(), rgb.tags.profile.size());
}

}  // namespace quillon::imaging
