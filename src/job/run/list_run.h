// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include "host/files/file_stamp.h"
#include "job/list/file_list.h"
#include "job/list/result_records.h"
#include "job/run/driver.h"
#include "job/run/run_journal.h"
#include "job/run/run_ledger.h"

namespace quillon::job {

// Calls the driver for each row of the list, in order. After a stop request, the remaining rows are reported as
// skipped. A row on an unresponsive disk gets no output.
class ListRun {
 public:
  ListRun(const RunContext& context, RunLedger& ledger, RunJournal& journal, RunDriver& driver, const RunNeeds& needs);

  // Reports the start and each file to the observer. Returns after all outputs are synced. The caller reports the end.
  void Run();

 private:
  void HandleRow(std::size_t row);
  struct Replaced {
    host::FileStamp stamp;
    std::size_t row = 0;
  };

  // Returns why a run that replaces its sources must not handle the row; "" if it may.
  std::string WhyNotReplaced(std::size_t row);
  // Remembers the source of a row that got an output. A stamp is kept with its number, because a new file may get the
  // number of one that was replaced.
  void NoteReplaced(const RunFile& file, const std::optional<host::FileStamp>& before);
  void ReportWithout(const RunFile& file, Result result, const std::string& why);

  const RunContext& context_;
  RunLedger& ledger_;
  RunJournal& journal_;
  RunDriver& driver_;
  const RunNeeds& needs_;
  ResultRecords results_;
  // The sources of the rows that got an output, as they were before and after it, with the row.
  std::map<host::FileId, Replaced> replaced_;
};

// Runs the driver over the list, or in large-capacity mode over the input folder, from the first check to the last box.
// In this order: claims the run (beeps and does nothing if something runs already), asks for what the driver needs,
// lets it prepare, hides and disables windows, handles the files, and restores the windows.
void StartRun(const RunContext& context, RunDriver& driver);

}  // namespace quillon::job
