// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>
#include <QString>

class QPainter;
class QStyleOption;
class QWidget;

namespace quillon::ui {

enum class ArrowDirection { Up, Down };

// Returns the outline colour of a box in its state: focused, hovered, disabled or normal.
QColor OutlineInk(const QStyleOption& option);
// Returns over blended with under. strength is the share of over, 0 to 1.
QColor Blend(const QColor& under, const QColor& over, double strength);

// Fills a rounded rectangle. An invalid outline colour paints no outline. radius is in device-independent pixels.
void PaintBox(QPainter& painter, const QRectF& rect, const QColor& fill, const QColor& outline, double radius = 4);
// Paints an arrow head or a check mark in the middle of rect.
void PaintArrow(QPainter& painter, const QRectF& rect, ArrowDirection pointing, const QColor& ink);
void PaintTick(QPainter& painter, const QRectF& rect, const QColor& ink);

// The text of an empty list and an empty preview: files can be dropped here.
inline const QString kDropHint = QStringLiteral("把图片或文件夹拖到这里");

// Paints an icon and kDropHint in faint colour in the middle of widget.
// more is a second line below it; empty paints only the hint. Lines that are too long are elided at the end.
void PaintDropHint(QPainter& painter, const QWidget& widget, const QString& more = {});

}  // namespace quillon::ui
