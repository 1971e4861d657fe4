// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/journal.h"
#include "job/list/run_context.h"

namespace quillon::job {

// What runs over the list have written into the output folder, if that folder is a listed one or lies below one. When
// the folder is listed again, these files are left out, so that the same job can be done twice without cutting its own
// results.
//
// The records are a journal (host::Journal) of the output folder, shared by all jobs that write there. A record has the
// path of a result below the folder and the result's stamp. A result that was changed since then is a file like any
// other. Nothing is recorded, and nothing is known, if sources are overwritten, if no journal can be kept, or while
// another process has the journal open. Shards keep no records: they leave out the whole output folder.
class ResultRecords {
 public:
  // Opens the records of the present output folder.
  explicit ResultRecords(const RunContext& context);
  ~ResultRecords();
  ResultRecords(const ResultRecords&) = delete;
  ResultRecords& operator=(const ResultRecords&) = delete;

  // Returns the path of the output folder without links; "" if it is neither a listed folder nor below one.
  const std::string& Folder() const { return real_; }
  // Returns whether results are recorded.
  bool Kept() const { return journal_ != nullptr; }
  // Records the outputs of a written file; must be called only if records are kept. A crash loses the records of the
  // last two seconds.
  void Note(const FileResult& result);
  // Returns whether the file at path is a recorded result.
  bool Contains(const std::string& path);

 private:
  void NoteOutput(const std::string& output);
  std::optional<std::string> BelowFolder(const std::string& path);

  const RunContext& context_;
  std::string real_;                        // the output folder, without links
  std::unique_ptr<host::Journal> journal_;  // nullptr: nothing is recorded or known
  double committedAt_ = 0;                  // in seconds of host::Clock
  // The folder of the path that was asked for last, and the same without links.
  std::string lastFolder_;
  std::string lastReal_;
};

}  // namespace quillon::job
