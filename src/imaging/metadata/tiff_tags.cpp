// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/tiff_tags.h"

#include <algorithm>
#include <array>
#include <limits>

namespace quillon::imaging {
namespace {

constexpr std::uint32_t kShort = 3;
constexpr std::uint32_t kLong = 4;
constexpr std::uint32_t kRational = 5;
constexpr std::uint32_t kSignedRational = 10;
constexpr std::uint32_t kIfd = 13;
constexpr std::uint32_t kLong8 = 16;
constexpr std::uint32_t kIfd8 = 18;
// Larger than any real directory; a forged count must not allocate memory.
constexpr std::uint64_t kEntriesMax = 4096;

}  // namespace

int TiffNumberSize(std::uint32_t type) {
  // Indexed by type number. Types 14 and 15 are not assigned.
  constexpr std::array<int, 19> kSizes = {0, 1, 1, 2, 4, 4, 1, 1, 2, 4, 4, 4, 8, 4, 0, 0, 8, 8, 8};
  return type < kSizes.size() ? kSizes[type] : 0;
}

std::optional<TiffTags> TiffTags::Open(Bytes& bytes) {
  TiffTags tags(bytes);
  std::array<char, 4> start{};
  if (!bytes.ReadAt(0, start.data(), start.size())) return std::nullopt;
  tags.big_ = start[0] == 'M';
  if (start[0] != start[1] || (start[0] != 'M' && start[0] != 'I')) return std::nullopt;
  // 42 is a classic TIFF, 43 a BigTIFF.
  std::uint64_t version = 0;
  if (!tags.Number(2, 2, version) || (version != 42 && version != 43)) return std::nullopt;
  tags.wide_ = version == 43;
  if (!tags.Number(tags.wide_ ? 8 : 4, tags.wide_ ? 8 : 4, tags.first_)) return std::nullopt;
  return tags;
}

bool TiffTags::Number(std::uint64_t at, int size, std::uint64_t& value) const {
  std::array<unsigned char, 8> read{};
  if (!bytes_->ReadAt(at, read.data(), static_cast<std::size_t>(size))) return false;
  value = 0;
  for (int i = 0; i < size; ++i) value = value << 8 | read[static_cast<std::size_t>(big_ ? i : size - 1 - i)];
  return true;
}

std::optional<std::vector<TiffEntry>> TiffTags::Directory(std::uint64_t at) const {
  const int countSize = wide_ ? 8 : 2;
  const std::uint64_t entrySize = wide_ ? 20 : 12;
  std::uint64_t count = 0;
  if (at < 8 || !Number(at, countSize, count) || count > kEntriesMax) return std::nullopt;
  std::vector<TiffEntry> entries;
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::uint64_t from = at + static_cast<unsigned>(countSize) + i * entrySize;
    TiffEntry entry;
    std::uint64_t tag = 0;
    std::uint64_t type = 0;
    const int field = wide_ ? 8 : 4;
    if (!Number(from, 2, tag) || !Number(from + 2, 2, type) || !Number(from + 4, field, entry.count)) return {};
    entry.tag = static_cast<std::uint32_t>(tag);
    entry.type = static_cast<std::uint32_t>(type);
    const bool pair = entry.type == kRational || entry.type == kSignedRational;
    const std::uint64_t unit = static_cast<unsigned>(TiffNumberSize(entry.type)) * (pair ? 2U : 1U);
    const std::uint64_t room = std::numeric_limits<std::uint64_t>::max() / 16;
    entry.size = entry.count > room ? room : entry.count * unit;
    entry.at = from + 4 + static_cast<unsigned>(field);
    if (entry.size > static_cast<unsigned>(field) && !Number(entry.at, field, entry.at)) return std::nullopt;
    entries.push_back(entry);
  }
  return entries;
}

bool TiffTags::Holds(const TiffEntry& entry) const {
  return entry.at <= bytes_->Size() && entry.size <= bytes_->Size() - entry.at;
}

std::optional<std::uint64_t> TiffTags::Integer(const TiffEntry& entry) const {
  const bool whole = entry.type == kShort || entry.type == kLong || entry.type == kIfd ||
                     (entry.type >= kLong8 && entry.type <= kIfd8);
  std::uint64_t value = 0;
  if (!whole || entry.count != 1 || !Number(entry.at, TiffNumberSize(entry.type), value)) return std::nullopt;
  return value;
}

std::optional<double> TiffTags::Rational(const TiffEntry& entry) const {
  std::uint64_t above = 0;
  std::uint64_t below = 0;
  if (entry.type != kRational || entry.count < 1 || !Number(entry.at, 4, above) || !Number(entry.at + 4, 4, below)) {
    return std::nullopt;
  }
  if (below == 0) return std::nullopt;
  return static_cast<double>(above) / static_cast<double>(below);
}

std::optional<std::string> TiffTags::Values(const TiffEntry& entry, std::uint64_t limit) const {
  if (entry.size > limit) return std::nullopt;
  std::string values(entry.size, '\0');
  if (!bytes_->ReadAt(entry.at, values.data(), values.size())) return std::nullopt;
  const auto unit = static_cast<std::ptrdiff_t>(TiffNumberSize(entry.type));
  if (big_ && unit > 1) {
    for (auto at = values.begin(); at != values.end(); at += unit) std::reverse(at, at + unit);
  }
  return values;
}

}  // namespace quillon::imaging
