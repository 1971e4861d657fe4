// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "job/program.h"

namespace quillon::regions {

// Switches the option windows that are loaded off for as long as it lives.
class WindowsOff {
 public:
  explicit WindowsOff(job::Program& program);
  ~WindowsOff();
  WindowsOff(const WindowsOff&) = delete;
  WindowsOff& operator=(const WindowsOff&) = delete;

 private:
  std::vector<controls::Control*> off_;
};

}  // namespace quillon::regions
