// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/shard.h"

#include <numeric>

namespace quillon::job {
namespace {

// FNV-1a, with its bits mixed at the end so that every count of shards splits names evenly. It must never change: runs
// on many machines, and of many versions, have to agree.
std::uint64_t Hash(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  hash ^= hash >> 33;
  hash *= 0xFF51AFD7ED558CCD;
  return hash ^ hash >> 33;
}

}  // namespace

bool Shard::Owns(std::string_view relativePath) const { return Whole() || Hash(relativePath) % count == index; }

bool Shard::OwnsNamed(std::string_view path) const {
  const bool below = path.size() > base.size() && path.starts_with(base) && path[base.size()] == '/';
  if (below) path.remove_prefix(base.size() + 1);
  return Owns(path);
}

// One hash can have both remainders if and only if they agree modulo the greatest common divisor of the two counts.
bool Shard::Overlaps(const Shard& other) const {
  const std::uint64_t common = std::gcd(count, other.count);
  return index % common == other.index % common;
}

Shard Shard::Part(std::uint64_t number, std::uint64_t processes) const {
  return {index + count * number, count * processes, base, processes};
}

Shard Shard::OfCall() const {
  const std::uint64_t ofCall = count / among;
  return {index % ofCall, ofCall, base};
}

}  // namespace quillon::job
