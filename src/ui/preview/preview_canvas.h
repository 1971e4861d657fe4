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

// Draws the preview picture, fitted to the widget or enlarged, and the cut frame or the regions over it.
// Three coordinate systems meet here: pixels of the whole picture, in which the records count; pixels of the reduced
// picture, which is what is drawn; and pixels of this widget.
class PreviewCanvas : public QWidget {
  Q_OBJECT

 public:
  explicit PreviewCanvas(const job::Preview& preview, QWidget* parent = nullptr);

  // Sets the reduced picture to draw; a null image shows the hint.
  void SetPicture(const QImage& picture);
  bool HasPicture() const { return !picture_.isNull(); }
  // Shows a picture in place of the current one, fitted and without a frame, until it is reset with a null image or
  // SetPicture is called.
  void SetGlance(const QImage& picture);
  bool Glances() const { return !glance_.isNull(); }
  // zoom is the size relative to the fitted picture.
  // across and down, 0 to 1, are the shares of the hidden width and height that lie to the left and above.
  void SetView(double zoom, double across, double down);
  // Sets whether handles are drawn at the frame.
  void SetHandles(bool handles);
  // Sets the regions to draw instead of the frame, in pixels of the picture, and the index of the selected one, if any.
  void SetRegions(std::vector<job::PreviewFrame> regions, std::optional<std::size_t> picked);

  // Returns the area of the picture or of the frame in this widget; empty without a picture.
  QRectF PictureRect() const;
  QRectF FrameRect() const;
  // Returns the area of what is cut; that of the frame if the result is not known.
  QRectF ResultRect() const;
  // Returns the size of the part of the picture that does not fit into the widget, in pixels of the widget.
  QSizeF Hidden() const;
  // Converts a frame from pixels of the picture to pixels of this widget.
  QRectF Placed(const job::PreviewFrame& frame) const;
  // Converts a point of this widget to pixels of the picture.
  regions::Point PlaceAt(const QPointF& point) const;
  // Returns what a press at a point takes hold of: the frame as a whole, a side or a corner; nothing beside the frame.
  std::optional<regions::Grip> GripAt(const QPointF& point) const;
  // Returns the region at a point; of several the last one. Only the number, the outline and a selected region count.
  std::optional<std::size_t> RegionAt(const QPointF& point) const;
  // Returns the size of the finished file, "1062 × 1630 px", with millimetres if the resolution is known; of the frame
  // if the result is not known.
  QString FrameText() const;

  QSize sizeHint() const override { return {320, 320}; }
  QSize minimumSizeHint() const override { return {160, 120}; }

 signals:
  // The picture is enlarged so much that a reduced picture with a longer side of this many pixels would look sharper.
  void DetailWanted(int side);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // Returns what is cut, in pixels of the picture.
  const job::PreviewFrame& CutFrame() const;
  // Returns what has to fit into the widget, in pixels of the picture: the picture and the border around its cut.
  QRectF Extent() const;
  // Returns the area of Extent() in this widget.
  QRectF ExtentRect() const;
  // Prepares shaped_: the picture as it is cut, zoomed with its proportions and rotated on white.
  void Shape();
  void PaintPicture(QPainter& painter, const QRectF& shown);
  void PaintRegions(QPainter& painter) const;
  QRectF RegionBadge(std::size_t region) const;

  const job::Preview& preview_;
  QImage picture_;
  QImage glance_;       // see SetGlance
  QImage shaped_;       // picture_ as it is cut
  QPixmap scaled_;      // cache of shaped_ at the size on the screen, while the picture is fitted
  base::Size upright_;  // what shaped_ was made for
  double angle_ = 0;
  double zoom_ = 1;
  double across_ = 0.5;
  double down_ = 0.5;
  bool handles_ = false;
  std::vector<job::PreviewFrame> regions_;
  std::optional<std::size_t> picked_;
};

}  // namespace quillon::ui
