// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::helpers {

// The result of a program that ran to its end. True if it exited with 0.
struct ProgramResult {
  bool started = false;
  int exit = -1;       // the exit code, -1 if it could not be started or was killed
  std::string output;  // the first 64 KB of its standard output and error output

  explicit operator bool() const { return exit == 0; }
};

// Runs a program without a shell and waits for it. The first word is the program; it is searched in $PATH unless it
// contains a separator. Its input is empty. It is killed if this process ends in any way.
ProgramResult RunProgram(const std::vector<std::string>& words);

}  // namespace quillon::helpers
