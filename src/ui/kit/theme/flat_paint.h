// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>

class QPainter;
class QStyleOption;

namespace quillon::ui {

enum class Pointing { Up, Down };

// The outline of a box in its state: focused, pointed at, disabled or at rest.
QColor OutlineInk(const QStyleOption& option);
// over laid on under with the given strength, 0 to 1.
QColor Mixed(const QColor& under, const QColor& over, double strength);

void PaintBox(QPainter& painter, const QRectF& rect, const QColor& fill, const QColor& outline, double radius = 4);
void PaintArrow(QPainter& painter, const QRectF& rect, Pointing pointing, const QColor& ink);
void PaintTick(QPainter& painter, const QRectF& rect, const QColor& ink);

}  // namespace quillon::ui
