// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/disable_option_windows.h"

namespace quillon::job {

// What lies in a frame goes off with it.
DisableOptionWindows::DisableOptionWindows(job::Program& program) {
  for (const char* name : {"FBaseOpt", "FGifCut", "FTiffOps", "FPdfOps", "FArray"}) {
    const controls::Window* window = program.windows.FindWindow(name);
    if (!window || !window->Loaded()) continue;
    for (controls::Control* control : window->Controls()) {
      if (control->Parent() || !control->OwnEnabled()) continue;
      control->SetEnabled(false, "正在裁剪");
      off_.push_back(control);
    }
  }
}

DisableOptionWindows::~DisableOptionWindows() {
  for (controls::Control* control : off_) control->SetEnabled(true);
}

}  // namespace quillon::job
