// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::helpers {

// How a program ended that was run to its end.
struct Ended {
  bool started = false;
  int exit = -1;       // its exit code; -1 where it could not be started or was killed
  std::string output;  // the beginning of what it wrote to both its outputs

  explicit operator bool() const { return exit == 0; }
};

// Runs a program without a shell and waits for it. The first word is the program, looked for along $PATH unless it
// holds a separator. It has no input, and ends with this process however that ends.
Ended RunProgram(const std::vector<std::string>& words);

}  // namespace quillon::helpers
