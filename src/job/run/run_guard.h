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

// Claims the one place of work for a listing or a run (Flags::Busy) as long as it lives. A second claim, made by a
// handler that the message pump has called meanwhile, beeps and gets nothing.
class RunGuard {
 public:
  explicit RunGuard(const RunContext& context);
  ~RunGuard();
  RunGuard(const RunGuard&) = delete;
  RunGuard& operator=(const RunGuard&) = delete;

  // Whether the place was free.
  explicit operator bool() const { return claimed_; }

 private:
  const RunContext& context_;
  bool claimed_;
};

// Work that MenuStop can end: begins with the object and ends with End or the object.
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

// Option windows that are out of use as long as the object lives. Windows that are not loaded, or not there, are
// passed over.
class WindowsAside {
 public:
  // Windows of `hidden` that are visible are hidden, and shown again at the end. In those of `disabled` every control
  // that is enabled is disabled, and enabled again at the end.
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
