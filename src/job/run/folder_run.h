// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "job/list/file_count.h"
#include "job/list/file_walk.h"
#include "job/run/driver.h"
#include "job/run/run_journal.h"
#include "job/run/run_ledger.h"

namespace quillon::job {

// Walks the input folder and calls the driver for each accepted file, without a list. All drivers use it for
// large-capacity runs. The window stays usable, MenuStop ends the run after any file, and memory does not grow with the
// number of files.
//
// If the output folder is below the input folder, its files are not handled, unless results go beside their sources. If
// the walk can find results, those of this run and of the part that it resumes are skipped. A run that could not read
// all folders is not complete and can be resumed.
class FolderRun {
 public:
  FolderRun(const RunContext& context, RunLedger& ledger, RunJournal& journal, RunDriver& driver);
  ~FolderRun();
  FolderRun(const FolderRun&) = delete;
  FolderRun& operator=(const FolderRun&) = delete;

  // Asks whether to resume an unfinished run of the same job. Returns false if the user wants no run.
  bool Begin();
  // Empties the list and walks the input folder, with its subfolders if ChSubFold is on. Reports to the observer the
  // start, each file, and the number of files as soon as they are counted. The caller reports the end.
  void Walk();

 private:
  std::string Root() const;
  WalkRule Rule() const;
  void HandleNext(const FileWalk& walk, const std::string& path);
  void Handle(const FileWalk& walk, const std::string& path);
  // Reports a file that an earlier part of the job has handled.
  void ReportStanding(const std::string& path);
  // Returns the origin of an output that the ledger has forgotten; nothing for any other file.
  std::optional<RunLedger::Origin> OriginOf(const std::string& output);
  // Returns whether path is a result that the walk has found.
  bool IsResult(const std::string& path);
  void RecallFromJournal();
  // Returns whether outputs are recorded before they are written.
  bool RecordsOutputs() const;
  void DiscardStaleOutputs(const std::string& source);
  // Ends the run before path, whose record could not be stored, is overwritten.
  void StopUnrecorded(const std::string& path);
  void CheckPoint();
  void ReportCount(const FileCount& count);
  // Returns whether path, which exists, is a file that this walk visits.
  bool IsSource(const std::string& path) const;

  const RunContext& context_;
  RunLedger& ledger_;
  RunJournal& journal_;
  RunDriver& driver_;
  std::string root_;
  WalkRule rule_;
  std::size_t number_ = 0;
  std::size_t unchecked_ = 0;  // files since the last checkpoint
  double checked_ = 0;         // time of the last checkpoint, in seconds of host::Clock
  bool countReported_ = false;
  bool reachedAll_ = true;  // false once a file was skipped because its disk did not answer
};

}  // namespace quillon::job
