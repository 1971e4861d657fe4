// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QApplication;

namespace quillon::ui {

// Names, icon, theme, fonts and the toolkit's own Chinese texts.
void SetUp(QApplication& application);

}  // namespace quillon::ui
