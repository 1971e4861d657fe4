// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <functional>

#include "job/windows/fbaseopt.h"
#include "ui/kit/bind/binder.h"

class QVBoxLayout;

namespace quillon::ui {

// FBaseOpt as a tool window. Closing it hides it; its record keeps all values and their effect.
class OptionsWindow : public QDialog {
 public:
  OptionsWindow(job::FBaseOpt& record, Binder::Refusal onRefusal, QWidget* parent = nullptr);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void reject() override;

 private:
  // Adds the group of a frame to a column and returns its body.
  QWidget* AddGroup(QVBoxLayout* column, controls::Frame& frame);
  void AddLeft(QVBoxLayout* column);
  void AddRight(QVBoxLayout* column);

  job::FBaseOpt& record_;
  Binder binder_;
};

}  // namespace quillon::ui
