// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/journal.h"
#include "job/settings/shard.h"

namespace quillon::cli {

// What the workers of a run have reported about each file. The records are in a scratch file on disk, so that the
// memory of the parent process does not grow with the number of files.
//
// No function fails: a record that cannot be written is lost, and Complete() finds that out.
class FileRecords {
 public:
  // path is a file of the program's own; the destructor removes it.
  explicit FileRecords(const std::string& path);
  ~FileRecords();
  FileRecords(const FileRecords&) = delete;
  FileRecords& operator=(const FileRecords&) = delete;

  // --- Sources

  // Records that the source was handled. Wrote::Yes stays, even if No follows for the same source. Returns true if the
  // source was not recorded before.
  bool NoteHandled(const std::string& source, job::Wrote wrote);
  // Returns true if the source was recorded.
  bool Handled(const std::string& source);
  // Calls visit for every recorded source, in no particular order.
  void EachSource(const std::function<void(const std::string& source, job::Wrote wrote)>& visit);

  // --- Outputs

  // Returns the source that the output was last made of; "" if that is not known; nothing if no worker has named the
  // file as its output.
  std::optional<std::string> SourceOf(const std::string& output);
  // Records the output; source may be "". A later call for the same output replaces the source.
  void NoteOutput(const std::string& output, const std::string& source);

  // Returns true if no record was lost, for example on a full disk. Reads all records, so its time grows with them.
  bool Complete();

 private:
  std::unique_ptr<host::Journal> journal_;  // nullptr if the scratch file could not be created
  std::size_t sources_ = 0;                 // records that must be in the file
  std::size_t outputs_ = 0;
};

}  // namespace quillon::cli
