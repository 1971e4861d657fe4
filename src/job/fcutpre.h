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

  controls::CheckBox ChHideShow{
      *this, "ChHideShow", {.caption = "显示/隐藏", .tooltip = "显示/隐藏按钮和右侧、底部滚动条，方便确定裁剪框"}};

  Preview preview;
};

}  // namespace quillon::job
