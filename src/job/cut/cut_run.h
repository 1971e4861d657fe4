// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <unordered_set>

#include "job/list/omitted_folders.h"
#include "job/program.h"
#include "job/run/run_ledger.h"

namespace quillon::job {

// What the files of one run share.
struct CutRun {
  CutRun(Program& owner, std::size_t planned)
      : program(owner), ledger(owner.context, planned), omitted(owner.context) {}

  bool OnBackSide() const { return withArray && program.sheets->OnBackSide(); }
  // Removes the drafts that a killed run left in a folder of outputs, before the first output of this one goes there.
  void SweepDrafts(const std::string& folder);

  Program& program;
  RunLedger ledger;
  OmittedFolders omitted;
  bool withArray = false;  // ChCutAndArray
  bool pdf = false;        // CmbOutType was 5 at the start; the cut itself makes jpg
  int failed = 0;          // pictures that the effects could not load

 private:
  std::unordered_set<std::string> swept_;
};

}  // namespace quillon::job
