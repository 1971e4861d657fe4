// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/mode_rectangle.h"

#include "base/number_text.h"
#include "base/rounding.h"

namespace quillon::job {
namespace {

using base::R;

// What goes from the right and the bottom, in the unit of the margins.
struct Remainders {
  double right = 0;
  double bottom = 0;
};

base::Rect ByPixels(const CutGeometry& p, const Remainders& less, base::Size picture) {
  base::Rect cut;
  cut.left = R(p.ML);
  cut.top = R(p.MT);
  cut.width = R(static_cast<double>(picture.width) - cut.left - less.right);
  cut.height = R(static_cast<double>(picture.height) - cut.top - less.bottom);
  return cut;
}

base::Rect ByPercent(const CutGeometry& p, const Remainders& less, base::Size picture) {
  const double W = picture.width;
  const double H = picture.height;
  base::Rect cut;
  cut.left = R((p.ML / 100) * W);
  cut.top = R((p.MT / 100) * H);
  cut.width = R((W - cut.left) - (less.right / 100) * W);
  cut.height = R((H - cut.top) - (less.bottom / 100) * H);
  return cut;
}

base::Rect OfFrames(const CutGeometry& p, base::Size picture) {
  const Remainders fixed{static_cast<double>(p.FixW), static_cast<double>(p.FixH)};
  const Remainders less = p.ChFixCut ? fixed : Remainders{p.MR, p.MB};
  return p.ChCutA ? ByPixels(p, less, picture) : ByPercent(p, less, picture);
}

// The number at the start of both texts, one after the other.
double Joined(double first, double second) {
  return base::LeadingNumber(base::NumberText(first) + base::NumberText(second));
}

base::Rect OfTiffPage(const CutGeometry& p, base::Size picture) {
  const double W = picture.width;
  const double H = picture.height;
  base::Rect cut{R((p.ML / 100) * W), R((p.MT / 100) * H), p.FixW, p.FixH};
  if (p.ChFixCut) return cut;
  if (p.ChCutA) {
    return {R(p.ML), R(p.MT), R(W - Joined(p.ML, p.MR)), R(H - Joined(p.MT, p.MB))};
  }
  cut.width = R(W * (100 - p.ML - p.MR) / 100);
  cut.height = R(H * (100 - p.MT - p.MB) / 100);
  return cut;
}

int EvenSide(int begin, int length, int side) {
  const bool raised = length % 2 != 0 && begin + length < side;
  return raised ? length + 1 : length;
}

base::Rect WithEvenSides(base::Rect rect, base::Size picture) {
  rect.width = EvenSide(rect.left, rect.width, picture.width);
  rect.height = EvenSide(rect.top, rect.height, picture.height);
  return rect;
}

CutGeometry WithoutExact(CutGeometry geometry) {
  geometry.ChExact = false;
  return geometry;
}

// The modes for frames and pages, which have rules of their own.
bool HasOwnRule(CutMode mode) {
  return mode == CutMode::Gif || mode == CutMode::Png || mode == CutMode::Pdf || mode == CutMode::Tiff;
}

}  // namespace

base::Rect RectangleOfMode(CutMode mode, const CutGeometry& geometry, base::Size picture, Pass pass) {
  if (!HasOwnRule(mode)) return PlacedRectangle(geometry, picture, pass);
  if (geometry.SkipCutThisImage) return {0, 0, picture.width, picture.height};
  if (mode == CutMode::Pdf) return ByPercent(geometry, {geometry.MR, geometry.MB}, picture);
  const base::Rect cut = geometry.ChAsFramed     ? PlacedRectangle(WithoutExact(geometry), picture, pass)
                         : mode == CutMode::Tiff ? OfTiffPage(geometry, picture)
                                                 : OfFrames(geometry, picture);
  return mode == CutMode::Gif ? WithEvenSides(cut, picture) : cut;
}

CountingValues ValuesOfMode(CutMode mode, const CutGeometry& geometry) {
  if (!HasOwnRule(mode)) return ValuesThatCount(geometry);
  if (mode != CutMode::Pdf && geometry.ChAsFramed) return ValuesThatCount(WithoutExact(geometry));
  CountingValues counting;
  counting.fixedSize = mode != CutMode::Pdf && geometry.ChFixCut;
  counting.margins = {true, true, !counting.fixedSize, !counting.fixedSize};
  return counting;
}

}  // namespace quillon::job
