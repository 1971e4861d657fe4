// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/journal.h"
#include "job/settings/done_elsewhere.h"

namespace quillon::cli {

// What the workers of a run have told of each file: kept on disk, so that it takes no more memory the more files there
// are.
class FileRecords {
 public:
  // path is that of a file of our own, which is there as long as the records are.
  explicit FileRecords(const std::string& path);
  ~FileRecords();
  FileRecords(const FileRecords&) = delete;
  FileRecords& operator=(const FileRecords&) = delete;

  // --- Sources that were told of, and whether ever a result of it was. True for one that was not before.
  bool NoteHandled(const std::string& source, job::Wrote wrote);
  bool Handled(const std::string& source);

  // Every source that was told of.
  void EachSource(const std::function<void(const std::string& source, job::Wrote wrote)>& take);

  // --- Of an output: the source that it was made of last, "" where that is not known; nothing for a file that no
  // worker has named as its output.
  std::optional<std::string> SourceOf(const std::string& output);
  void NoteMade(const std::string& output, const std::string& source);

  // Whether nothing of what was told got lost, on a full disk, say. Takes the longer, the more was told.
  bool Complete();

 private:
  std::unique_ptr<host::Journal> journal_;
  std::size_t sources_ = 0;
  std::size_t outputs_ = 0;
};

}  // namespace quillon::cli
