// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace quillon::ui {

// The keys of the manual step, laid over the picture; a click puts it away.
class KeyOverlay : public QWidget {
 public:
  explicit KeyOverlay(QWidget& canvas);

  void Toggle();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillon::ui
