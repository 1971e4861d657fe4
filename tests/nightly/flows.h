// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "nightly/tree.h"

namespace quillon::nightly {

// When a call of the program ends.
enum class Ends {
  Itself,      // when its files are done
  Interrupted  // by SIGINT, after all its pictures were reported
};

// What the call after a broken one has to bring about.
enum class Next {
  MakesAll,    // the same call again: afterwards every source and output is as after an undisturbed run
  ReadsFolder  // another call that reads the folder: it only sweeps what was left there
};

// One way to use the program on a few small pictures. Paths are relative to the folder of the run, which is the current
// folder of the call.
struct Flow {
  std::string name;
  std::string program;  // beside quillon-batch
  std::vector<std::string> arguments;
  std::vector<std::string> pictures;  // names in the folder in
  Tree more;                          // further files that the call reads
  Next next = Next::MakesAll;
  Ends ends = Ends::Itself;
  bool reports = true;  // writes events to stdout
};

// Every flow, and the call of Next::ReadsFolder. root is the folder of the runs.
std::vector<Flow> AllFlows(const std::string& root);
Flow ReadingFlow();

}  // namespace quillon::nightly
