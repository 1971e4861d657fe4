// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/desktop/qt_screen.h"

#include <QGuiApplication>
#include <QScreen>

#include "ui/desktop/wallpaper.h"

namespace quillon::ui {

base::Size QtScreen::DesktopSize() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QSizeF size = screen->size() * screen->devicePixelRatio();
  return {qRound(size.width()), qRound(size.height())};
}

int QtScreen::Dpi() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return qRound(screen->logicalDotsPerInch() * screen->devicePixelRatio());
}

std::string QtScreen::Wallpaper() { return CurrentWallpaper(); }

}  // namespace quillon::ui
