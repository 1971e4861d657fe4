// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "nightly/fault_state.h"
#include "nightly/flows.h"

namespace quillon::nightly {

// Where the calls run, and what they run with.
struct Place {
  std::string programs;  // the folder of quillon-batch and the helpers
  std::string library;   // the preloaded library
  std::string work;      // a folder of its own: root, the fault and what the calls write

  // The folder of a run, which is its current folder. It holds in, out, tmp (TMPDIR), config and data (XDG).
  std::string Root() const { return work + "/root"; }
  std::string FaultFile() const { return work + "/fault"; }
};

// What the last event about a source and one of its outputs says.
struct FileEnd {
  std::string source;
  std::string result;  // written, none or skipped
  std::string why;
  std::vector<std::string> outputs;
};

// How a call ended.
struct Call {
  int exit = -1;  // -1 if a signal ended it
  int signal = 0;
  bool hung = false;      // had to be killed
  bool orphaned = false;  // a process that it had started went on without it
  std::string errors;     // stderr
  std::string events;     // stdout
  // By source and first output, which is empty if the source has none.
  std::map<std::pair<std::string, std::string>, FileEnd> ends;
};

// Runs the flow with the fault in place.FaultFile(), or undisturbed.
enum class Faults { On, Off };
Call RunCall(const Place& place, const Flow& flow, Faults faults);

// Returns true if the text has a character of the Chinese script.
bool HoldsChinese(const std::string& text);

}  // namespace quillon::nightly
