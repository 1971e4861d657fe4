// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>
#include <functional>

#include "job/windows/form1.h"
#include "ui/kit/bind/binder.h"

namespace quillon::ui {

// The cut parameters that all drivers share, in groups that fold, in a panel that scrolls vertically.
class ParameterPanel : public QScrollArea {
 public:
  ParameterPanel(job::Form1& form, Binder& binder, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  // The width of the groups, since the panel does not scroll horizontally.
  QSize minimumSizeHint() const override;

 private:
  // Adds a group and returns its body.
  QWidget* AddGroup(const QString& title);
  // Returns a small button for a menu entry.
  QWidget* Shortcut(controls::Menu& menu, const QString& icon, const QString& name);
  void AddFolders();
  void AddMode();
  void AddMargins();
  void AddFixedCut();
  void AddOutput();
  // Adds every control of the record that has no place elsewhere, so that a new control cannot be forgotten.
  void AddRest();

  job::Form1& form_;
  Binder& binder_;
};

}  // namespace quillon::ui
