// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/host.h"

namespace quillon::ui {

// Opens folders and shows files in the desktop's file manager over D-Bus; whatever that cannot do goes to the shell
// behind it.
class DesktopShell : public host::Shell {
 public:
  explicit DesktopShell(host::Shell& behind) : behind_(behind) {}

  int Start(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder) override {
    return behind_.Start(program, arguments, folder);
  }
  void OpenFolder(const std::string& folder) override;
  void Reveal(const std::string& file) override;
  void OpenBrowser(const std::string& address) override { behind_.OpenBrowser(address); }

 private:
  host::Shell& behind_;
};

}  // namespace quillon::ui
