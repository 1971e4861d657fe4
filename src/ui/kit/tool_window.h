// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <functional>

#include "controls/window.h"
#include "ui/kit/bind/binder.h"

namespace quillon::ui {

// A window beside the main window. Its record decides whether it is shown; the window follows the record and passes the
// close button on to it.
class ToolWindow : public QDialog {
 public:
  // record has to outlive the window. onRefusal receives the reason when the record refuses an edit or a click.
  ToolWindow(controls::Window& record, Binder::Refusal onRefusal, QWidget* parent, Qt::WindowFlags flags);
  ~ToolWindow() override;

 protected:
  // Returns the binder that makes the widgets of the record.
  Binder& GetBinder() { return binder_; }
  // Called after the record was shown or hidden, or its title changed.
  virtual void Follow();
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  controls::Window& record_;
  Binder binder_;
  int token_;  // of the observer of the record
};

}  // namespace quillon::ui
