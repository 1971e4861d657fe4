// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/rect.h"

// Computes where a picture is cut, and to what size it is turned, scaled and framed. Pure arithmetic: sizes and
// rectangles are whole pixels, margins are pixels or percent, R is rounding with ties to even. Nothing here is clamped
// to the picture: a width or height of 0 or less, or a rectangle that reaches outside, is a result. The driver draws
// what is outside in white, and fails a file of which no pixel would be cut.
namespace quillon::job {

// Returns a length in centimetres as whole pixels at dpi dots per inch. The length in inches, cm times 0.3937, is
// rounded to single precision before it is multiplied; the product is rounded with R.
int CmToPixels(float cm, int dpi);

// The frame over the preview. It may reach outside the picture, and its sides may be negative.
struct PreviewFrame {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
  bool operator==(const PreviewFrame&) const = default;
};

// Entries of CmbAnchor: 0..8 are nine points, row by row from the upper left; the last is the place that the left and
// top margin name.
inline constexpr int kAnchorCentre = 4;
inline constexpr int kAnchorByMargins = 9;

// What decides the rectangle of a cut; part of CutSettings. The fields have the names of the controls and flags.
struct CutGeometry {
  // TCutValue: left, top, right, bottom; in pixels with ChCutA, else in percent of the side.
  double ML = 0;
  double MT = 0;
  double MR = 0;
  double MB = 0;
  int FixW = 0;  // pixels
  int FixH = 0;  // pixels
  // TSmalS(2) and (3): height and width in pixels.
  double TSmalS2 = 0;
  double TSmalS3 = 0;
  bool ChCutA = false;
  bool ChFixCut = false;
  bool ChAutoZoom = false;
  bool ChFull = false;
  bool AdvancedOptionsLoaded = false;
  bool SkipCutThisImage = false;
  bool ChAsFramed = false;
  bool ChAutoCenter = false;  // only counts with ChAsFramed
  bool ChExact = false;
  bool ChExactPad = false;
  int CmbAnchor = kAnchorCentre;

  // Returns whether the result has exactly the size FixW x FixH.
  bool Exact() const { return ChExact && ChFixCut && FixW > 0 && FixH > 0; }
  // Returns whether the whole picture is fitted and padded to that size,
  bool PadsToExact() const { return Exact() && ChExactPad; }
  // or a part of it is cut and scaled.
  bool ScalesToExact() const { return Exact() && !ChExactPad && !SkipCutThisImage; }
};

// Which values decide the rectangle of a cut. The others can be changed without any effect on it.
struct CountingValues {
  std::array<bool, 4> margins = {};  // in the order of TCutValue
  bool fixedSize = false;            // FixW and FixH
  bool keptSize = false;             // TSmalS2 and TSmalS3
  bool centred = false;              // ChAutoCenter
};
CountingValues ValuesThatCount(const CutGeometry& geometry);

// How far negative margins reach outside the picture: sums that are 0 or negative.
struct Overhang {
  double OverH = 0;
  double OverV = 0;
};

// With ChFixCut adds each negative margin to its sum and sets it to 0; without it changes nothing. Call once for each
// picture.
Overhang PopOverhang(CutGeometry& geometry);

// A picture's rectangle is computed once or twice: again if it was turned in between.
enum class Pass { First, AfterRotation };

// Returns the frame that the preview shows for the margins and the fixed size, centred with ChAutoCenter. With Exact()
// it is ExactRectangle.
PreviewFrame FrameOf(const CutGeometry& geometry, base::Size picture);

// Returns the largest rectangle with the ratio FixW : FixH inside the picture, at CmbAnchor. Sides are rounded and at
// least 1. The margins of kAnchorByMargins are limited so that it stays inside. Returns the whole picture if that is
// padded instead. Requires Exact().
base::Rect ExactRectangle(const CutGeometry& geometry, base::Size picture);

// Returns the rectangle to cut out of a picture of that size, after PopOverhang. Each of left, top, width and height is
// rounded on its own, in that order. With Exact() it is ExactRectangle; otherwise with ChAsFramed it is FrameOf.
base::Rect CutRectangle(const CutGeometry& geometry, const Overhang& overhang, base::Size picture,
                        Pass pass = Pass::First);

// Returns the rectangle of a picture from geometry as the controls hold it: PopOverhang, then CutRectangle.
base::Rect PlacedRectangle(CutGeometry geometry, base::Size picture, Pass pass = Pass::First);

// Returns whether a picture of that size has a pixel in common with the rectangle. Both must have an area.
bool Overlap(const base::Rect& cut, base::Size picture);
// Returns why such a rectangle, which `what` names, gives no file: it has no area, or it is wholly outside. Returns ""
// if it holds a pixel of the picture. Nothing is known to be outside a picture without area.
std::string NothingInText(const std::string& what, const base::Rect& cut, base::Size picture);

// Returns whether rule 1..5 turns a picture of that size by angle; false for any other rule and for angle 0.
bool NeedRotate(int width, int height, int rule, double angle);

// Returns the angle by which entry 0..5 of CmbRotate turns a picture before the cut, in degrees counter-clockwise;
// nothing if the entry does not turn a picture of that size. ownAngle is TAngle.
std::optional<double> PreRotation(int entry, base::Size picture, double ownAngle);

// How a picture is scaled to lie whole and centred in FixW x FixH.
struct Fit {
  int FitW = 0;
  int FitH = 0;
  int offsetX = 0;
  int offsetY = 0;
  bool operator==(const Fit&) const = default;
};
// Returns zeros for a picture without area.
Fit FitToSize(base::Size picture, int FixW, int FixH);

// The widths of a border in pixels.
struct Board {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  bool operator==(const Board&) const = default;
};

// How millimetres of a border become pixels.
struct BoardResolution {
  int dpi = 0;   // dots per inch, at which the millimetres are converted
  double k = 1;  // scales these pixels to the resolution of the output
  bool operator==(const BoardResolution&) const = default;
};

// With a fixed cut the border has the output's resolution from the start; otherwise the source's, or the screen's if
// the source states none. A resolution of 0 is not known.
BoardResolution ResolutionOfBoard(bool fixedCut, int outDpi, int sourceDpi, int screenDpi);

// Returns millimetres in the order of TBoard as pixels: CmToPixels at dpi, then R(value * k).
Board BoardPixels(const std::array<double, 4>& millimetres, int dpi, double k);

// The side that the wide border of presets 3 and 4 goes to if the picture was turned.
enum class Extend { Right, Bottom };

// Returns the canvas of a turned picture of presets 3 and 4 with its border.
base::Size ExtendedSize(Extend extend, int FixW, int FixH, const Board& board);

// Before the cut, a size in pixels is limited to 32..30000 on both sides; after it, the height has no upper limit.
enum class ZoomTime { BeforeCut, AfterCut };

// Returns whether CmbZoom accepts a text: a number, alone or before a "%", or two numbers with a comma between them.
// Full-width characters count as the ASCII ones.
bool IsZoomText(std::string_view text);

// Returns the size that the text of CmbZoom asks for: "w,h", or a percentage (with "%" or without a comma), which
// counts as 100 below 10 and above 500. Returns nothing if the picture keeps its size.
std::optional<base::Size> ZoomedSize(std::string_view text, base::Size picture, ZoomTime time);

}  // namespace quillon::job
