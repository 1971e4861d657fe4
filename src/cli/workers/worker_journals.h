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

// The journals of a worker. A job is done when all workers have done their parts of it: until then none of them may
// forget what it did, or a run that is continued would do that again. So a journal that is done with stays, and the
// reporter is told, as it is of each that is asked for.
class WorkerJournals final : public host::Journals {
 public:
  WorkerJournals(host::Journals& journals, Reporter& reporter) : journals_(journals), reporter_(reporter) {}

  std::unique_ptr<host::Journal> Open(const host::JobPart& part) override;
  std::optional<host::JobPart> FindUnfinished(const std::string& job, const Wanted& wanted) override {
    return journals_.FindUnfinished(job, wanted);
  }
  bool Forget(const std::string& job, const Wanted& wanted) override { return journals_.Forget(job, wanted); }

 private:
  class Kept;

  host::Journals& journals_;
  Reporter& reporter_;
  std::set<host::JobPart> done_;
};

}  // namespace quillon::cli
