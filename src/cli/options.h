// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::cli {

// One option of the command line. The table is what the parser, the help and the documents are held against.
struct Option {
  const char* name;      // "--set"
  const char* argument;  // "NAME=VALUE", "" for a flag
  const char* help;
};

const std::vector<Option>& Options();

// What --help writes: the usage, every option and worked examples.
std::string HelpText();
std::string VersionText();

}  // namespace quillon::cli
