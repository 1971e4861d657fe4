// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace quillon::ui {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const {
  return {fontMetrics().horizontalAdvance(QStringLiteral("…")), QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
  style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(), shown,
                        foregroundRole());
}

bool ElidedLabel::event(QEvent* event) {
  // Qt shows a tooltip only if one is set, so the elided text is shown here.
  if (event->type() == QEvent::ToolTip && toolTip().isEmpty() &&
      fontMetrics().horizontalAdvance(text()) > contentsRect().width()) {
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
  }
  return QLabel::event(event);
}

}  // namespace quillon::ui
