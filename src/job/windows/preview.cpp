// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/preview.h"

#include <cmath>

#include "base/number_text.h"
#include "base/rect.h"
#include "base/rounding.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"
#include "job/settings/geometry.h"
#include "job/settings/mode_rectangle.h"

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

// Returns the picture on show as the cut gets it. In a manual run it may have been turned by the user, who is not
// followed by the rules, or by the options, whose turn the cut repeats.
TurnedPicture PictureOnShow(const Program& program, const CutSettings& settings) {
  const Preview& preview = program.fCutPre.preview;
  const Flags& flags = program.flags;
  const bool manual = flags.Busy && settings.manual;
  if (manual && flags.ManualRotated) return {preview.Picture(), flags.ManualAngle, Pass::First};
  constexpr double kRightAngle = 90;
  const bool byRule = settings.rotateRule > 0 && settings.rotateRule != kOwnAngle;
  double angle = preview.Angle();
  if (manual && flags.ImageRotated) angle = byRule ? kRightAngle : settings.angle;
  return {preview.Picture(), angle, angle != 0 ? Pass::AfterRotation : Pass::First};
}

// Names the values of the panel that move the frame and not the cut.
std::string UnusedValues(const CutGeometry& geometry, const CountingValues& counting) {
  std::string names;
  if (!counting.margins[2] && geometry.MR != 0) names += "“右 " + base::NumberText(geometry.MR) + "”";
  if (!counting.margins[3] && geometry.MB != 0) names += "“下 " + base::NumberText(geometry.MB) + "”";
  if (geometry.ChAutoCenter && !counting.centred) names += "“居中裁剪”";
  return names;
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
  result_.reset();
  Notify();
}

void Preview::SetBoard(const PreviewBoard& board) {
  if (board_ == board) return;
  board_ = board;
  Notify();
}

void Preview::SetResult(std::optional<PreviewResult> result) {
  if (result_ == result) return;
  result_ = std::move(result);
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

PreviewBoard BoardAroundCut(const Program& program, const Preview& preview) {
  const CutSettings options = ReadCutSettings(program);
  const PreviewFrame& frame = preview.Result() ? preview.Result()->cut : preview.PictureFrame();
  if (!options.addBoard || !(frame.width > 0 && frame.height > 0)) return {};
  if (options.frameOnly && options.padToSize) return PaddingAround(frame, options);
  const BoardResolution resolution = ResolutionOfBorder(options, preview.Dpi(), program.flags.ScreenDpi);
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

std::optional<PreviewResult> ResultOnShow(const Program& program, const CutGeometry& geometry) {
  const Preview& preview = program.fCutPre.preview;
  if (preview.Picture().Empty()) return std::nullopt;
  CutSettings settings = ReadCutSettings(program);
  settings.geometry = geometry;
  const SourceFacts source{preview.Original(), preview.Dpi(), program.flags.ScreenDpi};
  const CutOutcome outcome = OutcomeOfTurned(settings, source, PictureOnShow(program, settings));
  const PreviewFrame cut{static_cast<double>(outcome.cut.left), static_cast<double>(outcome.cut.top),
                         static_cast<double>(outcome.cut.width), static_cast<double>(outcome.cut.height)};
  return PreviewResult{cut, outcome, settings.frameOnly ? "" : NoticeOn(settings, preview.PictureFrame(), cut)};
}

std::string NoticeOn(const CutSettings& settings, const PreviewFrame& frame, const PreviewFrame& cut) {
  const CutGeometry& geometry = settings.geometry;
  const auto near = [](double a, double b) { return std::abs(a - b) <= 1; };
  const bool same = near(frame.left, cut.left) && near(frame.top, cut.top) && near(frame.width, cut.width) &&
                    near(frame.height, cut.height);
  if (same) return {};
  if (geometry.SkipCutThisImage) return "这一张不裁";
  const CountingValues counting = ValuesOfMode(settings.mode, geometry);
  std::string text = "四边按填的百分比裁";
  if (counting.keptSize) {
    text = "裁出的图片横 " + base::NumberText(geometry.TSmalS2) + "、竖 " + base::NumberText(geometry.TSmalS3) +
           " 像素，由高级选项的“保留裁剪”决定";
  } else if (counting.fixedSize) {
    text = "右边、下边按“宽 " + std::to_string(geometry.FixW) + "、高 " + std::to_string(geometry.FixH) + "”去掉";
  } else if (CutsOnly(settings.mode)) {
    return {};  // only sides that were made even
  } else if (geometry.ChCutA) {
    text = "“等比缩放”把四边的数值当作百分比";
    if (!settings.addBoard) text += "，“宽、高”不起作用";
  }
  const std::string unused = UnusedValues(geometry, counting);
  return unused.empty() ? text : text + "，" + unused + "不起作用";
}

}  // namespace quillon::job
