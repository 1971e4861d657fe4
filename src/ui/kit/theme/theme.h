// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>

class QApplication;
class QObject;

namespace quillon::ui {

enum class Scheme { Light, Dark };

QPalette PaletteFor(Scheme scheme);
bool IsDark(const QPalette& palette);

// Inks that stand out on a palette's Base and Window colours.
QColor AccentInk(const QPalette& palette);
QColor WarningInk(const QPalette& palette);
QColor GoodInk(const QPalette& palette);
QColor DangerInk(const QPalette& palette);
// Secondary text: hints and units.
QColor FaintInk(const QPalette& palette);

// Puts on the program's palette where the desktop provides none, light or dark as the desktop prefers, and goes on
// following it. A palette of the desktop stays untouched. QUILLON_THEME=light or dark overrules both.
void ApplyTheme(QApplication& application);

// Puts on one of the two palettes.
void PutOn(Scheme scheme);

// Lets Chinese characters take their simplified shapes, whatever the language of the desktop.
void PreferChineseFonts();

}  // namespace quillon::ui
