// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <functional>

#include "controls/window.h"
#include "ui/kit/bind/binder.h"

namespace quillon::ui {

// A window beside the main one, which its record shows, hides and closes.
class ToolWindow : public QDialog {
 public:
  ToolWindow(controls::Window& record, Binder::Refusal onRefusal, QWidget* parent, Qt::WindowFlags flags);
  ~ToolWindow() override;

 protected:
  controls::Window& Record() const { return record_; }
  Binder& Joined() { return binder_; }
  // The record was shown or hidden, or has another title.
  virtual void Follow();
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  controls::Window& record_;
  Binder binder_;
  int token_;
};

}  // namespace quillon::ui
