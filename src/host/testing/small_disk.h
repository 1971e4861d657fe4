// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::host::testing {

// A small disk in memory that can really run full. Only the administrator can mount one, and not on every machine, so
// tests must check Mounted().
class SmallDisk {
 public:
  enum class Access { ReadWrite, ReadOnly };

  // Creates folder and mounts the disk there.
  explicit SmallDisk(std::string folder, std::size_t pages = 64, Access access = Access::ReadWrite);
  ~SmallDisk();
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool Mounted() const { return why_.empty(); }
  // Why it could not be mounted.
  const std::string& Why() const { return why_; }

  // Fills the disk until that many pages of 4096 bytes are free.
  void FillUntil(std::size_t pages) const;
  // Frees what FillUntil has filled.
  void Free() const;
  // The names of the entries, except for the filling.
  std::vector<std::string> Names() const;

 private:
  std::string Ballast() const { return folder_ + "/ballast"; }

  std::string folder_;
  std::string why_;
};

}  // namespace quillon::host::testing
