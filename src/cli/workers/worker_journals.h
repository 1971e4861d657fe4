// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "cli/report/reporter.h"
#include "host/journal.h"

namespace quillon::cli {

// The journals of a worker process.
//
// A job is done when all workers have done their parts of it. If a worker removed its journal earlier and the run broke
// off, the continued run would do that worker's part again. So Remove() keeps the journal on disk and only reports that
// the part is done; the parent process removes the journals when all parts are done.
class WorkerJournals final : public host::Journals {
 public:
  // Both must outlive this object and the journals that it opens.
  WorkerJournals(host::Journals& journals, Reporter& reporter) : journals_(journals), reporter_(reporter) {}

  // Also reports the part to the reporter, even if no journal can be opened.
  std::unique_ptr<host::Journal> Open(const host::JobPart& part) override;
  std::optional<host::JobPart> FindUnfinished(const std::string& job, const Wanted& wanted) override {
    return journals_.FindUnfinished(job, wanted);
  }
  bool Forget(const std::string& job, const Wanted& wanted) override { return journals_.Forget(job, wanted); }

 private:
  class Kept;

  host::Journals& journals_;
  Reporter& reporter_;
  std::set<host::JobPart> done_;  // parts that this worker has done, whose journals are still on disk
};

}  // namespace quillon::cli
