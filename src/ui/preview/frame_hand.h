// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>
#include <functional>
#include <optional>

#include "job/windows/fcutpre.h"
#include "regions/frame/cut_frame.h"
#include "regions/lists/region_editor.h"

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace quillon::ui {

class PreviewCanvas;

// The user's mouse over the canvas: draws, moves and resizes the frame, or moves regions while they are shown; the
// wheel zooms about the pointer, the middle button moves the picture.
class FrameHand : public QObject {
 public:
  // regions gives the regions on show, nullptr where the frame is.
  using Regions = std::function<regions::RegionEditor*()>;

  FrameHand(PreviewCanvas& canvas, job::FCutPre& record, regions::CutFrame& frame, Regions regions);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Doing { Nothing, Frame, Region, Pan };

  void Press(const QMouseEvent& event);
  void Move(const QMouseEvent& event);
  void Release();
  void Zoom(const QWheelEvent& event);
  void Pan(const QPointF& by);
  void ShowCursor(const QPointF& at);
  // In whole pixels of the picture, inside it unless the frame as a whole is held.
  regions::Point PlaceAt(const QPointF& at) const;

  PreviewCanvas& canvas_;
  job::FCutPre& record_;
  regions::CutFrame& frame_;
  Regions regions_;
  Doing doing_ = Doing::Nothing;
  bool free_ = false;  // the pointer may leave the picture
  std::size_t region_ = 0;
  QPointF last_;
  regions::Point lastPlace_;
};

// Moves by one step of the slider's wheel.
int ZoomStep(int zoom, int direction);

}  // namespace quillon::ui
