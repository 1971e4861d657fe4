// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "host/testing/temp_folder.h"

namespace quillon::helpers {

// How a helper ended.
struct Ran {
  int exit = -1;  // -1 if a signal ended it
  int signal = 0;
  std::string out;
  std::string err;
};

// Helpers in a program folder and with settings of the test. The folder contains only what the test puts there; the
// helpers themselves run from their build folder.
class HelperFolder {
 public:
  HelperFolder();

  const std::string& Path() const { return path_; }
  std::string Path(const std::string& entry) const { return path_ + "/" + entry; }
  std::string Write(const std::string& entry, const std::string& content) const;
  std::string Read(const std::string& entry) const;
  bool Exists(const std::string& entry) const;
  // The names in the program folder, but for those of the settings, sorted.
  std::vector<std::string> Names() const;

  std::string Get(const std::string& key, const std::string& application = "Quillon") const;
  void Set(const std::string& key, const std::string& value, const std::string& application = "Quillon") const;

  // Starts a helper with that parameter text, as the program does; several arguments are handed over as they are.
  pid_t Start(const std::string& helper, const std::vector<std::string>& arguments) const;
  Ran Wait(pid_t process) const;
  Ran Run(const std::string& helper, const std::vector<std::string>& arguments) const;

 private:
  host::testing::TempFolder folder_;
  std::string path_;
};

// The path of a helper in the build folder: its twin, or its program if it has none.
std::string BuiltHelper(const std::string& helper);

}  // namespace quillon::helpers
