// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <initializer_list>
#include <utility>

#include "ui/kit/bind/binder.h"

class QGridLayout;

namespace quillon::ui {

// Lays controls out in rows of two columns, each with a label and a field. The columns of all groups in a window line
// up.
class FormGrid {
 public:
  using Named = std::pair<QString, controls::Control*>;

  // Sets the layout of body.
  FormGrid(QWidget* body, Binder& binder);

  // Adds a label with a field over the full width, followed by small widgets. An empty label is the caption of the
  // control.
  QWidget* Row(const QString& label, controls::Control& control, std::initializer_list<QWidget*> trailing = {});
  // Adds two labelled fields side by side.
  void Pair(const Named& left, const Named& right);
  // Adds check boxes, which have captions of their own, two in a row.
  void Checks(std::initializer_list<controls::Control*> boxes);
  // Adds a check box and, beside it, the labelled field that it enables.
  void CheckAndField(controls::Control& check, controls::Control& field);

 private:
  void AddLabelled(int column, const Named& named);

  QGridLayout* grid_;
  Binder& binder_;
  int row_ = 0;
};

}  // namespace quillon::ui
