// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/hint.h"

#include <QPainter>
#include <QWidget>

#include "ui/kit/theme/icons.h"
#include "ui/kit/theme/metrics.h"
#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

constexpr int kIcon = 5 * kGap;

}  // namespace

void PaintDropHint(QPainter& painter, const QWidget& widget, const QString& more) {
  QRect box = widget.rect().adjusted(kGap, kGap, -kGap, -kGap);
  const int line = widget.fontMetrics().height();
  QRect block(0, 0, box.width(), kIcon + kGap + line * (more.isEmpty() ? 1 : 2));
  block.moveCenter(box.center());
  const QRect icon(block.center().x() - kIcon / 2, block.top(), kIcon, kIcon);
  painter.setOpacity(0.7);
  LineIcon(QStringLiteral("drop-here")).paint(&painter, icon);
  painter.setOpacity(1);
  painter.setPen(FaintInk(widget.palette()));
  QRect text(block.left(), icon.bottom() + kGap, block.width(), line);
  const auto draw = [&](const QString& words) {
    painter.drawText(text, Qt::AlignCenter, widget.fontMetrics().elidedText(words, Qt::ElideRight, text.width()));
    text.translate(0, line);
  };
  draw(kDropHint);
  if (!more.isEmpty()) draw(more);
}

}  // namespace quillon::ui
