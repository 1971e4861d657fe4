// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::host::testing {

// A temporary folder of a test. It is removed with its content at the end.
// Its methods call the system directly, so that what a test prepares and inspects does not depend on the code under
// test.
// They throw std::runtime_error on failure.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  // The path of an entry inside, "" for the folder itself.
  std::string Path(std::string_view entry) const;
  // Writes a file and creates its parent folders. Returns its path.
  std::string Write(std::string_view entry, std::string_view content) const;
  std::string Read(std::string_view entry) const;
  bool Exists(std::string_view entry) const;  // true for a dangling link too
  // The names of the entries of a folder inside, hidden ones included, sorted by their bytes.
  std::vector<std::string> Names(std::string_view folder = "") const;

 private:
  std::string path_;
};

}  // namespace quillon::host::testing
