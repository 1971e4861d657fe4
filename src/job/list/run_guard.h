// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/program.h"

namespace quillon::job {

// Claims the one place of work for a listing or a run. A second claim, made by a handler that the pump let in, beeps
// and gets nothing.
class RunGuard {
 public:
  explicit RunGuard(Program& program) : program_(program), got_(!program.flags.Busy) {
    if (got_) {
      program_.flags.Busy = true;
    } else {
      program_.host.boxes.Beep();
    }
  }
  ~RunGuard() {
    if (got_) program_.flags.Busy = false;
  }
  RunGuard(const RunGuard&) = delete;
  RunGuard& operator=(const RunGuard&) = delete;

  explicit operator bool() const { return got_; }

 private:
  Program& program_;
  bool got_;
};

}  // namespace quillon::job
