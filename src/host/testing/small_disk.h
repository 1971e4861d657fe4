// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::host::testing {

// A disk of its own, small and in memory, that really runs full. Only the administrator may mount one, and not
// everywhere: tests look whether it is there.
class SmallDisk {
 public:
  enum class Access { ReadWrite, ReadOnly };

  // Mounts it on folder, which is made.
  explicit SmallDisk(std::string folder, std::size_t pages = 64, Access access = Access::ReadWrite);
  ~SmallDisk();
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool Mounted() const { return why_.empty(); }
  // Why it could not be mounted.
  const std::string& Why() const { return why_; }

  // Fills it up until that many pages are left.
  void Leave(std::size_t pages) const;
  void Free() const;
  // What lies on it, without what fills it up.
  std::vector<std::string> Names() const;

 private:
  std::string Ballast() const { return folder_ + "/ballast"; }

  std::string folder_;
  std::string why_;
};

}  // namespace quillon::host::testing
