// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "helpers/runtime/resource_limits.h"
#include "host/host.h"

// What every helper program shares: how it is called, what it may take, and how it answers.
namespace quillon::helpers {

// One call of a helper.
class Helper {
 public:
  Helper(host::Host& world, std::vector<std::string> arguments);

  host::Host& World() { return world_; }
  host::Files& Files() { return world_.files; }
  // A path in the program folder, which is the folder that a helper is run in.
  std::string AppPath(const std::string& name) const;

  // The parameter text, as the program handed it over: the one argument, "" without any.
  const std::string& Parameters() const { return text_; }
  // The fields of the parameter text; of several arguments each is one, as a person would type them.
  std::vector<std::string> Fields() const;
  // The words of the parameter text, likewise.
  std::vector<std::string> Words() const;

  // Values of the store, section "Default".
  std::string Get(const std::string& application, const std::string& key) const;
  void Set(const std::string& application, const std::string& key, const std::string& value);

 private:
  host::Host& world_;
  std::vector<std::string> arguments_;
  std::string text_;
};

// A line on the error output, behind the helper's name.
void Complain(const char* name, const std::string& why);

// A failure of the call itself: text that the helper cannot read.
host::Status UsageError(const std::string& why);

using Work = host::Status (*)(Helper& helper);

// The main function of a helper: answers --version, shuts the process in and runs work behind a barrier that no
// exception passes. What failed is told to the error output. Exit code: 0 done, 1 failed.
int RunHelper(const char* name, int count, char** arguments, Work work, const ResourceLimits& limits = {});

}  // namespace quillon::helpers
