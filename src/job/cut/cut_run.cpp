// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/cut_run.h"

namespace quillon::job {
namespace {

// Sweeping a folder again costs one look at it, a long tree's names all its memory.
constexpr std::size_t kRemembered = 1000;

}  // namespace

void CutRun::SweepDrafts(const std::string& folder) {
  if (swept_.contains(folder)) return;
  if (swept_.size() >= kRemembered) swept_.clear();
  swept_.insert(folder);
  program.host.files.SweepDrafts(folder);
}

}  // namespace quillon::job
