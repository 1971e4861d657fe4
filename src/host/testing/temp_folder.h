// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::host::testing {

// A folder of a test's own, removed with all it holds at the end. The calls go to the system directly, so that what a
// test arranges and looks at does not depend on what it tests; they throw std::runtime_error when they fail.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  // The path of an entry in it.
  std::string Path(std::string_view entry) const;
  // Writes a file, with the folders above it; gives its path.
  std::string Write(std::string_view entry, std::string_view content) const;
  std::string Read(std::string_view entry) const;
  bool Exists(std::string_view entry) const;  // a dangling link exists too
  // The names in a folder of it, hidden ones too, sorted by their bytes.
  std::vector<std::string> Names(std::string_view folder = "") const;

 private:
  std::string path_;
};

}  // namespace quillon::host::testing
