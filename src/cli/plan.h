// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "job/settings/shard.h"

namespace quillon::cli {

enum class Verb { Set, Open, Close, Click, Print, Files };

// One thing that a user of the windows does.
struct Step {
  Verb verb = Verb::Set;
  std::string name;                // of the control or window, as it was given
  std::string value;               // of Set
  std::vector<std::string> files;  // of Files
  std::string place;               // where the step was given, for messages: "--set TQuality=90", "job.json 第 2 步"

  bool operator==(const Step&) const = default;
};

// What a box or dialog whose text holds text is answered with: the name of a reply, or a path for a dialog.
struct Answer {
  std::string text;
  std::string reply;
  std::string place;

  bool operator==(const Answer&) const = default;
};

// All that one command line asks for. Steps and answers stand in the order in which they were given; the files and
// folders of the command line come as a first step of their own.
struct Plan {
  std::vector<Step> steps;
  std::vector<Answer> answers;
  job::Shard shard;      // of all files, the part that this call is to handle
  std::size_t jobs = 1;  // processes that share the work
  bool json = false;
  bool trace = false;
  bool listControls = false;
  bool help = false;
  bool version = false;
};

// How the program ends, as the shell sees it.
enum class Exit { AllWritten = 0, SomeWithout = 1, WrongArguments = 2, Stopped = 3 };

}  // namespace quillon::cli
