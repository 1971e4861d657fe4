// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/frame/frame_math.h"

#include <algorithm>
#include <cmath>

#include "base/rounding.h"

namespace quillon::regions {
namespace {

// Rounds down. A millionth is added before, because 29 of 100 must not become 28 by an error of floating-point
// arithmetic.
double Int(double value) { return std::floor(value + 1e-6); }

// Moves the frame into the picture without changing its size. A frame that is too large ends at the left and upper
// edge.
void PullInside(job::PreviewFrame& frame, double W, double H) {
  frame.left = std::max(0.0, std::min(frame.left, W - frame.width));
  frame.top = std::max(0.0, std::min(frame.top, H - frame.height));
}

}  // namespace

job::PreviewFrame Stretched(Point anchor, Point pointer) {
  return {std::min(anchor.x, pointer.x), std::min(anchor.y, pointer.y), std::abs(pointer.x - anchor.x),
          std::abs(pointer.y - anchor.y)};
}

job::PreviewFrame Resized(const job::PreviewFrame& frame, Grip grip, Point by, std::optional<double> ratio) {
  Point first{frame.left, frame.top};
  Point second{frame.left + frame.width, frame.top + frame.height};
  (grip.across < 0 ? first.x : second.x) += grip.across != 0 ? by.x : 0;
  (grip.down < 0 ? first.y : second.y) += grip.down != 0 ? by.y : 0;
  job::PreviewFrame resized = Stretched(first, second);
  if (!ratio) return resized;
  if (grip.across != 0) {
    resized.height = resized.width / *ratio;
  } else {
    resized.width = resized.height * *ratio;
  }
  // The side opposite to the grip stays where it is.
  if (grip.across < 0) resized.left = frame.left + frame.width - resized.width;
  if (grip.down < 0) resized.top = frame.top + frame.height - resized.height;
  return resized;
}

job::PreviewFrame Constrained(const job::PreviewFrame& frame, base::Size picture, const FrameRule& rule) {
  const double W = picture.width;
  const double H = picture.height;
  job::PreviewFrame kept = frame;
  if (!rule.fixed) {
    kept.width = std::clamp(kept.width, 0.0, W);
    kept.height = std::clamp(kept.height, 0.0, H);
  }
  PullInside(kept, W, H);
  if (rule.fixed || !rule.ratio) return kept;
  const double height = kept.width / *rule.ratio;
  if (kept.top + height <= H) {
    kept.height = height;
    return kept;
  }
  kept.width = kept.height * *rule.ratio;
  if (kept.width > W) {
    kept.width = W;
    kept.height = W / *rule.ratio;
  }
  PullInside(kept, W, H);
  return kept;
}

std::array<double, 4> WrittenBack(const job::PreviewFrame& frame, base::Size picture, const WriteBackRule& rule) {
  const double W = picture.width;
  const double H = picture.height;
  if (rule.unit == Unit::Percent) {
    return {Int(frame.left / W * 100), Int(frame.top / H * 100), 100.0 - base::R((frame.left + frame.width) / W * 100),
            100.0 - base::R((frame.top + frame.height) / H * 100)};
  }
  const double left = Int(frame.left / W * W);
  const double top = Int(frame.top / H * H);
  if (rule.fixed) return {left, top, W - rule.FixW * rule.PreviewScale - left, H - rule.FixH * rule.PreviewScale - top};
  return {left, top, (W - frame.left - frame.width) / W * W, (H - frame.top - frame.height) / H * H};
}

double FittedScale(base::Size picture, base::Size screen) {
  if (picture.Empty()) return 1;
  double scale = 1;
  const auto limit = [&](int side, double most) { scale = std::min(scale, most / side); };
  if (!screen.Empty()) {
    limit(picture.width, 0.9 * screen.width);
    limit(picture.height, 0.85 * screen.height);
  }
  limit(picture.width, 1024);
  limit(picture.height, 768);
  return scale;
}

base::Size PaddedToRatio(base::Size picture, double ratio) {
  if (picture.width > picture.height * ratio) return {picture.width, base::R(picture.width / ratio)};
  return {base::R(picture.height * ratio), picture.height};
}

}  // namespace quillon::regions
