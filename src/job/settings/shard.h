// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillon::job {

// One of several stable parts of all files. Which part a file belongs to depends on its relative path alone (the bytes
// of it), so that it is the same on every machine and in every run; each file belongs to exactly one.
struct Shard {
  std::uint64_t index = 0;  // from 0
  std::uint64_t count = 1;
  std::string base;         // the folder that named files are seen from, "" for the root
  std::uint64_t among = 1;  // how many processes of one call have parts of its share, where this is one of them

  bool Whole() const { return count <= 1; }
  bool Owns(std::string_view relativePath) const;
  // A named file is seen from base where it lies below it, and else by its whole path.
  bool OwnsNamed(std::string_view path) const;
  // Whether any file can belong to both.
  bool Overlaps(const Shard& other) const;
  // The part of this part: one of `processes` equal ones.
  Shard Part(std::uint64_t number, std::uint64_t processes) const;
  // What all processes of the call have together.
  Shard OfCall() const;
};

enum class Wrote { No, Yes };

// Sources that another process has handled, and whether a result of each stands.
using DoneElsewhere = std::unordered_map<std::string, Wrote>;

}  // namespace quillon::job
