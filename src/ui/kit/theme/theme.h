// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QString>

class QApplication;
class QObject;

namespace quillon::ui {

// The unit of all margins and spacings, in device-independent pixels.
inline constexpr int kGap = 8;

// The two palettes of the program.
enum class Scheme { Light, Dark };

// Returns the palette of a scheme.
QPalette PaletteFor(Scheme scheme);
// Returns true if the window colour is darker than medium grey.
bool IsDark(const QPalette& palette);

// Text colours that are readable on the Base and Window colours of the palette.
QColor AccentInk(const QPalette& palette);
QColor WarningInk(const QPalette& palette);
QColor GoodInk(const QPalette& palette);
QColor DangerInk(const QPalette& palette);
// For secondary text: hints and units.
QColor FaintInk(const QPalette& palette);

// Applies the palette of the program, light or dark as the desktop prefers, and follows changes of that preference.
// A palette that the desktop provides is kept instead. QUILLON_THEME=light or dark overrides both.
void ApplyTheme(QApplication& application);

// Applies one of the two palettes.
void ApplyScheme(Scheme scheme);

// Adds simplified Chinese fonts to the font of the program, so that characters have these shapes in every locale.
void PreferChineseFonts();

// Returns a line icon of the program. name is the file name of its drawing in kit/icons without ".svg".
// The drawing names its colours "currentColor", "accentColor" and "dangerColor"; they are replaced by the colours of
// the palette each time the icon is painted, so that it follows a change from light to dark.
QIcon LineIcon(const QString& name);

// Returns the icon of the program itself, in sizes from 16 to 128 pixels.
QIcon ProgramIcon();

}  // namespace quillon::ui
