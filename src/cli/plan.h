// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "job/settings/run_report.h"
#include "job/settings/shard.h"

namespace quillon::cli {

enum class Verb { Set, Open, Close, Click, Print, Files };

// One step of a plan: what a user of the windows does. "Files" adds files and folders to the list.
struct Step {
  Verb verb = Verb::Set;
  std::string name;                // the control or window, as the user wrote it; not checked yet
  std::string value;               // only for Set
  std::vector<std::string> files;  // only for Files: absolute paths
  std::string place;  // the place in the arguments, for messages: "--set TQuality=90", "job.json 第 2 步"

  bool operator==(const Step&) const = default;
};

// The answer to every box or dialog whose text contains `text`.
struct Answer {
  std::string text;
  std::string reply;  // the name of a reply for a box, a path for a dialog, a button of FCutPre for a manual step
  std::string place;  // as in Step

  bool operator==(const Answer&) const = default;
};

// Everything that one command line asks for. Steps and answers keep the order in which they were given. The files and
// folders of the command line are the first step.
struct Plan {
  std::vector<Step> steps;
  std::vector<Answer> answers;
  job::Shard shard;      // the part of all files that this call handles
  std::size_t jobs = 1;  // number of worker processes, 1 to 256; 1 starts none
  job::OnExisting onExisting = job::OnExisting::Replace;
  bool json = false;          // events as JSON lines on stdout
  bool trace = false;         // change events too; only counts with json
  bool listControls = false;  // list all controls after the last step
  bool help = false;
  bool version = false;
};

// The exit codes of quillon-batch.
enum class Exit {
  AllWritten = 0,      // every file was written or skipped
  SomeWithout = 1,     // some file has no output, a run did not start, or events were lost
  WrongArguments = 2,  // an argument is wrong, or a step was refused
  Stopped = 3          // stopped by a signal or by the user
};

}  // namespace quillon::cli
