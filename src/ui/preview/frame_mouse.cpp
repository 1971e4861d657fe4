// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/frame_mouse.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/preview/preview_canvas.h"

namespace quillon::ui {
namespace {

constexpr double kWheelFactor = 1.15;

Qt::CursorShape CursorOf(regions::Grip grip) {
  if (grip == regions::Grip()) return Qt::SizeAllCursor;
  if (grip.across == 0) return Qt::SizeVerCursor;
  if (grip.down == 0) return Qt::SizeHorCursor;
  return grip.across == grip.down ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
}

// Returns the position of a scroll bar at a part, 0 to 1, of its range.
int SliderPosition(const controls::Slider& bar, double part) {
  return std::clamp(static_cast<int>(std::lround(bar.Max() * part)), bar.Min(), bar.Max());
}

}  // namespace

int ZoomStep(int zoom, int direction) {
  const int stepped = static_cast<int>(std::lround(direction > 0 ? zoom * kWheelFactor : zoom / kWheelFactor));
  return stepped == zoom ? zoom + direction : stepped;
}

FrameMouse::FrameMouse(PreviewCanvas& canvas, job::FCutPre& record, regions::CutFrame& frame, Regions regions)
    : QObject(&canvas), canvas_(canvas), record_(record), frame_(frame), regions_(std::move(regions)) {
  canvas.installEventFilter(this);
}

bool FrameMouse::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      Press(static_cast<QMouseEvent&>(*event));
      return true;
    case QEvent::MouseMove:
      Move(static_cast<QMouseEvent&>(*event));
      return true;
    case QEvent::MouseButtonRelease:
      Release();
      return true;
    case QEvent::Wheel:
      Zoom(static_cast<QWheelEvent&>(*event));
      return true;
    default:
      return QObject::eventFilter(watched, event);
  }
}

regions::Point FrameMouse::PlaceAt(const QPointF& at) const {
  // The records count in whole pixels.
  regions::Point place = canvas_.PlaceAt(at);
  place = {std::round(place.x), std::round(place.y)};
  if (free_) return place;
  const base::Size picture = record_.preview.Picture();
  return {std::clamp(place.x, 0.0, double(picture.width)), std::clamp(place.y, 0.0, double(picture.height))};
}

void FrameMouse::Press(const QMouseEvent& event) {
  canvas_.setFocus(Qt::MouseFocusReason);
  last_ = event.position();
  if (!canvas_.HasPicture() || action_ != Action::Nothing) return;
  if (event.button() == Qt::MiddleButton) {
    action_ = Action::Pan;
    return;
  }
  if (event.button() != Qt::LeftButton) return;
  if (regions::RegionEditor* editor = regions_()) {
    const auto region = canvas_.RegionAt(last_);
    if (!region) return;
    action_ = Action::Region;
    region_ = *region;
    editor->Select(region_);
    free_ = true;
    lastPlace_ = PlaceAt(last_);
    return;
  }
  if (!frame_.Editable()) return;
  const auto grip = canvas_.GripAt(last_);
  action_ = Action::Frame;
  free_ = grip && *grip == regions::Grip();
  if (grip) {
    frame_.Pic_MouseDown(PlaceAt(last_), *grip);
  } else {
    frame_.Pic_MouseDown(PlaceAt(last_));
  }
}

void FrameMouse::Move(const QMouseEvent& event) {
  const QPointF at = event.position();
  switch (action_) {
    case Action::Nothing:
      ShowCursor(at);
      break;
    case Action::Frame:
      frame_.Pic_MouseMove(PlaceAt(at));
      break;
    case Action::Region: {
      const regions::Point place = PlaceAt(at);
      if (regions::RegionEditor* editor = regions_(); editor && region_ < editor->List().RowCount()) {
        editor->Move(region_, place.x - lastPlace_.x, place.y - lastPlace_.y);
      }
      lastPlace_ = place;
      break;
    }
    case Action::Pan:
      Pan(at - last_);
      break;
  }
  last_ = at;
}

void FrameMouse::Release() {
  // The state is reset first, so that an event during the call finds the mouse idle.
  const Action done = std::exchange(action_, Action::Nothing);
  free_ = false;
  if (done == Action::Frame) frame_.Pic_MouseUp();
}

void FrameMouse::ShowCursor(const QPointF& at) {
  Qt::CursorShape shape = Qt::ArrowCursor;
  if (regions_()) {
    if (canvas_.RegionAt(at)) shape = Qt::SizeAllCursor;
  } else if (frame_.Editable() && canvas_.HasPicture()) {
    const auto grip = canvas_.GripAt(at);
    shape = frame_.Fixed() ? Qt::SizeAllCursor : grip ? CursorOf(*grip) : Qt::CrossCursor;
  }
  canvas_.setCursor(shape);
}

// The point of the picture under the pointer keeps its position.
void FrameMouse::Zoom(const QWheelEvent& event) {
  if (event.angleDelta().y() == 0 || !canvas_.HasPicture()) return;
  const QRectF before = canvas_.PictureRect();
  const QPointF at = event.position();
  const double x = (at.x() - before.left()) / before.width();
  const double y = (at.y() - before.top()) / before.height();
  const int zoom = ZoomStep(record_.Slider1.Position(), event.angleDelta().y() > 0 ? 1 : -1);
  record_.Slider1.UserEdit(std::to_string(std::clamp(zoom, record_.Slider1.Min(), record_.Slider1.Max())));
  const QRectF after = canvas_.PictureRect();
  Pan({at.x() - (after.left() + x * after.width()), at.y() - (after.top() + y * after.height())});
}

void FrameMouse::Pan(const QPointF& by) {
  const QSizeF hidden = canvas_.Hidden();
  // The picture moves right when the hidden part on the left gets smaller.
  const auto scroll = [](controls::Slider& bar, double step, double length) {
    if (length <= 0 || bar.Max() == 0) return;
    bar.Set(SliderPosition(bar, static_cast<double>(bar.Position()) / bar.Max() - step / length));
  };
  scroll(record_.HS, by.x(), hidden.width());
  scroll(record_.VS, by.y(), hidden.height());
}

}  // namespace quillon::ui
