// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "nightly/tree.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/files/files.h"

namespace quillon::nightly {

namespace fs = std::filesystem;

Tree ReadTree(const std::string& root, const std::vector<std::string>& folders) {
  Tree tree;
  for (const std::string& folder : folders) {
    if (!fs::exists(root + "/" + folder)) continue;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root + "/" + folder)) {
      if (!entry.is_regular_file()) continue;
      std::ostringstream content;
      content << std::ifstream(entry.path(), std::ios::binary).rdbuf();
      tree[entry.path().native().substr(root.size() + 1)] = content.str();
    }
  }
  return tree;
}

void WriteTree(const std::string& root, const Tree& tree, const std::vector<std::string>& folders) {
  fs::remove_all(root);
  for (const std::string& folder : folders) fs::create_directories(root + "/" + folder);
  for (const auto& [path, content] : tree) {
    fs::create_directories(fs::path(root + "/" + path).parent_path());
    std::ofstream(root + "/" + path, std::ios::binary) << content;
  }
}

std::vector<std::string> DraftsIn(const Tree& tree) {
  std::vector<std::string> drafts;
  for (const auto& [path, content] : tree) {
    if (host::IsDraftName(path.substr(path.rfind('/') + 1))) drafts.push_back(path);
  }
  return drafts;
}

Tree WithoutDrafts(Tree tree) {
  for (const std::string& draft : DraftsIn(tree)) tree.erase(draft);
  return tree;
}

}  // namespace quillon::nightly
