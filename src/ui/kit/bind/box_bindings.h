// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/values.h"

class QWidget;

// Each function returns a new widget that is bound to its control and has no parent yet.
// Typed text goes to the record at Enter or when the widget loses the focus (see Binder::CommitTyped).
namespace quillon::ui {

class Binder;

// A number box with arrows for a numeric text box, else a line for any text.
QWidget* MakeTextBox(controls::TextBox& box, Binder& binder);
// A list; an editable one accepts typed text too.
QWidget* MakeComboBox(controls::ComboBox& box, Binder& binder);
// A button that shows the colour and opens the colour dialog.
QWidget* MakeColourBox(controls::ColourBox& box, Binder& binder);
// A line that shows a folder and accepts a typed or dropped one.
QWidget* MakePathBox(controls::Label& label, Binder& binder);

}  // namespace quillon::ui
