// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/cut_ledger.h"
#include "job/omitted_folders.h"
#include "job/program.h"

namespace quillon::job {

// What the files of one run share.
struct CutRun {
  CutRun(Program& owner, std::size_t planned) : program(owner), ledger(owner, planned), omitted(owner) {}

  bool OnBackSide() const { return withArray && program.sheets->OnBackSide(); }

  Program& program;
  CutLedger ledger;
  OmittedFolders omitted;
  bool withArray = false;  // ChCutAndArray
  bool pdf = false;        // CmbOutType was 5 at the start; the cut itself makes jpg
  int failed = 0;          // pictures that the effects could not load
};

}  // namespace quillon::job
