// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/values.h"
#include "controls/window.h"
#include "job/preview.h"

namespace quillon::job {

// The preview window with the cut frame, docked in the main window.
class FCutPre : public controls::Window {
 public:
  FCutPre();

  // Shows or hides the buttons and scroll bars, to see the frame better.
  controls::CheckBox ChHideShow;

  Preview preview;
};

}  // namespace quillon::job
