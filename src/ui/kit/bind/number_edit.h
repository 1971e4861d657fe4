// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractSpinBox>
#include <QString>
#include <functional>

#include "controls/values.h"

namespace quillon::ui {

// A box for one number, with arrows. It accepts any text, and leaves parsing and limits to the record; only the arrows
// stop at the limits.
class NumberEdit : public QAbstractSpinBox {
  Q_OBJECT

 public:
  explicit NumberEdit(QWidget* parent = nullptr);

  QString Text() const { return text(); }
  // Shows a text of the record, which counts as sent.
  void SetText(const QString& text);
  // Sets the limits at which the arrows stop.
  void SetLimits(const controls::Limits& limits);
  // Returns true while the record has not received what is typed.
  bool HasUnsentText() const { return text() != sent_; }
  // The handler receives the number after a click on an arrow.
  void SetStepHandler(std::function<void(const QString&)> handler) { onStep_ = std::move(handler); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  void stepBy(int steps) override;
  QValidator::State validate(QString& input, int& position) const override;

 protected:
  StepEnabled stepEnabled() const override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  controls::Limits limits_;
  QString sent_;  // text that the record last set; QLineEdit loses its own modified flag at Enter
  std::function<void(const QString&)> onStep_;
};

}  // namespace quillon::ui
