// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <string>
#include <vector>

namespace quillon::nightly {

// The content of every file below a folder, by its path from there.
using Tree = std::map<std::string, std::string>;

// Reads the named folders below root; one that does not exist has no files.
Tree ReadTree(const std::string& root, const std::vector<std::string>& folders);
// Writes the files below root, which is emptied before, and creates the named folders.
void WriteTree(const std::string& root, const Tree& tree, const std::vector<std::string>& folders);

// Returns the paths that are drafts of files.
std::vector<std::string> DraftsIn(const Tree& tree);
Tree WithoutDrafts(Tree tree);

}  // namespace quillon::nightly
