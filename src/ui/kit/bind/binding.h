// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <string>

#include "ui/kit/bind/binder.h"

namespace quillon::ui {

// Connects one widget, action or label to a control. Owned by that object.
class Binding : public QObject {
 public:
  Binding(controls::Control& control, Binder& binder, QObject* owner)
      : QObject(owner), control_(control), binder_(binder) {}

  controls::Control& Control() const { return control_; }

  // Updates the widget from the value of the control.
  virtual void ShowValue() {}
  // Updates caption, tooltip, enabled and visible state.
  virtual void ShowAppearance() {}
  // Sends an edit that the user has typed but not confirmed.
  virtual void CommitTyped() {}

 protected:
  // Sends an edit of the user to the record and then shows its value, since the record may have changed or refused it.
  void Edit(const std::string& text);
  // Sends a click of the user to the record, after all typed edits.
  void Click();

 private:
  controls::Control& control_;
  Binder& binder_;
};

// Returns the tooltip of a control: the reason why it is disabled or has no effect, and its own tooltip below.
QString TooltipOf(const controls::Control& control);

// Sets tooltip, enabled and visible state of the widget, and the ink of its text by the effect of the control: faint if
// it has none, and full if it has one although the widget is disabled.
// A widget without a layout is not shown, since without a parent it would open as a window.
void ShowCommon(const controls::Control& control, QWidget& widget);
// Sets the ink alone, in the same way.
void ShowEffect(const controls::Control& control, QWidget& widget);
// Sets the visible state alone, in the same way.
void ShowVisible(const controls::Control& control, QWidget& widget);

}  // namespace quillon::ui
