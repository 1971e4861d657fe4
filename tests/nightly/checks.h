// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "nightly/call.h"
#include "nightly/tree.h"

namespace quillon::nightly {

// What must hold for a flow: its files before a run, and after a run that nothing disturbed.
struct Expected {
  Tree before;
  Tree after;
};

// What may end a disturbed call.
enum class MayEnd {
  ByItself,  // only its own exit codes
  ByKill,    // or the kill of its first process
  ByAbort    // or the abort of a library that got no memory
};

using Problems = std::vector<std::string>;

// Every source has its content of before or of after, and every output that of after, or is missing.
Problems CheckNothingLost(const Expected& expected, const Tree& now, const Call& call);
// The call ended in time, with an exit code and events that are true of what is on disk.
Problems CheckReport(const Place& place, const Expected& expected, const Tree& now, const Call& call, MayEnd mayEnd);
// After an undisturbed call: no draft and no private folder; with Next::MakesAll all files of after and no journal.
Problems CheckNextCall(const Place& place, const Flow& flow, const Expected& expected, const Call& call);

}  // namespace quillon::nightly
