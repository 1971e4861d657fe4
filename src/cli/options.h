// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::cli {

// One option of the command line.
struct Option {
  const char* name;      // with its dashes: "--set"
  const char* argument;  // what stands for its value in the help: "NAME=VALUE"; "" for a flag
  const char* help;      // one Chinese line for --help
};

// Returns all options in the order of the help text. The parser, --help, the documents, the manual page and the shell
// completions all follow this one table, and the tests compare them with it.
const std::vector<Option>& Options();

// Returns the text of --help (Chinese): the usage, every option and worked examples. Ends with a line end.
std::string HelpText();
// Returns the line of --version: the program's name and version.
std::string VersionText();

}  // namespace quillon::cli
