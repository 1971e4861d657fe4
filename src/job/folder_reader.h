// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/files.h"
#include "host/host.h"

namespace quillon::job {

class Program;

// What stands under a path, and the entries where that is a folder.
struct FolderContent {
  std::optional<host::FileFacts> facts;  // nothing where the path leads nowhere
  std::vector<host::FolderEntry> entries;
  host::Status listed;  // what ended the listing early; the entries before it count
};

// Looks at a path without waiting for a disk that no longer answers: the pump has its turns meanwhile, a stop request
// is obeyed at once, and after half a minute of silence the path is given up with the sentence "没有响应".
FolderContent ReadFolder(Program& program, const std::string& path);

}  // namespace quillon::job
