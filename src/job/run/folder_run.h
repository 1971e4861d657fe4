// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "job/list/file_count.h"
#include "job/list/file_walk.h"
#include "job/run/driver.h"
#include "job/run/run_journal.h"
#include "job/run/run_ledger.h"

namespace quillon::job {

// The large-capacity run that all drivers share: no list; every file of the input folder that the mode accepts goes
// straight to the driver, in the order of the walk. The window stays usable, MenuStop ends the run after any file, and
// the memory that a run needs does not grow with it.
//
// Files in an output folder that lies below the input folder are not handled, unless results go beside their sources.
// If the walk can come upon results, those of this run and of the part that it resumes are passed over. A run that
// could not reach all folders has not come to its end and can be resumed.
class FolderRun {
 public:
  FolderRun(const RunContext& context, RunLedger& ledger, RunJournal& journal, RunDriver& driver);
  ~FolderRun();
  FolderRun(const FolderRun&) = delete;
  FolderRun& operator=(const FolderRun&) = delete;

  // Asks whether an unfinished run of the same job is to be resumed; false if the user wants no run.
  bool Begin();
  // Empties the list and walks the input folder, with its subfolders if ChSubFold is on. Reports the start, each file
  // and, once they are counted, the number of files to the observer. The caller reports the end.
  void Walk();

 private:
  std::string Root() const;
  WalkRule Rule() const;
  void HandleNext(const FileWalk& walk, const std::string& path);
  void Handle(const FileWalk& walk, const std::string& path);
  // A file that an earlier part of the job has handled.
  void ReportStanding(const std::string& path);
  // A result that the walk has come upon.
  bool IsResult(const std::string& path);
  void DiscardStaleOutputs(const std::string& source);
  void CheckPoint();
  void ReportCount(const FileCount& count);
  // Whether path, which exists, is one that this walk hands out.
  bool IsSource(const std::string& path) const;

  const RunContext& context_;
  RunLedger& ledger_;
  RunJournal& journal_;
  RunDriver& driver_;
  std::string root_;
  WalkRule rule_;
  std::size_t number_ = 0;
  std::size_t unchecked_ = 0;  // files since the last checkpoint
  double checked_ = 0;         // when that was
  bool countReported_ = false;
  bool reachedAll_ = true;  // no file was passed over because its disk did not answer
};

}  // namespace quillon::job
