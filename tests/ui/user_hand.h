// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "controls/values.h"
#include "ui/ui_world.h"

// Plays the user: changes widgets by mouse and keyboard and reads what they show.
namespace quillon::ui {

// Returns a text other than the present one that a user can enter into the control, or "" if there is none.
std::string OtherText(const controls::Control& control, const std::string& folder);

// Operates the widget of the control as a user would, until it has that text.
void Put(UiWorld& ui, controls::Control& control, const std::string& text);

// Returns what the widget of the control shows, in the form of Control::Value, or of Text for an editable list.
std::string ShownValue(UiWorld& ui, const controls::Control& control);

// Clicks the button with that text in the next box or dialog that opens.
void AnswerNextBox(const QString& button);

}  // namespace quillon::ui
