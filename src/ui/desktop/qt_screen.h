// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/host.h"

namespace quillon::ui {

// Size and resolution of the primary screen in real pixels, and the picture of the desktop.
class QtScreen : public host::Screen {
 public:
  base::Size DesktopSize() override;
  int Dpi() override;
  std::string Wallpaper() override;
};

}  // namespace quillon::ui
