// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/folder_reader.h"

#include <utility>

#include "job/program.h"

namespace quillon::job {

// Shared with the errand, which may outlive its caller.
struct FolderReader::Reading {
  FolderContent content;
  std::atomic<std::size_t> seen = 0;
};

FolderReader::FolderReader(Program& program, const std::string& path)
    : patience_(program), reading_(std::make_shared<Reading>()), errand_(WorkOf(reading_, program.host.files, path)) {}

host::BackgroundCall::Work FolderReader::WorkOf(std::shared_ptr<Reading> reading, const host::Files& files,
                                                std::string path) {
  return [reading = std::move(reading), path = std::move(path), &files](const std::atomic<bool>& stop) {
    FolderContent& content = reading->content;
    content.facts = files.Stat(path);
    if (!content.facts || content.facts->kind != host::FileKind::Folder) return;
    content.listed = files.ListFolder(path, [&](const host::FolderEntry& entry) {
      if (stop) return false;
      content.entries.push_back(entry);
      ++reading->seen;
      return true;
    });
  };
}

FolderContent FolderReader::Take() {
  host::Status answered = patience_.Await(errand_, reading_->seen);
  if (answered) return std::move(reading_->content);
  FolderContent given;
  given.listed = std::move(answered);
  return given;
}

}  // namespace quillon::job
