// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/number_edit.h"

#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionSpinBox>
#include <QWheelEvent>
#include <algorithm>
#include <optional>

#include "base/number_text.h"
#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

constexpr int kDigits = 6;

}  // namespace

NumberEdit::NumberEdit(QWidget* parent) : QAbstractSpinBox(parent) {
  setAccelerated(true);
  lineEdit()->setAcceptDrops(false);  // files dropped anywhere belong to the list
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void NumberEdit::SetText(const QString& text) {
  sent_ = text;
  if (text != lineEdit()->text()) lineEdit()->setText(text);
  update();
}

void NumberEdit::SetLimits(const controls::Limits& limits) {
  limits_ = limits;
  update();
}

QSize NumberEdit::sizeHint() const {
  ensurePolished();
  QStyleOptionSpinBox option;
  initStyleOption(&option);
  const int width = fontMetrics().horizontalAdvance(QString(kDigits, u'0')) + 2 * fontMetrics().averageCharWidth();
  const QSize content(width, lineEdit()->sizeHint().height());
  return style()->sizeFromContents(QStyle::CT_SpinBox, &option, content, this);
}

void NumberEdit::stepBy(int steps) {
  // A text that is no number, such as one with a unit, is the record's to read first.
  const std::optional<double> number = text().isEmpty() ? 0 : base::ParseNumber(Bytes(text()));
  if (!number) return;
  double value = *number + steps;
  if (limits_.min) value = std::max(value, *limits_.min);
  if (limits_.max) value = std::min(value, *limits_.max);
  SetText(QString::fromStdString(base::ShortNumberText(value)));
  if (onStep_) onStep_(text());
  selectAll();
}

// Any text can be typed. The record refuses what it cannot read, and says why.
QValidator::State NumberEdit::validate(QString&, int&) const { return QValidator::Acceptable; }

QAbstractSpinBox::StepEnabled NumberEdit::stepEnabled() const {
  const double value = base::ParseNumber(Bytes(text())).value_or(0);
  StepEnabled able = StepNone;
  if (!limits_.min || value > *limits_.min) able |= StepDownEnabled;
  if (!limits_.max || value < *limits_.max) able |= StepUpEnabled;
  return able;
}

// A wheel that scrolls the panel must not change the number that it passes over.
void NumberEdit::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QAbstractSpinBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace quillon::ui
