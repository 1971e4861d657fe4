// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "cli/plan.h"
#include "cli/report/reporter.h"
#include "regions/frame/cut_frame.h"

namespace quillon::cli {

// Answers the pictures at which a run with ChMamal waits. A picture counts as a dialog whose title is its path; the
// replies are names of FCutPre's buttons, pressed in the order given. A picture without an answer goes on with the
// frame as it is.
class ManualSteps {
 public:
  ManualSteps(job::Program& program, const regions::CutFrame& frame, const std::vector<Answer>& answers,
              Reporter& reporter);

  // To be called at every turn of the pump.
  void Turn();
  // Whether a text is the name of a button that answers.
  static bool IsButton(const std::string& reply);

 private:
  void Press(const std::string& picture, const std::string& button);

  job::Program& program_;
  const regions::CutFrame& frame_;
  const std::vector<Answer>& answers_;
  Reporter& reporter_;
  bool pressing_ = false;
};

}  // namespace quillon::cli
