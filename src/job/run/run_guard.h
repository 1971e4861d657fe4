// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "job/list/run_context.h"

namespace quillon::controls {
class Control;
class Window;
}  // namespace quillon::controls

namespace quillon::job {

// Claims the program for one listing or run while it exists (Flags::Busy). A second claim, made by a handler that the
// message pump calls meanwhile, beeps and fails.
class RunGuard {
 public:
  explicit RunGuard(const RunContext& context);
  ~RunGuard();
  RunGuard(const RunGuard&) = delete;
  RunGuard& operator=(const RunGuard&) = delete;

  // Returns whether the claim succeeded.
  explicit operator bool() const { return claimed_; }

 private:
  const RunContext& context_;
  bool claimed_;
};

// Work that MenuStop can end. It begins with the constructor and ends with End or the destructor.
class RunFrame {
 public:
  RunFrame(const RunContext& context, WindowUse use);
  ~RunFrame();
  RunFrame(const RunFrame&) = delete;
  RunFrame& operator=(const RunFrame&) = delete;

  void End();

 private:
  const RunContext& context_;
  WindowUse use_;
  bool ended_ = false;
};

// Hides and disables option windows while it exists. Ignores windows that do not exist or are not loaded.
class WindowsAside {
 public:
  // Hides the visible windows of hidden, and shows them again at the end. Disables the enabled controls of the windows
  // of disabled, and enables them again at the end.
  WindowsAside(const RunContext& context, const std::vector<std::string>& hidden,
               const std::vector<std::string>& disabled);
  ~WindowsAside();
  WindowsAside(const WindowsAside&) = delete;
  WindowsAside& operator=(const WindowsAside&) = delete;

 private:
  std::vector<controls::Window*> hidden_;
  std::vector<controls::Control*> disabled_;
};

}  // namespace quillon::job
