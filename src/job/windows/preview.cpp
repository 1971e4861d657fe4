// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/preview.h"

#include "base/rect.h"
#include "base/rounding.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"
#include "job/settings/geometry.h"

namespace quillon::job {
namespace {

PreviewFrame Scaled(const PreviewFrame& frame, double scale) {
  return {frame.left * scale, frame.top * scale, frame.width * scale, frame.height * scale};
}

// Returns the white border of a picture that is padded to the fixed size, in pixels of the picture.
PreviewBoard PaddingAround(const PreviewFrame& picture, const CutSettings& options) {
  const Fit fit =
      FitToSize({base::R(picture.width), base::R(picture.height)}, options.geometry.FixW, options.geometry.FixH);
  if (fit.FitW <= 0 || fit.FitH <= 0) return {};
  const double beside = fit.offsetX * picture.width / fit.FitW;
  const double above = fit.offsetY * picture.height / fit.FitH;
  return {beside, above, beside, above, base::kWhite};
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

CutShape ShapeBeforeCut(const Program& program, base::Size picture) {
  const CutSettings options = ReadCutSettings(program);
  CutShape shape{picture, 0};
  if (options.frameOnly) return shape;
  if (options.zoomBefore) shape.size = ZoomedSize(options.zoom, picture, ZoomTime::BeforeCut).value_or(picture);
  shape.angle = TurnAngle(options, shape.size);
  return shape;
}

PreviewBoard BoardAroundCut(Program& program, const Preview& preview) {
  const CutSettings options = ReadCutSettings(program);
  const PreviewFrame& frame = preview.PictureFrame();
  if (!options.addBoard || !(frame.width > 0 && frame.height > 0)) return {};
  if (options.frameOnly && options.padToSize) return PaddingAround(frame, options);
  const bool fixedCut = options.geometry.ChFixCut && !options.frameOnly;
  imaging::ImageFacts facts;
  // A picture that cannot be measured counts as one without a resolution.
  if (!fixedCut && !preview.Path().empty() && !program.flags.CurrentImagePath.empty())
    static_cast<void>(program.images.ImageInfo(program.flags.CurrentImagePath, facts, imaging::Want::SizeAndDpi));
  const BoardResolution resolution = ResolutionOfBoard(fixedCut, options.dpi, facts.dpi, program.flags.ScreenDpi);
  const Board board = BoardPixels(options.boardMm, resolution.dpi, resolution.k);
  double across = 1;
  double down = 1;
  if (options.zoomAfter) {
    const base::Size cut{base::R(frame.width), base::R(frame.height)};
    const base::Size zoomed = ZoomedSize(options.zoom, cut, ZoomTime::AfterCut).value_or(cut);
    if (!zoomed.Empty()) {
      across = frame.width / zoomed.width;
      down = frame.height / zoomed.height;
    }
  }
  return {board.left * across, board.top * down, board.right * across, board.bottom * down, options.boardColour};
}

}  // namespace quillon::job
