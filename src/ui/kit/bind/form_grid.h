// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <initializer_list>
#include <utility>

#include "ui/kit/bind/binder.h"

class QGridLayout;

namespace quillon::ui {

// Lays controls out in rows of two label and field columns, the labels of all rows and groups in line.
class FormGrid {
 public:
  using Named = std::pair<QString, controls::Control*>;

  // Takes over the layout of body.
  FormGrid(QWidget* body, Binder& binder);

  // A label and a field over the whole width, with small widgets behind it. An empty label is the control's caption.
  QWidget* Row(const QString& label, controls::Control& control, std::initializer_list<QWidget*> behind = {});
  // Two labelled fields side by side.
  void Pair(const Named& left, const Named& right);
  // Boxes with captions of their own, two in a row.
  void Checks(std::initializer_list<controls::Control*> boxes);
  // A box with a caption of its own, and a field that it switches beside it.
  void CheckAndField(controls::Control& check, controls::Control& field);

 private:
  void Labelled(int column, const Named& named);

  QGridLayout* grid_;
  Binder& binder_;
  int row_ = 0;
};

}  // namespace quillon::ui
