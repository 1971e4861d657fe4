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

// The result of a plan.
struct Outcome {
  Exit exit = Exit::AllWritten;
  // Chinese sentences for stderr: why a step was refused or a run did not start, and what to know of a listed folder.
  std::vector<std::string> notes;
};

// Carries out a plan on the windows of a started program, as a user would.
//
// 1. All names and answers are checked before the first step, so that a mistyped name changes nothing.
// 2. The steps run in their order. A refused step ends the plan.
// 3. Files and folders wait until the next click and are added to the list all at once. If no click follows, they are
//    added before the last steps that only print, or after the last step.
// 4. When the program is stopping, no further step starts.
// 5. The end event is reported, even if a step was refused.
class Runner {
 public:
  Runner(job::Program& program, RunListener& listener, Reporter& reporter, Stopping stopping);

  // Runs the plan, reports the end event and calls Reporter::Finish(). Call at most once.
  Outcome Perform(const Plan& plan);

 private:
  enum class Starts;

  // These return "" on success, else a Chinese sentence for the user.
  std::string CheckNames(const Plan& plan) const;
  std::string CheckStep(const Step& step) const;
  std::string CheckAnswer(const Answer& answer) const;
  std::string Do(const Step& step);
  std::string Click(controls::Control& control);

  std::string UnknownControl(const Step& step) const;
  std::string UnknownWindow(const Step& step) const;
  bool AdmissionDue(const std::vector<Step>& steps, std::size_t next) const;
  void Admit();
  void ReportUnlisted(const std::vector<std::string>& named, job::Result result);
  void ReportListIgnored();
  Starts StartedBy(const controls::Control& control) const;
  void ReportNotStarted(Starts what);
  bool AllInOtherShards() const;
  bool Stopped() const;
  void PrintAll();
  Exit ExitNow() const;

  job::Program& program_;
  RunListener& listener_;
  Reporter& reporter_;
  Stopping stopping_;
  std::vector<std::string> pendingFiles_;  // files and folders that are not in the list yet
  Outcome outcome_;
  std::size_t rowsReported_ = 0;  // the first rows of the list, up to this number, have their file event
  bool runNotStarted_ = false;    // a click should have started a watch or a run with files, and none started
};

}  // namespace quillon::cli
