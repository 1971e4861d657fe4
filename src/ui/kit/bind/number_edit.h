// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractSpinBox>
#include <QString>
#include <functional>

#include "controls/values.h"

namespace quillon::ui {

// A box for one number, with arrows. It takes anything a number may be typed from and leaves limits to the record; only
// the arrows stop at the limits that were told.
class NumberEdit : public QAbstractSpinBox {
  Q_OBJECT

 public:
  explicit NumberEdit(controls::Content content, QWidget* parent = nullptr);

  QString Text() const { return text(); }
  void SetText(const QString& text);
  void SetLimits(const controls::Limits& limits);
  // True while what is typed was not handed over.
  bool Typed() const { return text() != given_; }
  // Told of the number that an arrow leads to.
  void SetStepHandler(std::function<void(const QString&)> handler) { onStep_ = std::move(handler); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  void stepBy(int steps) override;
  QValidator::State validate(QString& input, int& position) const override;

 protected:
  StepEnabled stepEnabled() const override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  controls::Content content_;
  controls::Limits limits_;
  QString given_;  // what the record last gave; the line's own mark is lost at Enter
  std::function<void(const QString&)> onStep_;
};

}  // namespace quillon::ui
