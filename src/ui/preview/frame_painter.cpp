// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/frame_painter.h"

#include <QPainter>

#include "ui/kit/theme/theme.h"

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

// Thick corners make the frame visible on any picture.
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

// An outline keeps the border visible on a background of its own colour.
void PaintBoard(QPainter& painter, const FrameDrawing& drawing) {
  if (drawing.board.isNull()) return;
  const QRectF outside = drawing.frame.marginsAdded(drawing.board);
  QPainterPath band;
  band.addRect(outside);
  QPainterPath inside;
  inside.addRect(drawing.frame);
  painter.fillPath(band.subtracted(inside), drawing.boardColour);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kUnderline, 1));
  painter.drawRect(outside);
}

// Guides at one and two thirds.
void PaintThirds(QPainter& painter, const QRectF& frame) {
  painter.setPen(QPen(QColor(255, 255, 255, 70), 1));
  for (const double part : {1.0 / 3, 2.0 / 3}) {
    const double x = frame.left() + frame.width() * part;
    const double y = frame.top() + frame.height() * part;
    painter.drawLine(QPointF(x, frame.top()), QPointF(x, frame.bottom()));
    painter.drawLine(QPointF(frame.left(), y), QPointF(frame.right(), y));
  }
}

// A small cross in the centre.
void PaintCentre(QPainter& painter, const QRectF& frame) {
  const double reach = qMin(kHandle, qMin(frame.width(), frame.height()) / 6);
  const QPointF centre = frame.center();
  painter.setPen(QPen(QColor(255, 255, 255, 150), 1));
  painter.drawLine(centre - QPointF(reach, 0), centre + QPointF(reach, 0));
  painter.drawLine(centre - QPointF(0, reach), centre + QPointF(0, reach));
}

// A handle in the middle of each side. A frame that is too small gets none.
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

// The frame that was asked for, on a dark line, so that it is visible on any picture.
void PaintAsked(QPainter& painter, const FrameDrawing& drawing) {
  if (drawing.asked.width() <= 0 || drawing.asked.height() <= 0) return;
  const QPainterPath outline = FrameOutline(drawing.asked, drawing.shape);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kUnderline, 2));
  painter.drawPath(outline);
  painter.setPen(QPen(kLine, 1, Qt::DashLine));
  painter.drawPath(outline);
  if (drawing.handles && !drawing.fixed) PaintHandles(painter, drawing.asked);
}

// The size, at the bottom of the visible part of the frame, never above the picture and never beside what is visible.
void PaintLabel(QPainter& painter, const FrameDrawing& drawing) {
  const QFontMetricsF metrics(painter.font());
  QRectF pill(0, 0, metrics.horizontalAdvance(drawing.label) + 2 * kGap, metrics.height() + kGap / 2.0);
  const QRectF about = drawing.frame.isEmpty() ? drawing.picture : drawing.frame;
  const QRectF seen = drawing.visible.isEmpty() ? about : about.intersected(drawing.visible);
  pill.moveCenter(QPointF(seen.center().x(), 0));
  const QRectF room = drawing.visible.isEmpty() ? drawing.picture : drawing.visible;
  pill.moveLeft(qMax(room.left(), qMin(pill.left(), room.right() - pill.width())));
  pill.moveBottom(seen.bottom() - kGap);
  if (pill.top() < drawing.picture.top()) pill.moveTop(drawing.picture.top());
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0, 0, 0, 165));
  painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
  painter.setPen(Qt::white);
  painter.drawText(pill, Qt::AlignCenter, drawing.label);
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

void PaintFrame(QPainter& painter, const FrameDrawing& drawing) {
  const bool nothing = drawing.frame.width() <= 0 || drawing.frame.height() <= 0;
  if (nothing && drawing.asked.isNull()) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (nothing) {
    painter.fillRect(drawing.picture, kShade);
    PaintAsked(painter, drawing);
    PaintLabel(painter, drawing);
    painter.restore();
    return;
  }
  const QPainterPath outline = FrameOutline(drawing.frame, drawing.shape);
  QPainterPath shade;
  shade.addRect(drawing.picture);
  painter.fillPath(shade.subtracted(outline), kShade);
  PaintBoard(painter, drawing);

  const bool square = drawing.shape < 2;
  if (square) PaintThirds(painter, drawing.frame);
  PaintCentre(painter, drawing.frame);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(kUnderline, 3));
  painter.drawPath(outline);
  painter.setPen(QPen(drawing.fixed != drawing.second ? kAccent : kLine, 1.25));
  painter.drawPath(outline);
  if (square) PaintCorners(painter, drawing.frame);
  if (drawing.asked.isNull() && drawing.handles && !drawing.fixed) PaintHandles(painter, drawing.frame);
  PaintAsked(painter, drawing);
  PaintLabel(painter, drawing);
  painter.restore();
}

void PaintRegion(QPainter& painter, const RegionDrawing& drawing) {
  if (drawing.frame.width() <= 0 || drawing.frame.height() <= 0) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ink = drawing.picked ? kPicked : kAccent;
  QColor fill = ink;
  fill.setAlpha(drawing.picked ? 60 : 28);
  painter.setPen(QPen(kUnderline, 3));
  painter.setBrush(fill);
  painter.drawRect(drawing.frame);
  painter.setPen(QPen(ink, drawing.picked ? 2 : 1.5));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(drawing.frame);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ink);
  painter.drawRoundedRect(drawing.badge, 4, 4);
  painter.setPen(Qt::white);
  QFont font = painter.font();
  font.setBold(true);
  if (drawing.number > 99) font.setPointSizeF(font.pointSizeF() * 0.8);
  painter.setFont(font);
  painter.drawText(drawing.badge, Qt::AlignCenter, QString::number(drawing.number));
  painter.restore();
}

}  // namespace quillon::ui
