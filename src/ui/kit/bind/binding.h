// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <string>

#include "ui/kit/bind/binder.h"

namespace quillon::ui {

// One widget, action or label that shows a control. It lives as long as its owner.
class Binding : public QObject {
 public:
  Binding(controls::Control& control, Binder& binder, QObject* owner)
      : QObject(owner), control_(control), binder_(binder) {}

  controls::Control& Control() const { return control_; }

  virtual void ShowValue() {}
  virtual void ShowLook() {}
  // An edit that is typed and not yet finished is handed over.
  virtual void CommitTyped() {}

 protected:
  // The user's hand. The record may have put another value in place of the edit, so the value is shown anew.
  void Edit(const std::string& text);
  void Click();

 private:
  controls::Control& control_;
  Binder& binder_;
};

// What a control says to the mouse: why it cannot be used, if it cannot, above its own tooltip.
QString TooltipOf(const controls::Control& control);

// Tooltip, enabled and visible state of a control, put on its widget. A widget that is not laid out yet is not shown,
// since without a parent it would come up as a window.
void ShowCommon(const controls::Control& control, QWidget& widget);
void ShowVisible(const controls::Control& control, QWidget& widget);

}  // namespace quillon::ui
