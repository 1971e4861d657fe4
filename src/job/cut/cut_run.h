// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <unordered_set>

#include "job/list/omitted_folders.h"
#include "job/program.h"
#include "job/run/run_journal.h"
#include "job/run/run_ledger.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {

// The state that all files of one run share.
struct CutRun {
  CutRun(Program& owner, RunLedger& runLedger, RunJournal& runJournal)
      : program(owner), ledger(runLedger), journal(runJournal), omitted(owner.context) {}

  bool OnBackSide() const { return withArray && program.sheets->OnBackSide(); }
  // Removes the drafts that a killed run left in a folder of outputs, before the first output of this one goes there.
  void SweepDrafts(const std::string& folder) {
    if (swept_.contains(folder)) return;
    if (swept_.size() >= kSweptRemembered) swept_.clear();
    swept_.insert(folder);
    program.host.files.SweepDrafts(folder);
  }

  Program& program;
  RunLedger& ledger;
  RunJournal& journal;
  OmittedFolders omitted;
  std::optional<CutSettings> settings;  // of all files, if they were read at the start; else each file reads its own
  bool withArray = false;               // ChCutAndArray
  bool pdf = false;                     // CmbOutType was 5 at the start; the cut itself makes jpg
  int failed = 0;                       // pictures that the effects could not load

 private:
  // To sweep a folder again costs one listing; to remember all folders of a deep tree costs memory without limit.
  static constexpr std::size_t kSweptRemembered = 1000;

  std::unordered_set<std::string> swept_;
};

}  // namespace quillon::job
