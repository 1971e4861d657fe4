// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/preview.h"

#include "base/rect.h"

namespace quillon::job {
namespace {

PreviewFrame Scaled(const PreviewFrame& frame, double scale) {
  return {frame.left * scale, frame.top * scale, frame.width * scale, frame.height * scale};
}

}  // namespace

PreviewFrame Preview::Frame() const { return Scaled(frame_, scale_); }

// Always notifies: the file of the same path may hold another picture by now.
void Preview::ShowPicture(std::string path, base::Size picture) {
  path_ = std::move(path);
  original_ = upright_ = picture_ = picture;
  angle_ = 0;
  ++showings_;
  glances_ = false;
  if (upcoming_ == path_) upcoming_.clear();
  Notify();
}

void Preview::Reshape(base::Size picture, double angle) {
  const base::Size turned = angle == 0 ? picture : base::TurnedSize(picture, angle);
  if (upright_ == picture && angle_ == angle) return;
  upright_ = picture;
  picture_ = turned;
  angle_ = angle;
  Notify();
}

void Preview::SetScale(double scale) {
  if (!(scale > 0) || scale_ == scale) return;
  scale_ = scale;
  Notify();
}

void Preview::SetFrame(const PreviewFrame& shown) { SetPictureFrame(Scaled(shown, 1 / scale_)); }

void Preview::SetPictureFrame(const PreviewFrame& frame) {
  if (frame_ == frame) return;
  frame_ = frame;
  Notify();
}

void Preview::SetBoard(const PreviewBoard& board) {
  if (board_ == board) return;
  board_ = board;
  Notify();
}

void Preview::SetShape(int shape) {
  if (shape_ == shape) return;
  shape_ = shape;
  Notify();
}

void Preview::SetBorderStyle(int style) {
  if (borderStyle_ == style) return;
  borderStyle_ = style;
  Notify();
}

void Preview::SetSecondLook(bool second) {
  if (secondLook_ == second) return;
  secondLook_ = second;
  Notify();
}

void Preview::SetUpcoming(std::string path) {
  upcoming_ = std::move(path);
  glances_ = false;
  Notify();
}

void Preview::Glance() {
  glances_ = !upcoming_.empty();
  Notify();
}

void Preview::Notify() {
  if (observer_) observer_();
}

}  // namespace quillon::job
