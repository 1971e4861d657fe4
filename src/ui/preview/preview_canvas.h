// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>
#include <optional>
#include <vector>

#include "job/windows/preview.h"
#include "regions/frame/frame_math.h"

namespace quillon::ui {

// The preview picture, fitted into the widget or larger, with the cut frame over it.
class PreviewCanvas : public QWidget {
  Q_OBJECT

 public:
  explicit PreviewCanvas(const job::Preview& preview, QWidget* parent = nullptr);

  // A reduced picture to draw; a null one shows the hint.
  void SetPicture(const QImage& picture);
  bool HasPicture() const { return !picture_.isNull(); }
  // A picture that is seen in its place, fitted and without anything over it, until a null one or another picture.
  void SetGlance(const QImage& picture);
  bool Glances() const { return !glance_.isNull(); }
  // How much larger than fitted the picture is drawn, and what part of the rest lies to the left and above, 0 to 1.
  void SetView(double zoom, double across, double down);
  // Whether the frame can be taken hold of.
  void SetHandles(bool handles);
  // Regions to show over the picture, in pixels of it, and the one that is picked, if any.
  void SetRegions(std::vector<job::PreviewFrame> regions, std::optional<std::size_t> picked);

  // Where the picture and the frame lie in this widget; empty without a picture.
  QRectF PictureRect() const;
  QRectF FrameRect() const;
  // How much of the picture there is no room for.
  QSizeF Hidden() const;
  // A frame in pixels of the picture, as it lies in this widget.
  QRectF Placed(const job::PreviewFrame& frame) const;
  // The place in pixels of the picture under a point of this widget.
  regions::Point PlaceAt(const QPointF& point) const;
  // What a press at a point takes hold of.
  std::optional<regions::Grip> GripAt(const QPointF& point) const;
  std::optional<std::size_t> RegionAt(const QPointF& point) const;
  // The frame's size in pixels of the picture, "1062 × 1630 px", with millimetres where the resolution is known.
  QString FrameText() const;

  QSize sizeHint() const override { return {320, 320}; }
  QSize minimumSizeHint() const override { return {160, 120}; }

 signals:
  // What is drawn would be sharper from a picture with sides of this many pixels.
  void DetailWanted(int side);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // What has to have room, in pixels of the picture: the picture itself and the border around its frame.
  QRectF Extent() const;
  // Where that lies in this widget.
  QRectF ExtentRect() const;
  // The picture as it is cut: zoomed out of proportion where it is, turned on white.
  void Shape();
  void PaintPicture(QPainter& painter, const QRectF& shown);
  void PaintRegions(QPainter& painter) const;
  QRectF RegionBadge(std::size_t region) const;

  const job::Preview& preview_;
  QImage picture_;
  QImage glance_;
  QImage shaped_;   // picture_ as it is cut
  QPixmap scaled_;  // shaped_ at the size it is shown in, while it is fitted
  base::Size upright_;
  double angle_ = 0;
  double zoom_ = 1;
  double across_ = 0.5;
  double down_ = 0.5;
  bool handles_ = false;
  std::vector<job::PreviewFrame> regions_;
  std::optional<std::size_t> picked_;
};

}  // namespace quillon::ui
