// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QMarginsF>
#include <QPainterPath>
#include <QRectF>
#include <QString>

class QPainter;
class QWidget;

namespace quillon::ui {

// The outline of a cut of the given shape (as CmbCutStyle: rectangle, square, ellipse, circle, rounded, rounded
// square).
QPainterPath FrameOutline(const QRectF& frame, int shape);

struct FrameLook {
  QRectF picture;  // where the picture is drawn
  QRectF frame;    // the cut frame over it
  int shape = 0;
  bool fixed = false;    // a frame of a fixed size, told by its colour
  QString label;         // its size in words
  bool handles = false;  // it can be taken hold of
  bool second = false;   // the other of its two looks
  QRectF visible;        // what of the picture can be seen
  QMarginsF board;       // the border around it
  QColor boardColour;
};

// Dims what is cut off, and draws the frame with its size and border.
void PaintFrame(QPainter& painter, const FrameLook& look);

struct RegionLook {
  QRectF frame;
  QRectF badge;  // its number stands there
  int number = 0;
  bool picked = false;
};

// One of several regions with its number.
void PaintRegion(QPainter& painter, const RegionLook& look);

}  // namespace quillon::ui
