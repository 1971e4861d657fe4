// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillon::job {

// One of several stable parts of all files. The bytes of a file's relative path alone decide to which shard it belongs,
// so that it is the same one on every machine and in every run. Each file belongs to exactly one.
struct Shard {
  std::uint64_t index = 0;  // from 0
  std::uint64_t count = 1;
  std::string base;         // the folder to which the paths of named files are relative, "" for the root
  std::uint64_t among = 1;  // how many processes of one call split its shard, this one included

  bool Whole() const { return count <= 1; }
  bool Owns(std::string_view relativePath) const;
  // As Owns, for a named file: by its path relative to base if it lies below it, else by its whole path.
  bool OwnsNamed(std::string_view path) const;
  // Returns whether any file can belong to both.
  bool Overlaps(const Shard& other) const;
  // Splits this shard into `processes` equal ones and returns the one of that number, from 0.
  Shard Part(std::uint64_t number, std::uint64_t processes) const;
  // Returns the shard of the call, which is split among all its processes.
  Shard OfCall() const;
};

enum class Wrote { No, Yes };

// Sources that an earlier worker has handled, and whether it wrote a result of each.
using DoneElsewhere = std::unordered_map<std::string, Wrote>;

}  // namespace quillon::job
