// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/run_guard.h"

#include "controls/window.h"
#include "controls/windows.h"

namespace quillon::job {

RunGuard::RunGuard(const RunContext& context) : context_(context), claimed_(!context.flags.Busy) {
  if (claimed_) {
    context_.flags.Busy = true;
  } else {
    context_.host.boxes.Beep();
  }
}

RunGuard::~RunGuard() {
  if (claimed_) context_.flags.Busy = false;
}

RunFrame::RunFrame(const RunContext& context, WindowUse use) : context_(context), use_(use) {
  context_.window.Begin(use_);
}

RunFrame::~RunFrame() { End(); }

void RunFrame::End() {
  if (ended_) return;
  ended_ = true;
  context_.window.End(use_);
}

WindowsAside::WindowsAside(const RunContext& context, const std::vector<std::string>& hidden,
                           const std::vector<std::string>& disabled) {
  for (const std::string& name : hidden) {
    controls::Window* window = context.windows.FindWindow(name);
    if (!window || !window->Loaded() || !window->Visible()) continue;
    window->Hide();
    hidden_.push_back(window);
  }
  for (const std::string& name : disabled) {
    const controls::Window* window = context.windows.FindWindow(name);
    if (!window || !window->Loaded()) continue;
    for (controls::Control* control : window->Controls()) {
      // The controls in a frame are disabled with the frame.
      if (control->Parent() || !control->OwnEnabled()) continue;
      control->SetEnabled(false, "正在裁剪");
      disabled_.push_back(control);
    }
  }
}

WindowsAside::~WindowsAside() {
  for (controls::Control* control : disabled_) control->SetEnabled(true);
  for (controls::Window* window : hidden_) window->Show();
}

}  // namespace quillon::job
