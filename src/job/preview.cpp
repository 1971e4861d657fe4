// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/preview.h"

#include "imaging/turned_size.h"

namespace quillon::job {
namespace {

PreviewFrame Scaled(const PreviewFrame& frame, double scale) {
  return {frame.left * scale, frame.top * scale, frame.width * scale, frame.height * scale};
}

}  // namespace

PreviewFrame Preview::Frame() const { return Scaled(frame_, scale_); }

// The same path may hold another picture by now, so that showing it again is always told.
void Preview::ShowPicture(std::string path, base::Size picture) {
  path_ = std::move(path);
  original_ = upright_ = picture_ = picture;
  angle_ = 0;
  ++showings_;
  glances_ = false;
  if (upcoming_ == path_) upcoming_.clear();
  Tell();
}

void Preview::Reshape(base::Size picture, double angle) {
  const base::Size turned = angle == 0 ? picture : imaging::TurnedSize(picture, angle);
  if (upright_ == picture && angle_ == angle) return;
  upright_ = picture;
  picture_ = turned;
  angle_ = angle;
  Tell();
}

void Preview::SetScale(double scale) {
  if (!(scale > 0) || scale_ == scale) return;
  scale_ = scale;
  Tell();
}

void Preview::SetFrame(const PreviewFrame& shown) { SetPictureFrame(Scaled(shown, 1 / scale_)); }

void Preview::SetPictureFrame(const PreviewFrame& frame) {
  if (frame_ == frame) return;
  frame_ = frame;
  Tell();
}

void Preview::SetBoard(const PreviewBoard& board) {
  if (board_ == board) return;
  board_ = board;
  Tell();
}

void Preview::SetShape(int shape) {
  if (shape_ == shape) return;
  shape_ = shape;
  Tell();
}

void Preview::SetBorderStyle(int style) {
  if (borderStyle_ == style) return;
  borderStyle_ = style;
  Tell();
}

void Preview::SetSecondLook(bool second) {
  if (secondLook_ == second) return;
  secondLook_ = second;
  Tell();
}

void Preview::SetUpcoming(std::string path) {
  upcoming_ = std::move(path);
  glances_ = false;
  Tell();
}

void Preview::Glance() {
  glances_ = !upcoming_.empty();
  Tell();
}

void Preview::Tell() {
  if (observer_) observer_();
}

}  // namespace quillon::job
