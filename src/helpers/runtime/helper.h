// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "helpers/runtime/file_access.h"
#include "helpers/runtime/sandbox.h"
#include "host/host.h"

// The common part of all helper programs: command line, resource limits, exit code.
namespace quillon::helpers {

// Splits a parameter text at tabs. An empty text has no fields. Blanks, quotes and empty fields are kept.
std::vector<std::string> Fields(std::string_view text);

// Splits a parameter text at blanks.
// Double quotes enclose blanks and are removed; "" is an empty word. A quote without a partner reaches to the end.
// Quotes cannot be escaped, so no other character of a path has a meaning.
std::vector<std::string> Words(std::string_view text);

// One call of a helper.
class Helper {
 public:
  Helper(host::Host& world, std::vector<std::string> arguments);

  host::Host& World() { return world_; }
  host::Files& Files() { return world_.files; }
  // Returns a path in the program folder, which is the folder that a helper is started in.
  std::string AppPath(const std::string& name) const;

  // The parameter text: the only argument, "" if there is none.
  const std::string& Parameters() const { return text_; }
  // The fields of the parameter text. If there are several arguments, each of them is a field, as a person would type
  // them.
  std::vector<std::string> Fields() const;
  // The words of the parameter text, or the arguments likewise.
  std::vector<std::string> Words() const;

  // Read and write settings in the section "Default".
  std::string Get(const std::string& application, const std::string& key) const;
  void Set(const std::string& application, const std::string& key, const std::string& value);

  // Limits the files of this process to those of the order, the program folder and the settings; see file_access.h.
  // Must be called as soon as the order was read, before a picture is opened or a thread started.
  void AllowOnly(const HandedFiles& handed);

 private:
  host::Host& world_;
  std::vector<std::string> arguments_;
  std::string text_;
};

// How long a helper that runs beside the program waits for its next command: as long as the program runs in the program
// folder, otherwise half an hour.
class IdleTimeout {
 public:
  explicit IdleTimeout(Helper& helper);

  // Must be called for each command.
  void Restart();
  bool Expired();

 private:
  host::Host& world_;
  double last_;
};

// Logs one line to the error output, after the name of the helper.
void LogError(const char* name, const std::string& why);

// The failure of a call whose parameter text is invalid.
host::Status UsageError(const std::string& why);

using Work = host::Status (*)(Helper& helper);

// Runs work and waits until everything that it saved is on the disk. Fails if either fails; exceptions are failures.
host::Status Perform(Helper& helper, Work work);

// The main function of a helper: answers --version, applies the sandbox and performs work. Failures are logged to the
// error output. Returns the exit code: 0 for success, 1 for failure.
int RunHelper(const char* name, int count, char** arguments, Work work, const Permissions& permissions = {});

}  // namespace quillon::helpers
