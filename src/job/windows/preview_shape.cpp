// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/preview_shape.h"

#include "base/rounding.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"
#include "job/settings/geometry.h"

namespace quillon::job {
namespace {

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
