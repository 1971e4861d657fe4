// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "job/list/file_list.h"
#include "job/run/driver.h"
#include "job/run/run_journal.h"
#include "job/run/run_ledger.h"

namespace quillon::job {

// The run over the list that all drivers share: hands the rows to the driver one by one, from the first to the last. A
// stop request ends it after any file: the rows behind that are reported as skipped. A row whose disk is silent gets no
// output.
class ListRun {
 public:
  ListRun(const RunContext& context, RunLedger& ledger, RunJournal& journal, RunDriver& driver, const RunNeeds& needs);

  // Reports the start and each file to the observer, and returns once all outputs stand on disk. The caller reports the
  // end.
  void Run();

 private:
  void HandleRow(std::size_t row);
  // Why a row must not be handled in a run that replaces its sources; "" if it may.
  std::string WhyNotReplaced(std::size_t row);
  void ReportAll(const RunFile& file, Result result, const std::string& why);

  const RunContext& context_;
  RunLedger& ledger_;
  RunJournal& journal_;
  RunDriver& driver_;
  const RunNeeds& needs_;
  std::map<host::FileId, std::size_t> replaced_;  // files of the rows so far
};

// Runs the driver over the list, or in large-capacity mode over the input folder, from the first check to the last box.
// In this order: claims the one place of work (beeps and does nothing if something runs already), asks for what the
// driver needs, lets it prepare, hides and disables windows, handles the files, and puts everything back.
void StartRun(const RunContext& context, RunDriver& driver);

}  // namespace quillon::job
