// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QApplication;

namespace quillon::ui {

// Prepares the application before its first window: name, version, icon, theme, fonts, and Chinese texts for the
// dialogs of the toolkit itself. Called once, by every program that opens a window.
// Closing the last window does not end the program, since the main window may be hidden during a run.
void SetUp(QApplication& application);

}  // namespace quillon::ui
