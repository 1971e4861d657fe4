// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QPainter;
class QWidget;

namespace quillon::ui {

// What stands in an empty list and an empty preview.
inline const QString kDropHint = QStringLiteral("把图片或文件夹拖到这里");

// Paints an icon and a line of faint text in the middle of a widget.
void PaintDropHint(QPainter& painter, const QWidget& widget, const QString& more = {});

}  // namespace quillon::ui
