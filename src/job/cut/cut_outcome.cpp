// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/cut_outcome.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/rounding.h"
#include "imaging/limits.h"
#include "job/cut/cut_steps.h"
#include "job/settings/mode_rectangle.h"

namespace quillon::job {
namespace {

// Clamped to the range of int; a canvas of that size is always refused.
int Sum(double image, int before, int after) { return base::R(image + before + after); }

void PlaceFit(imaging::BorderRequest& request, base::Size inner, int left, int top) {
  const Fit fit = FitToSize(request.image, inner.width, inner.height);
  request.offsetX = Sum(left, fit.offsetX, 0);
  request.offsetY = Sum(top, fit.offsetY, 0);
  request.drawn = {fit.FitW, fit.FitH};
}

void PlaceWhole(imaging::BorderRequest& request, const Board& board) {
  const base::Size image = request.image;
  request.total = {Sum(image.width, board.left, board.right), Sum(image.height, board.top, board.bottom)};
  request.offsetX = board.left;
  request.offsetY = board.top;
  request.drawn = image;
}

CutOutcome None(CutOutcome outcome, std::string why) {
  outcome.size = {};
  outcome.pieces = 0;
  outcome.why = std::move(why);
  return outcome;
}

// Returns why the output type cannot hold a picture of that size, or "".
std::string FormatFailure(const std::string& type, base::Size size) {
  const bool jpeg = type == "jpg" || type == "pdf";  // a pdf is made of a jpg
  const int most = jpeg ? imaging::Limits().jpegSide : imaging::Limits().gifSide;
  if ((!jpeg && type != "gif") || std::max(size.width, size.height) <= most) return {};
  return "成品为 " + base::SizeText(size) + " 像素，" + type + " 的宽和高最多 " + std::to_string(most) +
         " 像素，请换一种输出类型";
}

// The size with its border, as AddBorder makes it.
base::Size BorderedSize(const CutSettings& settings, const SourceFacts& source, base::Size image, Turned turned) {
  const CutGeometry& geometry = settings.geometry;
  if (settings.frameOnly && settings.padToSize) return {geometry.FixW, geometry.FixH};
  const BoardResolution resolution = ResolutionOfBorder(settings, source.dpi, source.screenDpi);
  imaging::BorderRequest request;
  request.image = image;
  PlaceInBorder(settings, BoardPixels(settings.boardMm, resolution.dpi, resolution.k), turned, request);
  return request.total;
}

CutOutcome WholePicture(base::Size picture) {
  CutOutcome outcome;
  outcome.cutFrom = outcome.size = picture;
  outcome.cut = {0, 0, picture.width, picture.height};
  return outcome;
}

TurnedPicture TurnForCut(const CutSettings& settings, base::Size picture) {
  TurnedPicture turned{picture};
  const auto turn = [&turned](double angle) {
    if (angle != 0) turned = {base::TurnedSize(turned.size, angle), angle, Pass::AfterRotation};
  };
  turn(RuleAngle(settings, turned.size));
  turn(AngleOfCut(settings, -turned.angle, turned.size));
  return turned;
}

// Cuts the picture and stores the size of the cut. Returns whether it remains turned. The reason is set if there is no
// cut.
Turned Cut(const CutSettings& settings, const TurnedPicture& picture, CutOutcome& outcome) {
  outcome.cut = RectangleOfMode(settings.mode, settings.geometry, picture.size, picture.pass);
  outcome.why = NothingToCutText(outcome.cut, picture.size);
  if (settings.logoOnly && !outcome.why.empty()) outcome.why = kFrameTheLogoText;
  const bool frames = settings.mode == CutMode::Gif && !settings.logoOnly;
  if (frames && outcome.why.empty()) outcome.why = OutsideText(outcome.cut, picture.size);
  if (!outcome.why.empty() || settings.logoOnly) return Turned::No;
  base::Size size{outcome.cut.width, outcome.cut.height};
  const bool restored = picture.angle != 0 && settings.restore;
  if (restored) size = base::TurnedSize(size, -picture.angle);
  const auto zoomed = SizeAfterCut(settings, size);
  outcome.size = zoomed.value_or(size);
  if (zoomed) outcome.why = FitsZoomed(*zoomed).Why();
  return picture.angle != 0 && !restored ? Turned::Yes : Turned::No;
}

}  // namespace

std::optional<base::Size> SizeBeforeCut(const CutSettings& settings, base::Size picture) {
  if (!settings.zoomBefore) return std::nullopt;
  return ZoomedSize(settings.zoom, picture, ZoomTime::BeforeCut);
}

double AngleOfCut(const CutSettings& settings, double restoreAngle, base::Size picture) {
  return settings.rotateCut && restoreAngle == 0 ? TurnAngle(settings, picture) : 0;
}

std::optional<base::Size> SizeAfterCut(const CutSettings& settings, base::Size cut) {
  const CutGeometry& geometry = settings.geometry;
  if (geometry.ScalesToExact()) {
    const base::Size exact{geometry.FixW, geometry.FixH};
    return cut == exact ? std::nullopt : std::optional(exact);
  }
  if (!settings.zoomAfter) return std::nullopt;
  return ZoomedSize(settings.zoom, cut, ZoomTime::AfterCut);
}

int PartBegin(int side, int index, int count) { return static_cast<int>(std::int64_t{side} * index / count); }

BoardResolution ResolutionOfBorder(const CutSettings& settings, int sourceDpi, int screenDpi) {
  return ResolutionOfBoard(settings.geometry.ChFixCut && !settings.frameOnly, settings.dpi, sourceDpi, screenDpi);
}

void PlaceInBorder(const CutSettings& settings, const Board& board, Turned turned, imaging::BorderRequest& request) {
  const CutGeometry& geometry = settings.geometry;
  if (settings.frameOnly || !geometry.ChFixCut) {
    PlaceWhole(request, board);
    return;
  }
  if (turned == Turned::Yes && !geometry.Exact() && (settings.preset == kPresetC || settings.preset == kPresetD)) {
    const Extend extend = settings.extendRight ? Extend::Right : Extend::Bottom;
    request.total = ExtendedSize(extend, geometry.FixW, geometry.FixH, board);
    const bool right = extend == Extend::Right;
    PlaceFit(request, {geometry.FixH, geometry.FixW}, right ? board.left : board.top, right ? board.top : board.left);
    return;
  }
  request.total = {Sum(geometry.FixW, board.left, board.right), Sum(geometry.FixH, board.top, board.bottom)};
  PlaceFit(request, {geometry.FixW, geometry.FixH}, board.left, board.top);
}

std::string NothingToCutText(const base::Rect& cut, base::Size picture) {
  const std::string why = NothingInText("裁剪框", cut, picture);
  return why.empty() ? why : why + "，请检查裁剪参数";
}

std::string OutsideText(const base::Rect& cut, base::Size picture) {
  const bool inside =
      cut.left >= 0 && cut.top >= 0 && cut.width <= picture.width - cut.left && cut.height <= picture.height - cut.top;
  if (inside) return {};
  return "裁剪框超出图片（左 " + std::to_string(cut.left) + "，上 " + std::to_string(cut.top) + "，大小 " +
         base::SizeText({cut.width, cut.height}) + "，图片 " + base::SizeText(picture) + "），请检查裁剪参数";
}

std::string SplitFailure(const CutSettings& settings, base::Size cut) {
  if (settings.columns <= cut.width && settings.rows <= cut.height) return {};
  return "裁剪后的图片为 " + base::SizeText(cut) + " 像素，分不成 " + std::to_string(settings.columns) + " 列 " +
         std::to_string(settings.rows) + " 行";
}

CutOutcome OutcomeOf(const CutSettings& settings, const SourceFacts& source) {
  if (source.size.Empty()) return None(WholePicture(source.size), "图片的宽或高为 0");
  if (TooSmall(source.size, settings.smallest)) return None(WholePicture(source.size), TooSmallText(settings.smallest));
  if (ReplacesPages(settings) && source.pages.Several()) {
    return None(WholePicture(source.size), source.pages.Refusal());
  }
  if (settings.frameOnly) return OutcomeOfTurned(settings, source, {source.size});
  const auto zoomed = SizeBeforeCut(settings, source.size);
  if (zoomed) {
    if (const host::Status fits = FitsZoomed(*zoomed); !fits) return None(WholePicture(source.size), fits.Why());
  }
  return OutcomeOfTurned(settings, source, TurnForCut(settings, zoomed.value_or(source.size)));
}

CutOutcome OutcomeOfTurned(const CutSettings& settings, const SourceFacts& source, const TurnedPicture& picture) {
  CutOutcome outcome = WholePicture(picture.size);
  outcome.dpi = settings.dpi > 0 ? settings.dpi : source.dpi;
  if (settings.frameOnly && !settings.addBoard) return None(outcome, kNoBorderText);
  const Turned turned = settings.frameOnly ? Turned::No : Cut(settings, picture, outcome);
  if (!outcome.why.empty()) return None(outcome, outcome.why);
  if (settings.split) {
    if (std::string why = SplitFailure(settings, outcome.size); !why.empty()) return None(outcome, std::move(why));
    outcome.pieces = PieceCount(settings);
    outcome.size = {PartBegin(outcome.size.width, 1, settings.columns),
                    PartBegin(outcome.size.height, 1, settings.rows)};
  }
  if (settings.addBoard) outcome.size = BorderedSize(settings, source, outcome.size, turned);
  if (outcome.size.Empty()) return None(outcome, "成品的宽或高小于 1 像素，请检查固定尺寸和边框");
  // An overwritten source keeps its own type.
  if (settings.over) return outcome;
  if (std::string why = FormatFailure(settings.outType, outcome.size); !why.empty())
    return None(outcome, std::move(why));
  return outcome;
}

}  // namespace quillon::job
