// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>
#include <functional>

#include "job/windows/form1.h"
#include "ui/kit/bind/binder.h"

namespace quillon::ui {

// The shared cut parameters in titled groups that fold and scroll.
class ParameterPanel : public QScrollArea {
 public:
  ParameterPanel(job::Form1& form, Binder& binder, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  // Narrower than its groups it would cut them, since it scrolls down only.
  QSize minimumSizeHint() const override;

 private:
  QWidget* AddGroup(const QString& title);
  // A small button that stands for a menu entry.
  QWidget* Shortcut(controls::Menu& menu, const QString& icon, const QString& name);
  void AddFolders();
  void AddMode();
  void AddMargins();
  void AddFixedCut();
  void AddOutput();
  // Whatever the record holds beyond the groups above.
  void AddRest();

  job::Form1& form_;
  Binder& binder_;
};

}  // namespace quillon::ui
