// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/form_grid.h"

#include <QGridLayout>
#include <QLabel>
#include <QWidget>

#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

// Label, field, label, field.
constexpr int kColumns = 4;
constexpr int kIndent = 2 * kGap;

}  // namespace

FormGrid::FormGrid(QWidget* body, Binder& binder) : grid_(new QGridLayout(body)), binder_(binder) {
  grid_->setContentsMargins(kIndent, 0, 0, kGap / 2);
  grid_->setHorizontalSpacing(kGap);
  grid_->setVerticalSpacing(kGap * 3 / 4);
  // The widest labels of all groups, so that the fields of every group start at the same place.
  grid_->setColumnMinimumWidth(0, body->fontMetrics().horizontalAdvance(QStringLiteral("裁剪模式：")));
  grid_->setColumnMinimumWidth(2, body->fontMetrics().horizontalAdvance(QStringLiteral("品质：")));
  grid_->setColumnStretch(1, 1);
  grid_->setColumnStretch(3, 1);
}

QWidget* FormGrid::Row(const QString& label, controls::Control& control, std::initializer_list<QWidget*> trailing) {
  QWidget* field = binder_.Make(control);
  grid_->addWidget(binder_.MakeLabel(control, field, label), row_, 0);
  if (trailing.size() == 0) {
    grid_->addWidget(field, row_, 1, 1, kColumns - 1);
  } else {
    auto* line = new QHBoxLayout;
    line->setSpacing(kGap / 2);
    line->addWidget(field, 1);
    for (QWidget* widget : trailing) line->addWidget(widget);
    grid_->addLayout(line, row_, 1, 1, kColumns - 1);
  }
  ++row_;
  return field;
}

void FormGrid::AddLabelled(int column, const Named& named) {
  QWidget* field = binder_.Make(*named.second);
  const Qt::Alignment side = column == 0 ? Qt::AlignLeft : Qt::AlignRight;
  grid_->addWidget(binder_.MakeLabel(*named.second, field, named.first), row_, column, side | Qt::AlignVCenter);
  grid_->addWidget(field, row_, column + 1);
}

void FormGrid::Pair(const Named& left, const Named& right) {
  AddLabelled(0, left);
  AddLabelled(2, right);
  ++row_;
}

void FormGrid::Checks(std::initializer_list<controls::Control*> boxes) {
  QHBoxLayout* line = nullptr;
  for (controls::Control* box : boxes) {
    if (!line || line->count() == 2) {
      line = new QHBoxLayout;
      line->setSpacing(kGap);
      grid_->addLayout(line, row_++, 0, 1, kColumns);
    }
    QWidget* widget = binder_.Make(*box);
    widget->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    line->addWidget(widget, 1);
  }
}

void FormGrid::CheckAndField(controls::Control& check, controls::Control& field) {
  grid_->addWidget(binder_.Make(check), row_, 0, 1, 2);
  AddLabelled(2, {{}, &field});
  ++row_;
}

}  // namespace quillon::ui
