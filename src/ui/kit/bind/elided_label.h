// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace quillon::ui {

// A label of one line of plain text that is elided in the middle if there is no room.
// The full text is then shown as the tooltip, unless the label has a tooltip of its own.
class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  // The width of the ellipsis, so that a long text never widens its window.
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
};

}  // namespace quillon::ui
