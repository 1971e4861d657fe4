// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/theme/flat_paint.h"

#include <QPainter>
#include <QStyleOption>
#include <QWidget>

#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

constexpr double kArrowHalf = 3.25;
constexpr int kHintIcon = 5 * kGap;

}  // namespace

QColor Blend(const QColor& under, const QColor& over, double strength) {
  const auto mix = [strength](int a, int b) { return qRound(a + (b - a) * strength); };
  return {mix(under.red(), over.red()), mix(under.green(), over.green()), mix(under.blue(), over.blue())};
}

QColor OutlineInk(const QStyleOption& option) {
  const QPalette& palette = option.palette;
  const bool enabled = option.state & QStyle::State_Enabled;
  if (enabled && (option.state & QStyle::State_HasFocus)) return palette.color(QPalette::Active, QPalette::Highlight);
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  if (!enabled) return Blend(window, text, 0.12);
  return Blend(window, text, option.state & QStyle::State_MouseOver ? 0.5 : 0.26);
}

void PaintBox(QPainter& painter, const QRectF& rect, const QColor& fill, const QColor& outline, double radius) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(outline.isValid() ? QPen(outline, 1) : QPen(Qt::NoPen));
  painter.setBrush(fill);
  // Half a pixel inwards, so that a line of one pixel does not cover two.
  painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
  painter.restore();
}

void PaintArrow(QPainter& painter, const QRectF& rect, ArrowDirection pointing, const QColor& ink) {
  const double tip = pointing == ArrowDirection::Down ? kArrowHalf / 2 : -kArrowHalf / 2;
  const QPointF centre = rect.center();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ink, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(
      QPolygonF{centre + QPointF(-kArrowHalf, -tip), centre + QPointF(0, tip), centre + QPointF(kArrowHalf, -tip)});
  painter.restore();
}

void PaintTick(QPainter& painter, const QRectF& rect, const QColor& ink) {
  const auto at = [&rect](double x, double y) {
    return QPointF(rect.left() + rect.width() * x, rect.top() + rect.height() * y);
  };
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ink, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF{at(0.24, 0.52), at(0.43, 0.71), at(0.77, 0.31)});
  painter.restore();
}

void PaintDropHint(QPainter& painter, const QWidget& widget, const QString& more) {
  QRect box = widget.rect().adjusted(kGap, kGap, -kGap, -kGap);
  const int line = widget.fontMetrics().height();
  QRect block(0, 0, box.width(), kHintIcon + kGap + line * (more.isEmpty() ? 1 : 2));
  block.moveCenter(box.center());
  const QRect icon(block.center().x() - kHintIcon / 2, block.top(), kHintIcon, kHintIcon);
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
