// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/journal.h"

namespace quillon::batch {

// What the workers of a run have told of each file: kept on disk, so that it takes no more memory the more files there
// are.
class FileRecords {
 public:
  // path is that of a file of our own, which is there as long as the records are.
  explicit FileRecords(const std::string& path);
  ~FileRecords();
  FileRecords(const FileRecords&) = delete;
  FileRecords& operator=(const FileRecords&) = delete;

  // --- Of a source: the output that was made of it, "" where none stands; nothing before it was told of.
  std::optional<std::string> OutputOf(const std::string& source);
  void Tell(const std::string& source, const std::string& output);

  // Every source that was told of.
  void EachSource(const std::function<void(const std::string& source)>& take);

  // --- Of an output: the source that it was made of last, "" where that is not known; nothing for a file that no
  // worker has named as its output.
  std::optional<std::string> SourceOf(const std::string& output);
  void TellMade(const std::string& output, const std::string& source);

  // --- A source whose output another one has taken, until its worker says so too.
  void Lose(const std::string& source);
  // Whether it was, from now on it is not.
  bool TakeLost(const std::string& source);

  // Whether nothing of what was told got lost, on a full disk, say. Takes the longer, the more was told.
  bool Complete();

 private:
  std::unique_ptr<host::Journal> journal_;
  std::size_t sources_ = 0;
  std::size_t outputs_ = 0;
};

}  // namespace quillon::batch
