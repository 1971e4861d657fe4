// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/host.h"

namespace quillon::ui {

// Opens folders and shows files in the file manager of the desktop, over D-Bus. Everything else, and what the file
// manager cannot do, goes to the shell given as fallback.
class DesktopShell : public host::Shell {
 public:
  explicit DesktopShell(host::Shell& fallback) : fallback_(fallback) {}

  int Start(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder) override {
    return fallback_.Start(program, arguments, folder);
  }
  std::unique_ptr<host::Companion> StartCompanion(const std::string& program) override {
    return fallback_.StartCompanion(program);
  }
  void OpenFolder(const std::string& folder) override;
  void Reveal(const std::string& file) override;
  void OpenBrowser(const std::string& address) override { fallback_.OpenBrowser(address); }

 private:
  host::Shell& fallback_;
};

}  // namespace quillon::ui
