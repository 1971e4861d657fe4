// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/host.h"

namespace quillon::host::posix {

// Starts programs that run independently of this one: they leave no zombie, inherit no handles and no changed signal
// handlers, and their standard streams lead to /dev/null.
// A program name without a separator is searched in folder first, then in $PATH.
// A relative path with a separator is resolved against folder.
// The program runs in folder, or in the current folder if folder is empty.
class PosixShell : public Shell {
 public:
  // Also returns kStartDenied if the file exists but the system cannot run it.
  int Start(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder) override;
  std::unique_ptr<Companion> StartCompanion(const std::string& program) override;
  // These use xdg-open, and do nothing if the desktop has none.
  void OpenFolder(const std::string& folder) override;
  void Reveal(const std::string& file) override;
  void OpenBrowser(const std::string& address) override;
};

}  // namespace quillon::host::posix
