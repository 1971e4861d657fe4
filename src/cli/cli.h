// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::cli {

// Runs quillon-batch and returns its exit code (see cli::Exit), as in
//   return RunBatch({argv + 1, argv + argc});
// --help and --version print their text and return 0.
// Wrong arguments are reported on stderr before anything is done (exit code 2).
//
// arguments are those after the program's name. Relative paths are resolved against the current folder of the process.
// The run gets a program folder, settings and helper processes of its own, so that any number of calls can run at the
// same time. Events and printed controls go to stdout; progress, notes and errors go to stderr.
//
// SIGINT, SIGTERM and SIGHUP stop the run after the current file (exit code 3). A second SIGINT or SIGTERM removes the
// program folder and ends the process at once, without returning.
//
// Must be called before the process starts other threads: they would not inherit the blocked stop signals.
// An exception during the run is caught and becomes a sentence on stderr and exit code 1.
int RunBatch(const std::vector<std::string>& arguments);

}  // namespace quillon::cli
