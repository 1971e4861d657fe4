// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/background_call.h"
#include "host/files/files.h"
#include "job/list/disk_timeout.h"

namespace quillon::job {

class Program;

// What stands under a path, and the entries where that is a folder.
struct FolderContent {
  std::optional<host::FileFacts> facts;  // nothing where the path leads nowhere
  std::vector<host::FolderEntry> entries;
  host::Status listed;  // what ended the listing early; the entries before it count
};

// A look at a path that waits for no disk that answers no longer. It begins at once, behind the program.
class FolderReader {
 public:
  FolderReader(Program& program, const std::string& path);
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;

  // True once all is read; waits at most so long for it.
  bool Done(double seconds) const { return errand_.Done(seconds); }
  // Waits for the content. The pump has its turns meanwhile, a stop request is obeyed at once, and after half a minute
  // of silence the path is given up with the sentence "没有响应". The last call.
  FolderContent Take();

 private:
  struct Reading;
  static host::BackgroundCall::Work WorkOf(std::shared_ptr<Reading> reading, const host::Files& files,
                                           std::string path);

  DiskTimeout patience_;
  std::shared_ptr<Reading> reading_;
  host::BackgroundCall errand_;
};

}  // namespace quillon::job
