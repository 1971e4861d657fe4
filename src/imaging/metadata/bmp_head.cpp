// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/bmp_head.h"

#include <algorithm>
#include <array>

namespace quillon::imaging {
namespace {

constexpr std::uint32_t kShortestLongHeader = 16;  // of OS/2 2.x, which may end after the bits

std::uint32_t Get16(const unsigned char* at) { return at[0] | static_cast<std::uint32_t>(at[1]) << 8; }
std::uint32_t Get32(const unsigned char* at) { return Get16(at) | Get16(at + 2) << 16; }
std::int64_t Signed32(const unsigned char* at) { return static_cast<std::int32_t>(Get32(at)); }

}  // namespace

std::optional<BmpHead> ReadBmpHead(Bytes& bytes) {
  std::array<unsigned char, BmpHead::kFileHeader + 4> start{};
  if (!bytes.ReadAt(0, start.data(), start.size()) || start[0] != 'B' || start[1] != 'M') return std::nullopt;
  BmpHead head;
  head.pixels = Get32(&start[10]);
  head.size = Get32(&start[BmpHead::kFileHeader]);
  const bool core = head.size == BmpHead::kCoreHeader;
  if (!core && head.size < kShortestLongHeader) return std::nullopt;
  std::array<unsigned char, BmpHead::kInfoHeader> info{};
  if (!bytes.ReadAt(BmpHead::kFileHeader, info.data(), std::min(head.size, BmpHead::kInfoHeader))) return std::nullopt;
  head.width = core ? Get16(&info[4]) : Signed32(&info[4]);
  head.height = core ? Get16(&info[6]) : Signed32(&info[8]);
  head.bits = Get16(&info[core ? 10 : 14]);
  if (head.size >= BmpHead::kInfoHeader) head.perMetre = Signed32(&info[24]);
  return head;
}

}  // namespace quillon::imaging
