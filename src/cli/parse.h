// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/plan.h"

namespace quillon::cli {

// A plan, or a sentence about what is wrong with the arguments.
struct Parsed {
  Plan plan;
  std::string error;
};

// Returns the content of a script file, nothing when it cannot be read.
using ReadText = std::function<std::optional<std::string>(const std::string& path)>;

// Reads the arguments behind the program's name. Names and values are bytes and may hold anything; behind "--"
// everything is a file or folder. A relative path of a file, folder or --out is taken from folder, the folder that the
// program was started in, and made absolute.
Parsed ParseArguments(const std::vector<std::string>& arguments, const std::string& folder, const ReadText& readText);

// "NAME=VALUE" at the first equals sign that stands behind a name; nothing without one.
std::optional<std::pair<std::string, std::string>> SplitAssignment(const std::string& text);

}  // namespace quillon::cli
