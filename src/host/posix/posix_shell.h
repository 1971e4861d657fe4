// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/host.h"

namespace quillon::host::posix {

// Starts programs that live on by themselves: no zombie stays, no handle and no changed signal is inherited, their
// input and output lead nowhere. A program without a separator in its name is looked for in folder first, then along
// $PATH; a relative one with a separator is taken from folder. They run in folder, or where this program runs where
// folder is empty.
class PosixShell : public Shell {
 public:
  // kStartDenied also where the file is there but the system cannot run it.
  int Start(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder) override;
  // These three ask xdg-open, and do nothing where the desktop has none.
  void OpenFolder(const std::string& folder) override;
  void Reveal(const std::string& file) override;
  void OpenBrowser(const std::string& address) override;
};

}  // namespace quillon::host::posix
