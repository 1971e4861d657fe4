// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/program.h"

namespace quillon::job {

// The frame of work that can be stopped while the window stays as it is: MenuStop is on, the title comes back at the
// end.
class StoppableFrame {
 public:
  explicit StoppableFrame(Program& program) : program_(program) {
    program_.flags.StopRequested = false;
    program_.form1.MenuStop.SetEnabled(true);
  }
  ~StoppableFrame() {
    program_.form1.MenuStop.SetEnabled(false, kNothingRuns);
    program_.form1.ShowStatus("");
  }
  StoppableFrame(const StoppableFrame&) = delete;
  StoppableFrame& operator=(const StoppableFrame&) = delete;

 private:
  Program& program_;
};

}  // namespace quillon::job
