// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace quillon::ui {

// Lists the keys of the manual step over the picture. A click on it hides it; it starts hidden.
// It keeps the size of the canvas, which owns it.
class KeyOverlay : public QWidget {
 public:
  // The canvas becomes the owner.
  explicit KeyOverlay(QWidget& canvas);

  // Shows or hides the list.
  void Toggle();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillon::ui
