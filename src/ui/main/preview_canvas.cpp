// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/preview_canvas.h"

#include <QPainter>

#include "ui/main/frame_painter.h"
#include "ui/main/hint.h"
#include "ui/theme/metrics.h"

namespace quillon::ui {

PreviewCanvas::PreviewCanvas(const job::Preview& preview, QWidget* parent) : QWidget(parent), preview_(preview) {
  setObjectName(QStringLiteral("previewCanvas"));
  setAccessibleName(QStringLiteral("预览"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PreviewCanvas::SetPicture(const QImage& picture) {
  picture_ = picture;
  scaled_ = {};
  update();
}

QRectF PreviewCanvas::PictureRect() const {
  const QSizeF whole(preview_.Picture().width, preview_.Picture().height);
  if (picture_.isNull() || whole.isEmpty()) return {};
  const QRectF room = QRectF(rect()).adjusted(kGap, kGap, -kGap, -kGap);
  QRectF shown(QPointF(), whole.scaled(room.size(), Qt::KeepAspectRatio));
  shown.moveCenter(room.center());
  return shown;
}

// The record holds the frame at its own scale; what counts here is its place within the picture.
QRectF PreviewCanvas::FrameRect() const {
  const QRectF shown = PictureRect();
  if (shown.isEmpty() || preview_.ShownWidth() <= 0 || preview_.ShownHeight() <= 0) return {};
  const double across = shown.width() / preview_.ShownWidth();
  const double down = shown.height() / preview_.ShownHeight();
  const job::PreviewFrame frame = preview_.Frame();
  return {shown.left() + frame.left * across, shown.top() + frame.top * down, frame.width * across,
          frame.height * down};
}

QString PreviewCanvas::FrameText() const {
  const job::PreviewFrame frame = preview_.Frame();
  return QStringLiteral("%1 × %2 px")
      .arg(qRound(frame.width / preview_.Scale()))
      .arg(qRound(frame.height / preview_.Scale()));
}

void PreviewCanvas::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRectF shown = PictureRect();
  if (shown.isEmpty()) {
    PaintDropHint(painter, *this);
    return;
  }
  const QSize pixels = (shown.size() * devicePixelRatioF()).toSize().expandedTo(QSize(1, 1));
  if (scaled_.size() != pixels) {
    scaled_ = QPixmap::fromImage(picture_.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    scaled_.setDevicePixelRatio(devicePixelRatioF());
  }
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawPixmap(shown, scaled_, QRectF(QPointF(), QSizeF(pixels)));
  painter.setClipRect(rect());
  PaintFrame(painter, {shown, FrameRect(), preview_.Shape(), preview_.BorderStyle() != 0, FrameText()});
}

}  // namespace quillon::ui
