// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>

#include "job/windows/preview.h"
#include "regions/lists/region.h"

// The arithmetic of the cut frame. Frames are in pixels of the picture, whatever scale it is shown at.
namespace quillon::regions {

// The part of a frame that the pointer holds: -1, 0 or 1 for its left, no or right side, and its upper, no or lower
// one. Neither holds the frame as a whole.
struct Grip {
  int across = 0;
  int down = 0;
  bool operator==(const Grip&) const = default;
};

struct Point {
  double x = 0;
  double y = 0;
};

// From one corner to the other, in whichever direction.
job::PreviewFrame Stretched(Point anchor, Point pointer);

// frame with the sides that grip holds moved by that much; a side drawn past the opposite one takes its place. With a
// ratio (width over height) the other side follows.
job::PreviewFrame Resized(const job::PreviewFrame& frame, Grip grip, Point by, std::optional<double> ratio);

// Whether a frame has a size that nothing changes, or a ratio that it keeps.
struct FrameRule {
  bool fixed = false;
  std::optional<double> ratio;
};

// frame pulled into the picture by moving it; with a ratio then with the height that it gives the width, or, where that
// would leave the picture, with the width that it gives the height. A free frame is at most as large as the picture,
// one of a fixed size that is larger begins at its left and upper end.
job::PreviewFrame Constrained(const job::PreviewFrame& frame, base::Size picture, const FrameRule& rule);

// What TCutValue takes from a frame in a picture that is not empty: left, top, right, bottom.
struct WriteBackRule {
  Unit unit = Unit::Percent;
  bool fixed = false;  // ChFixCut, for pixels
  int FixW = 0;
  int FixH = 0;
  double PreviewScale = 1;
};
std::array<double, 4> WrittenBack(const job::PreviewFrame& frame, base::Size picture, const WriteBackRule& rule);

// The scale at which a picture is first shown: within nine tenths of the screen's width and 85 hundredths of its
// height, then within 1024 x 768. An empty screen does not limit it. Never above 1.
double FittedScale(base::Size picture, base::Size screen);

// The size that a picture grows to, in one direction, to have that ratio of width to height.
base::Size GrownToRatio(base::Size picture, double ratio);

}  // namespace quillon::regions
