// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <stdlib.h>

namespace quillon::imaging::testing {

// A temporary folder for one test; it is removed with the object.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quillon-imaging-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("mkdtemp");
    path_ = name;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string Path(const std::string& name) const { return path_ + "/" + name; }

  // Writes a file and returns its path.
  std::string Put(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }

 private:
  std::string path_;
};

}  // namespace quillon::imaging::testing
