// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>

#include "job/preview.h"

namespace quillon::ui {

// The preview picture, fitted into the widget, with the cut frame over it.
class PreviewCanvas : public QWidget {
  Q_OBJECT

 public:
  explicit PreviewCanvas(const job::Preview& preview, QWidget* parent = nullptr);

  // A reduced picture to draw; a null one shows the hint.
  void SetPicture(const QImage& picture);
  bool HasPicture() const { return !picture_.isNull(); }

  // Where the picture and the frame lie in this widget; empty without a picture.
  QRectF PictureRect() const;
  QRectF FrameRect() const;
  // The frame's size in pixels of the picture, "1062 × 1630 px".
  QString FrameText() const;

  QSize sizeHint() const override { return {320, 320}; }
  QSize minimumSizeHint() const override { return {160, 120}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const job::Preview& preview_;
  QImage picture_;
  QPixmap scaled_;  // picture_ at the size it is shown in
};

}  // namespace quillon::ui
