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

// Returns the outline of a cut. shape is the index of CmbCutStyle: 0 rectangle, 1 square, 2 ellipse, 3 circle, 4
// rounded rectangle, 5 rounded square.
QPainterPath FrameOutline(const QRectF& frame, int shape);

// What PaintFrame draws. All rectangles are in pixels of the widget.
struct FrameDrawing {
  QRectF picture;        // area of the picture
  QRectF frame;          // area of the frame, which may extend beyond the picture
  int shape = 0;         // see FrameOutline
  bool fixed = false;    // the frame has a fixed size, which is shown by its colour
  QString label;         // text with its size
  bool handles = false;  // the frame can be moved and resized, so handles are drawn
  bool second = false;   // alternates the colour of the outline while the frame blinks
  QRectF visible;        // visible area of the widget; the label stays inside
  QMarginsF board;       // width of the border around the frame
  QColor boardColour;
  QRectF asked;  // the frame of the panel if it is not what is cut, else null; drawn dashed, with the handles
};

// Darkens what is cut off, and draws the frame with its border, guides, handles and label.
void PaintFrame(QPainter& painter, const FrameDrawing& look);

// What PaintRegion draws, in pixels of the widget.
struct RegionDrawing {
  QRectF frame;
  QRectF badge;         // area of the number
  int number = 0;       // counted from 1
  bool picked = false;  // the region is selected
};

// Draws one region of a list with its number.
void PaintRegion(QPainter& painter, const RegionDrawing& look);

}  // namespace quillon::ui
