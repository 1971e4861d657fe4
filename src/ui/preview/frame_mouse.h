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

// Handles the mouse over the canvas. The left button draws, moves and resizes the frame, or moves regions while they
// are shown; the wheel zooms about the pointer; the middle button pans.
// All changes go through the records, which apply the rules of the frame.
class FrameMouse : public QObject {
 public:
  // Returns the regions that are shown, or nullptr while the frame is shown.
  using Regions = std::function<regions::RegionEditor*()>;

  // The canvas becomes the owner.
  FrameMouse(PreviewCanvas& canvas, job::FCutPre& record, regions::CutFrame& frame, Regions regions);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Action { Nothing, Frame, Region, Pan };

  void Press(const QMouseEvent& event);
  void Move(const QMouseEvent& event);
  void Release();
  void Zoom(const QWheelEvent& event);
  // Moves the picture by a distance in pixels of the widget, by moving the scroll bars of the record.
  void Pan(const QPointF& by);
  void ShowCursor(const QPointF& at);
  // Returns the position of a point of the canvas in whole pixels of the picture. It is clamped to the picture unless
  // the whole frame or a region is being moved.
  regions::Point PlaceAt(const QPointF& at) const;

  PreviewCanvas& canvas_;
  job::FCutPre& record_;
  regions::CutFrame& frame_;
  Regions regions_;
  Action action_ = Action::Nothing;
  bool free_ = false;  // the position may lie outside the picture
  std::size_t region_ = 0;
  QPointF last_;
  regions::Point lastPlace_;
};

// Returns the zoom, in percent, after one step of the wheel. direction is 1 or -1.
// The zoom always changes by at least 1.
int ZoomStep(int zoom, int direction);

}  // namespace quillon::ui
