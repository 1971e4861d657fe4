// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>

#include "job/windows/preview.h"
#include "regions/region.h"

// The arithmetic of the cut frame. Frames and points are in pixels of the picture, at any zoom, and are not rounded
// unless a function says so.
namespace quillon::regions {

// The part of a frame that the pointer holds. Grip() holds the frame as a whole.
struct Grip {
  int across = 0;  // -1: the left side, 1: the right side, 0: neither
  int down = 0;    // -1: the upper side, 1: the lower side, 0: neither
  bool operator==(const Grip&) const = default;
};

struct Point {
  double x = 0;
  double y = 0;
};

// Returns the frame between two opposite corners, given in any order.
job::PreviewFrame Stretched(Point anchor, Point pointer);

// Returns the frame with the sides that grip holds moved by `by`. A side that is moved past the opposite one becomes
// the opposite one. With a ratio (width over height) the other dimension follows, and the opposite corner or side
// stays.
job::PreviewFrame Resized(const job::PreviewFrame& frame, Grip grip, Point by, std::optional<double> ratio);

// What limits the size of a frame.
struct FrameRule {
  bool fixed = false;           // the size never changes
  std::optional<double> ratio;  // width over height; only counts if not fixed
};

// Returns the frame moved into the picture.
// - A fixed frame keeps its size. If it is larger than the picture, it starts at the left and upper edge.
// - A free frame is first limited to the size of the picture.
// - With a ratio the height follows from the width; if the frame would then leave the picture, the width follows from
//   the height.
job::PreviewFrame Constrained(const job::PreviewFrame& frame, base::Size picture, const FrameRule& rule);

// The parameters of WrittenBack().
struct WriteBackRule {
  Unit unit = Unit::Percent;
  bool fixed = false;  // ChFixCut; only counts in pixels
  int FixW = 0;        // the fixed size in pixels
  int FixH = 0;
  double PreviewScale = 1;  // of the screen; scales the fixed size
};

// Returns the margins of the frame as TCutValue holds them: left, top, right, bottom. The picture must not be empty.
// - Percent: whole numbers. Left and top are rounded down; the right and lower edge are rounded, ties to even, and
//   subtracted from 100.
// - Pixels: left and top are rounded down, right and bottom are not rounded. With a fixed size they are what
//   FixW x PreviewScale and FixH x PreviewScale leave of the picture, and may be negative.
std::array<double, 4> WrittenBack(const job::PreviewFrame& frame, base::Size picture, const WriteBackRule& rule);

// Returns the scale at which a picture is first shown, at most 1: it fits into 90 % of the screen's width, 85 % of its
// height, and into 1024 x 768. An empty screen does not limit it. Returns 1 for an empty picture.
double FittedScale(base::Size picture, base::Size screen);

// Returns the size of the picture padded in one direction to the ratio (width over height). The new side is rounded,
// ties to even; no side becomes shorter, except by rounding.
base::Size PaddedToRatio(base::Size picture, double ratio);

}  // namespace quillon::regions
