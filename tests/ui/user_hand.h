// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "controls/values.h"
#include "ui/ui_world.h"

namespace quillon::ui {

// A text other than the present one that a user could put into the control; "" where there is none.
std::string OtherText(const controls::Control& control, const std::string& folder);

// Does with the control's widget what a user would do to bring it to that text.
void Put(UiWorld& ui, controls::Control& control, const std::string& text);

// What the control's widget shows, in the words of Control::Value, or of Text for an editable list.
std::string ShownValue(UiWorld& ui, const controls::Control& control);

// Clicks the button with that text in the next box or dialog that comes up.
void AnswerNextBox(const QString& button);

}  // namespace quillon::ui
