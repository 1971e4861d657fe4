// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::host::testing {

// Reports whether a file is opened, by whatever call and thread. For reads that do not go through Disk.
class OpenWatch {
 public:
  // The file must exist.
  explicit OpenWatch(const std::string& path);
  ~OpenWatch();
  OpenWatch(const OpenWatch&) = delete;
  OpenWatch& operator=(const OpenWatch&) = delete;

  // Whether the file was opened since the object was made, or since the last call.
  bool Opened();

 private:
  int queue_;
};

}  // namespace quillon::host::testing
