// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "tools/tools.h"

namespace quillon::tools {

// One wait for a program: shown to the user once it lasts, and taken back at the end.
class LastingWait {
 public:
  LastingWait(Tools& tools, std::string program);
  ~LastingWait();
  LastingWait(const LastingWait&) = delete;
  LastingWait& operator=(const LastingWait&) = delete;

  // Seconds since it began.
  double Seconds() const;
  // To be called once each round of the wait.
  void Update();

 private:
  Tools& tools_;
  std::string program_;
  double start_;
  bool shown_ = false;
};

}  // namespace quillon::tools
