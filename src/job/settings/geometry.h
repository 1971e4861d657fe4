// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "base/rect.h"

// Where a picture is cut, and to what size it is turned, scaled and framed. Pure arithmetic: sizes and rectangles are
// whole pixels, margins are pixels or percent, R is rounding with ties to even. Nothing here is clamped to the picture:
// a width or height of 0 or less, or a rectangle that reaches outside, is a result, and the driver fails that file.
namespace quillon::job {

// The parameters of one cut as they stand in the windows, under the names of their controls.
struct CutParameters {
  // TCutValue: left, top, right, bottom.
  double ML = 0;
  double MT = 0;
  double MR = 0;
  double MB = 0;
  int FixW = 0;
  int FixH = 0;
  // TSmalS(2) and (3).
  double TSmalS2 = 0;
  double TSmalS3 = 0;
  bool ChCutA = false;
  bool ChFixCut = false;
  bool ChAutoZoom = false;
  bool ChFull = false;
  bool AdvancedOptionsLoaded = false;
  bool SkipCutThisImage = false;
};

// What negative margins reached outside the picture, as sums that are 0 or negative.
struct Overhang {
  double OverH = 0;
  double OverV = 0;
};

// With ChFixCut each negative margin moves into its sum and becomes 0; without it nothing happens. Done once a picture.
Overhang PopOverhang(CutParameters& parameters);

// Which of the two computations of a picture's rectangle.
enum class Pass { First, AfterRotation };

// The rectangle to cut out of a picture of that size, after PopOverhang. Each of left, top, width and height is
// rounded on its own, in that order.
base::Rect CutRectangle(const CutParameters& parameters, const Overhang& overhang, base::Size picture,
                        Pass pass = Pass::First);

// The shorter rule of the gif, transparent png and multi-page tiff cuts.
base::Rect FormatCutRectangle(const CutParameters& parameters, base::Size picture);

// Whether rule 1..5 turns a picture of that size by angle; false for any other rule and for angle 0.
bool NeedRotate(int width, int height, int rule, double angle);

// The angle by which entry 0..5 of CmbRotate turns a picture before the cut, degrees counter-clockwise; nothing where
// its condition does not hold. ownAngle is TAngle.
std::optional<double> PreRotation(int entry, base::Size picture, double ownAngle);

// A picture scaled to lie whole and centred in FixW x FixH. A picture without area gives zeros.
struct Fit {
  int FitW = 0;
  int FitH = 0;
  int offsetX = 0;
  int offsetY = 0;
  bool operator==(const Fit&) const = default;
};
Fit FitToSize(base::Size picture, int FixW, int FixH);

// Border widths in pixels.
struct Board {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  bool operator==(const Board&) const = default;
};

// How millimetres of a border become pixels.
struct BoardResolution {
  int dpi = 0;   // at which they are counted
  double k = 1;  // from there to the output's resolution
  bool operator==(const BoardResolution&) const = default;
};

// With a fixed cut the border has the output's resolution from the start; otherwise the source's, or the screen's where
// the source tells none. A resolution of 0 is not known.
BoardResolution ResolutionOfBoard(bool fixedCut, int outDpi, int sourceDpi, int screenDpi);

// Millimetres in the order of TBoard as pixels: CmToPixels at dpi, then R(value * k).
Board BoardPixels(const std::array<double, 4>& millimetres, int dpi, double k);

// Where the border of presets 3 and 4 goes when the picture was turned.
enum class Extend { Right, Bottom };

// The canvas of a turned picture of presets 3 and 4 with its border.
base::Size ExtendedSize(Extend extend, int FixW, int FixH, const Board& board);

// Before the cut both sides of a size in pixels are limited to 32..30000; after it the height has no upper limit.
enum class ZoomTime { BeforeCut, AfterCut };

// Whether a text is one for CmbZoom: a number, alone or before a "%", or two numbers with a comma between them.
// Full-width characters count as their plain twins.
bool IsZoomText(std::string_view text);

// The size that the text of CmbZoom asks for: "w,h", or a percentage (with "%" or without a comma), which counts as
// 100 below 10 and above 500. Nothing where the picture stays as it is.
std::optional<base::Size> ZoomedSize(std::string_view text, base::Size picture, ZoomTime time);

}  // namespace quillon::job
