// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "cli/plan.h"
#include "cli/report/reporter.h"
#include "regions/frame/cut_frame.h"

namespace quillon::cli {

// Answers the pictures at which a manual run (ChMamal) waits.
//
// An answer fits if the path of the picture contains its text and its reply names a button of FCutPre. All answers that
// fit are pressed in the order given, each reported as a dialog event. A picture that is not decided by then goes on
// with the frame as it is (CmdNext).
class ManualSteps {
 public:
  ManualSteps(job::Program& program, const regions::CutFrame& frame, const std::vector<Answer>& answers,
              Reporter& reporter);

  // Answers the picture on show if the run waits for one. Must be called at every turn of the message pump.
  void Turn();
  // Returns true if reply is the name of a button that can answer; upper and lower case do not matter.
  static bool IsButton(const std::string& reply);

 private:
  void Press(const std::string& picture, const std::string& button);

  job::Program& program_;
  const regions::CutFrame& frame_;
  const std::vector<Answer>& answers_;
  Reporter& reporter_;
  bool pressing_ = false;  // a press may turn the pump, which would call Turn() again
};

}  // namespace quillon::cli
