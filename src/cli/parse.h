// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/plan.h"

namespace quillon::cli {

// The result of parsing: a plan, or one Chinese sentence about the first mistake. The plan counts only if error is "".
struct Parsed {
  Plan plan;
  std::string error;
};

// Returns the content of a script file, nothing if it cannot be read.
using ReadText = std::function<std::optional<std::string>(const std::string& path)>;

// Parses the arguments that follow the program's name.
// Names and values are bytes and may hold anything. After "--" every argument is a file or folder.
// Relative paths of files, folders and --out are resolved against folder, the current folder of the process.
// readText is called for each --script, at its place among the steps.
Parsed ParseArguments(const std::vector<std::string>& arguments, const std::string& folder, const ReadText& readText);

// Splits "NAME=VALUE" at the first equals sign; NAME may be empty. Returns nothing if there is no equals sign.
std::optional<std::pair<std::string, std::string>> SplitAssignment(const std::string& text);

}  // namespace quillon::cli
