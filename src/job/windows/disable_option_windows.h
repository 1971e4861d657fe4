// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "job/program.h"

namespace quillon::job {

// Switches the option windows that are loaded off for as long as it lives.
class DisableOptionWindows {
 public:
  explicit DisableOptionWindows(job::Program& program);
  ~DisableOptionWindows();
  DisableOptionWindows(const DisableOptionWindows&) = delete;
  DisableOptionWindows& operator=(const DisableOptionWindows&) = delete;

 private:
  std::vector<controls::Control*> off_;
};

}  // namespace quillon::job
