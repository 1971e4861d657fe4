// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/frame_hand.h"

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

// Where a scroll bar stands that hides so much more than before.
int Kept(const controls::Slider& bar, double part) {
  return std::clamp(static_cast<int>(std::lround(bar.Max() * part)), bar.Min(), bar.Max());
}

}  // namespace

int ZoomStep(int zoom, int direction) {
  const int stepped = static_cast<int>(std::lround(direction > 0 ? zoom * kWheelFactor : zoom / kWheelFactor));
  return stepped == zoom ? zoom + direction : stepped;
}

FrameHand::FrameHand(PreviewCanvas& canvas, job::FCutPre& record, regions::CutFrame& frame, Regions regions)
    : QObject(&canvas), canvas_(canvas), record_(record), frame_(frame), regions_(std::move(regions)) {
  canvas.installEventFilter(this);
}

bool FrameHand::eventFilter(QObject* watched, QEvent* event) {
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

regions::Point FrameHand::PlaceAt(const QPointF& at) const {
  regions::Point place = canvas_.PlaceAt(at);
  place = {std::round(place.x), std::round(place.y)};
  if (free_) return place;
  const base::Size picture = record_.preview.Picture();
  return {std::clamp(place.x, 0.0, double(picture.width)), std::clamp(place.y, 0.0, double(picture.height))};
}

void FrameHand::Press(const QMouseEvent& event) {
  canvas_.setFocus(Qt::MouseFocusReason);
  last_ = event.position();
  if (!canvas_.HasPicture() || doing_ != Doing::Nothing) return;
  if (event.button() == Qt::MiddleButton) {
    doing_ = Doing::Pan;
    return;
  }
  if (event.button() != Qt::LeftButton) return;
  if (regions::RegionEditor* editor = regions_()) {
    const auto region = canvas_.RegionAt(last_);
    if (!region) return;
    doing_ = Doing::Region;
    region_ = *region;
    editor->Select(region_);
    free_ = true;
    lastPlace_ = PlaceAt(last_);
    return;
  }
  if (!frame_.Editable()) return;
  const auto grip = canvas_.GripAt(last_);
  doing_ = Doing::Frame;
  free_ = grip && *grip == regions::Grip();
  if (grip) {
    frame_.Pic_MouseDown(PlaceAt(last_), *grip);
  } else {
    frame_.Pic_MouseDown(PlaceAt(last_));
  }
}

void FrameHand::Move(const QMouseEvent& event) {
  const QPointF at = event.position();
  switch (doing_) {
    case Doing::Nothing:
      ShowCursor(at);
      break;
    case Doing::Frame:
      frame_.Pic_MouseMove(PlaceAt(at));
      break;
    case Doing::Region: {
      const regions::Point place = PlaceAt(at);
      if (regions::RegionEditor* editor = regions_(); editor && region_ < editor->List().RowCount()) {
        editor->Move(region_, place.x - lastPlace_.x, place.y - lastPlace_.y);
      }
      lastPlace_ = place;
      break;
    }
    case Doing::Pan:
      Pan(at - last_);
      break;
  }
  last_ = at;
}

void FrameHand::Release() {
  const Doing done = std::exchange(doing_, Doing::Nothing);
  free_ = false;
  if (done == Doing::Frame) frame_.Pic_MouseUp();
}

void FrameHand::ShowCursor(const QPointF& at) {
  Qt::CursorShape shape = Qt::ArrowCursor;
  if (regions_()) {
    if (canvas_.RegionAt(at)) shape = Qt::SizeAllCursor;
  } else if (frame_.Editable() && canvas_.HasPicture()) {
    const auto grip = canvas_.GripAt(at);
    shape = frame_.Fixed() ? Qt::SizeAllCursor : grip ? CursorOf(*grip) : Qt::CrossCursor;
  }
  canvas_.setCursor(shape);
}

// What lies under the pointer stays there.
void FrameHand::Zoom(const QWheelEvent& event) {
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

void FrameHand::Pan(const QPointF& by) {
  const QSizeF hidden = canvas_.Hidden();
  const auto scroll = [](controls::Slider& bar, double step, double length) {
    if (length <= 0 || bar.Max() == 0) return;
    bar.Set(Kept(bar, static_cast<double>(bar.Position()) / bar.Max() - step / length));
  };
  scroll(record_.HS, by.x(), hidden.width());
  scroll(record_.VS, by.y(), hidden.height());
}

}  // namespace quillon::ui
