// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QString>

namespace quillon::ui {

// A line icon of the program by its file name without ".svg"; its colours are taken from the palette each time it is
// painted, so that it follows a change from light to dark.
QIcon LineIcon(const QString& name);

// The program's own icon.
QIcon ProgramIcon();

}  // namespace quillon::ui
