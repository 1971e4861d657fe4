// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>
#include <string>

#include "host/host.h"

namespace quillon::ui {

// Lets a long run process the events of the window: timers, painting and the stop button keep working.
class QtPump : public host::Pump {
 public:
  // Processes pending events, for at most 20 ms, so that a flood of events cannot stall the run.
  void Turn() override;
};

// Size and resolution of the primary screen in physical pixels, and the wallpaper of the desktop.
class QtScreen : public host::Screen {
 public:
  base::Size DesktopSize() override;
  int Dpi() override;
  std::string Wallpaper() override;
};

// Reads a setting of the desktop; returns an empty text if it has none.
using DesktopSetting = std::function<QString(const QString& schema, const QString& key)>;

// Returns the path of the wallpaper, or "" if there is none or the desktop is unknown.
// desktop is its name as in XDG_CURRENT_DESKTOP, configHome the folder with the settings of the user.
// setting is called for desktops that keep the path in GSettings.
std::string WallpaperOf(const QString& desktop, const QString& configHome, const DesktopSetting& setting);

}  // namespace quillon::ui
