// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>
#include <string>

namespace quillon::ui {

// How the desktop answers for a setting, "" where it does not.
using DesktopSetting = std::function<QString(const QString& schema, const QString& key)>;

// The desktop picture of the given desktop (as XDG_CURRENT_DESKTOP names it), "" where there is none or it cannot be
// told. configHome is the folder of the user's settings.
std::string WallpaperOf(const QString& desktop, const QString& configHome, const DesktopSetting& setting);

// Of the desktop this program runs in.
std::string CurrentWallpaper();

}  // namespace quillon::ui
