// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/frame_painter.h"

#include <QPainter>

#include "ui/theme/metrics.h"

namespace quillon::ui {
namespace {

constexpr int kRounded = 4;
constexpr double kCornerPart = 0.12;
constexpr double kHandle = 14;

const QColor kShade(0, 0, 0, 120);
const QColor kLine(255, 255, 255);
const QColor kUnderline(0, 0, 0, 110);
const QColor kAccent(0x3d, 0x86, 0xff);

// Strong corners, so that the frame is found at once on any picture.
void PaintCorners(QPainter& painter, const QRectF& frame) {
  const double reach = qMin(kHandle, qMin(frame.width(), frame.height()) / 3);
  if (reach < 2) return;
  painter.setPen(QPen(kAccent, 3, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
  for (const bool right : {false, true}) {
    for (const bool bottom : {false, true}) {
      const QPointF corner(right ? frame.right() : frame.left(), bottom ? frame.bottom() : frame.top());
      const QPointF across(right ? -reach : reach, 0);
      const QPointF along(0, bottom ? -reach : reach);
      painter.drawPolyline(QPolygonF{corner + across, corner, corner + along});
    }
  }
}

void PaintThirds(QPainter& painter, const QRectF& frame) {
  painter.setPen(QPen(QColor(255, 255, 255, 70), 1));
  for (const double part : {1.0 / 3, 2.0 / 3}) {
    const double x = frame.left() + frame.width() * part;
    const double y = frame.top() + frame.height() * part;
    painter.drawLine(QPointF(x, frame.top()), QPointF(x, frame.bottom()));
    painter.drawLine(QPointF(frame.left(), y), QPointF(frame.right(), y));
  }
}

void PaintLabel(QPainter& painter, const FrameLook& look) {
  const QFontMetricsF metrics(painter.font());
  QRectF pill(0, 0, metrics.horizontalAdvance(look.label) + 2 * kGap, metrics.height() + kGap / 2.0);
  pill.moveCenter(QPointF(look.frame.center().x(), 0));
  pill.moveBottom(look.frame.bottom() - kGap);
  if (pill.top() < look.picture.top()) pill.moveTop(look.picture.top());
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, 165));
  painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
  painter.setPen(Qt::white);
  painter.drawText(pill, Qt::AlignCenter, look.label);
}

}  // namespace

QPainterPath FrameOutline(const QRectF& frame, int shape) {
  QPainterPath path;
  if (shape == 2 || shape == 3) {
    path.addEllipse(frame);
  } else if (shape >= kRounded) {
    const double radius = kCornerPart * qMin(frame.width(), frame.height());
    path.addRoundedRect(frame, radius, radius);
  } else {
    path.addRect(frame);
  }
  return path;
}

void PaintFrame(QPainter& painter, const FrameLook& look) {
  if (look.frame.width() <= 0 || look.frame.height() <= 0) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const QPainterPath outline = FrameOutline(look.frame, look.shape);
  QPainterPath shade;
  shade.addRect(look.picture);
  painter.fillPath(shade.subtracted(outline), kShade);

  const bool square = look.shape < 2;
  if (square) PaintThirds(painter, look.frame);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kUnderline, 3));
  painter.drawPath(outline);
  painter.setPen(QPen(look.fixed ? kAccent : kLine, 1.25));
  painter.drawPath(outline);
  if (square) PaintCorners(painter, look.frame);
  PaintLabel(painter, look);
  painter.restore();
}

}  // namespace quillon::ui
