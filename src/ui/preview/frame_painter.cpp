// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/frame_painter.h"

#include <QPainter>

#include "ui/kit/theme/metrics.h"

namespace quillon::ui {
namespace {

constexpr int kRounded = 4;
constexpr double kCornerPart = 0.12;
constexpr double kHandle = 14;

const QColor kShade(0, 0, 0, 120);
const QColor kLine(255, 255, 255);
const QColor kUnderline(0, 0, 0, 110);
const QColor kAccent(0x3d, 0x86, 0xff);
const QColor kPicked(0xf2, 0x8c, 0x1d);

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

// With a line around it, so that it is seen on a ground of its own colour.
void PaintBoard(QPainter& painter, const FrameLook& look) {
  if (look.board.isNull()) return;
  const QRectF outside = look.frame.marginsAdded(look.board);
  QPainterPath band;
  band.addRect(outside);
  QPainterPath inside;
  inside.addRect(look.frame);
  painter.fillPath(band.subtracted(inside), look.boardColour);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kUnderline, 1));
  painter.drawRect(outside);
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

// The middle, as a small cross.
void PaintCentre(QPainter& painter, const QRectF& frame) {
  const double reach = qMin(kHandle, qMin(frame.width(), frame.height()) / 6);
  const QPointF centre = frame.center();
  painter.setPen(QPen(QColor(255, 255, 255, 150), 1));
  painter.drawLine(centre - QPointF(reach, 0), centre + QPointF(reach, 0));
  painter.drawLine(centre - QPointF(0, reach), centre + QPointF(0, reach));
}

// In the middle of each side, between the corners.
void PaintHandles(QPainter& painter, const QRectF& frame) {
  if (qMin(frame.width(), frame.height()) < 4 * kHandle) return;
  painter.setPen(QPen(kAccent, 3, Qt::SolidLine, Qt::RoundCap));
  const QPointF across(kHandle / 2, 0);
  const QPointF along(0, kHandle / 2);
  const QPointF centre = frame.center();
  for (const double y : {frame.top(), frame.bottom()}) {
    painter.drawLine(QPointF(centre.x(), y) - across, QPointF(centre.x(), y) + across);
  }
  for (const double x : {frame.left(), frame.right()}) {
    painter.drawLine(QPointF(x, centre.y()) - along, QPointF(x, centre.y()) + along);
  }
}

void PaintLabel(QPainter& painter, const FrameLook& look) {
  const QFontMetricsF metrics(painter.font());
  QRectF pill(0, 0, metrics.horizontalAdvance(look.label) + 2 * kGap, metrics.height() + kGap / 2.0);
  const QRectF seen = look.visible.isEmpty() ? look.frame : look.frame.intersected(look.visible);
  pill.moveCenter(QPointF(seen.center().x(), 0));
  pill.moveBottom(seen.bottom() - kGap);
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
  PaintBoard(painter, look);

  const bool square = look.shape < 2;
  if (square) PaintThirds(painter, look.frame);
  PaintCentre(painter, look.frame);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kUnderline, 3));
  painter.drawPath(outline);
  painter.setPen(QPen(look.fixed != look.second ? kAccent : kLine, 1.25));
  painter.drawPath(outline);
  if (square) PaintCorners(painter, look.frame);
  if (look.handles && !look.fixed) PaintHandles(painter, look.frame);
  PaintLabel(painter, look);
  painter.restore();
}

void PaintRegion(QPainter& painter, const RegionLook& look) {
  if (look.frame.width() <= 0 || look.frame.height() <= 0) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ink = look.picked ? kPicked : kAccent;
  QColor fill = ink;
  fill.setAlpha(look.picked ? 60 : 28);
  painter.setPen(QPen(kUnderline, 3));
  painter.setBrush(fill);
  painter.drawRect(look.frame);
  painter.setPen(QPen(ink, look.picked ? 2 : 1.5));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(look.frame);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ink);
  painter.drawRoundedRect(look.badge, 4, 4);
  painter.setPen(Qt::white);
  QFont font = painter.font();
  font.setBold(true);
  if (look.number > 99) font.setPointSizeF(font.pointSizeF() * 0.8);
  painter.setFont(font);
  painter.drawText(look.badge, Qt::AlignCenter, QString::number(look.number));
  painter.restore();
}

}  // namespace quillon::ui
