// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/testing/temp_folder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "base/path_text.h"

namespace quillon::host::testing {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::string path = (fs::temp_directory_path() / ("quillon-test-" + std::string(6, 'X'))).native();
  if (!mkdtemp(path.data())) throw std::runtime_error("no temporary folder: " + path);
  path_ = fs::canonical(path).native();
}

TempFolder::~TempFolder() {
  std::error_code error;
  // A folder that a test made read-only would keep its entries.
  for (fs::recursive_directory_iterator entry(path_, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    if (entry->symlink_status(ignored).type() == fs::file_type::directory) {
      fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
  fs::remove_all(path_, error);
}

std::string TempFolder::Path(std::string_view entry) const {
  return entry.empty() ? path_ : base::JoinPath(path_, entry);
}

std::string TempFolder::Write(std::string_view entry, std::string_view content) const {
  const std::string path = Path(entry);
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
  return path;
}

std::string TempFolder::Read(std::string_view entry) const {
  std::ifstream file(Path(entry), std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + Path(entry));
  return {std::istreambuf_iterator<char>(file), {}};
}

bool TempFolder::Exists(std::string_view entry) const {
  std::error_code error;
  return fs::exists(fs::symlink_status(Path(entry), error));
}

std::vector<std::string> TempFolder::Names(std::string_view folder) const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(Path(folder))) names.push_back(entry.path().filename().native());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace quillon::host::testing
