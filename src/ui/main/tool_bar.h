// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QToolBar>

#include "job/windows/form1.h"
#include "ui/kit/bind/binder.h"

namespace quillon::ui {

// The few things that are done all day. The cut button starts the driver of the chosen mode.
class ToolBar : public QToolBar {
 public:
  ToolBar(job::Form1& form, Binder& binder, QWidget* parent = nullptr);
  ~ToolBar() override;

 private:
  void Add(controls::Menu& menu, const QString& icon, const QString& words);
  controls::Menu* Driver() const;
  void Cut();

  job::Form1& form_;
  Binder& binder_;
  QAction* cut_;
  int token_;
};

}  // namespace quillon::ui
