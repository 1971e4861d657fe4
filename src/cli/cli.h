// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::cli {

// The whole program behind main: reads the arguments (those behind the program's name), carries them out in a world of
// its own, writes to stdout and stderr, and returns the exit code.
int RunBatch(const std::vector<std::string>& arguments);

}  // namespace quillon::cli
