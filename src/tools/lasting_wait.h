// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "tools/tools.h"

namespace quillon::tools {

// Shows a wait for a program to the user once it takes longer than three seconds, and hides it when destroyed.
class LastingWait {
 public:
  LastingWait(Tools& tools, std::string program);
  ~LastingWait();
  LastingWait(const LastingWait&) = delete;
  LastingWait& operator=(const LastingWait&) = delete;

  // The seconds since construction.
  double Seconds() const;
  // Must be called once in each round of the wait.
  void Update();

 private:
  Tools& tools_;
  std::string program_;
  double start_;
  bool shown_ = false;
};

}  // namespace quillon::tools
