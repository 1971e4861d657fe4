// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/values.h"

class QWidget;

namespace quillon::ui {

class Binder;

// A number box with arrows, or a line for any text.
QWidget* MakeTextBox(controls::TextBox& box, Binder& binder);
// A list; an editable one also takes what is typed.
QWidget* MakeComboBox(controls::ComboBox& box, Binder& binder);
// A button with the colour on it, which opens the colour dialog.
QWidget* MakeColourBox(controls::ColourBox& box, Binder& binder);
// A line that shows a folder and takes a typed or dropped one.
QWidget* MakePathBox(controls::Label& label, Binder& binder);

}  // namespace quillon::ui
