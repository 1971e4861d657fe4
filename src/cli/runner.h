// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "cli/hosts.h"
#include "cli/plan.h"
#include "cli/report/run_listener.h"
#include "job/program.h"

namespace quillon::cli {

// How a plan went, with sentences for the user: why it was refused, or why a run did not begin.
struct Outcome {
  Exit exit = Exit::AllWritten;
  std::vector<std::string> notes;
};

// Carries out a plan on the windows of a started program, as its user would.
//
// Names are looked up before anything is done, so that a mistyped one changes nothing. Files wait until the next click;
// where none follows, until nothing but prints follows. A refused step ends the plan. While the program is stopping no
// further step begins.
class Runner {
 public:
  Runner(job::Program& program, RunListener& watch, Reporter& reporter, Stopping stopping);

  // Tells the end event and finishes the reporter.
  Outcome Perform(const Plan& plan);

 private:
  // Each gives a sentence, "" where all is well.
  std::string CheckNames(const Plan& plan) const;
  std::string CheckStep(const Step& step) const;
  std::string CheckAnswer(const Answer& answer) const;
  std::string Do(const Step& step);
  std::string Click(controls::Control& control);

  std::string UnknownControl(const Step& step) const;
  std::string UnknownWindow(const Step& step) const;
  bool TimeToAdmit(const std::vector<Step>& steps, std::size_t next) const;
  void Admit();
  void ReportUnlisted(const std::vector<std::string>& named, job::Result result);
  void ReportNotTaken();
  void ReportGivenUp();
  bool NothingLeftForUs() const;
  bool Stopped() const;
  void PrintAll();
  Exit ExitNow() const;

  job::Program& program_;
  RunListener& watch_;
  Reporter& reporter_;
  Stopping stopping_;
  std::vector<std::string> waiting_;  // files and folders to be admitted
  Outcome outcome_;
  std::size_t rowsTold_ = 0;  // of the list, by a run or as not taken
  bool gaveUp_ = false;
};

}  // namespace quillon::cli
