// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Random parameters against what the rules say, stated a second time and in another way.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "job/settings/geometry.h"

namespace quillon::job {
namespace {

constexpr int kRounds = 50000;

// The machine's own rounding is to nearest with ties to even.
double Round(double value) { return std::nearbyint(value); }

class Sampler {
 public:
  int Side() { return std::uniform_int_distribution(1, 40000)(engine_); }
  bool Flag() { return std::bernoulli_distribution(0.5)(engine_); }
  // Whole, halved or any margins, now and then negative.
  double Margin() {
    const double any = std::uniform_real_distribution(-20.0, 120.0)(engine_);
    switch (std::uniform_int_distribution(0, 2)(engine_)) {
      case 0:
        return std::floor(any);
      case 1:
        return std::floor(any) + 0.5;
      default:
        return any;
    }
  }
  CutGeometry Parameters() {
    return {.ML = Margin(),
            .MT = Margin(),
            .MR = Margin(),
            .MB = Margin(),
            .FixW = Side(),
            .FixH = Side(),
            .TSmalS2 = Side() + (Flag() ? 0.5 : 0.0),
            .TSmalS3 = Side() + (Flag() ? 0.5 : 0.0),
            .ChCutA = Flag(),
            .ChFixCut = Flag(),
            .ChAutoZoom = Flag(),
            .ChFull = Flag(),
            .AdvancedOptionsLoaded = Flag(),
            .SkipCutThisImage = std::bernoulli_distribution(0.05)(engine_)};
  }

 private:
  std::mt19937 engine_{20260101};
};

// One direction at a time: offset and length along a side of n pixels with a margin before and one after.
struct Span {
  double offset;
  double length;
};

Span PercentSpan(double n, double before, double after) {
  return {Round(before / 100 * n), Round((100 - before - after) / 100 * n)};
}

Span ProportionalSpan(double n, double before, double after) {
  const double offset = Round(before / 100 * n);
  return {offset, Round(n - offset - after / 100 * n)};
}

Span FullSpan(double n, double before) { return {Round(before * n / 100), Round((100 - before) * n / 100)}; }

Span RemainderSpan(double n, double before, double size) { return {Round(before), Round(n - Round(before) - size)}; }

struct Spans {
  Span across;
  Span down;
};

Spans Expected(const CutGeometry& p, const Overhang& over, base::Size picture, Pass pass) {
  const double W = picture.width;
  const double H = picture.height;
  const Spans whole{{0, W}, {0, H}};
  if (p.SkipCutThisImage) return whole;
  if (!p.ChCutA) return {PercentSpan(W, p.ML, p.MR), PercentSpan(H, p.MT, p.MB)};
  if (p.ChFixCut && p.ChAutoZoom) {
    if (p.ChFull && over.OverH != 0) return {FullSpan(W, p.ML), whole.down};
    if (p.ChFull && over.OverV != 0) return {whole.across, FullSpan(H, p.MT)};
    return {ProportionalSpan(W, p.ML, p.MR), ProportionalSpan(H, p.MT, p.MB)};
  }
  const bool optionsCount = pass == Pass::AfterRotation || p.AdvancedOptionsLoaded;
  if (!p.ChFixCut && optionsCount) {
    return {{Round(p.ML), Round(p.TSmalS2)}, {Round(p.MT), Round(p.TSmalS3)}};
  }
  return {RemainderSpan(W, p.ML, p.FixW), RemainderSpan(H, p.MT, p.FixH)};
}

TEST(CutRectangleProperty, IsTheArithmeticOfTheRules) {
  Sampler sampler;
  for (int i = 0; i < kRounds; ++i) {
    CutGeometry p = sampler.Parameters();
    const base::Size picture{sampler.Side(), sampler.Side()};
    const Overhang over = PopOverhang(p);
    for (const Pass pass : {Pass::First, Pass::AfterRotation}) {
      const base::Rect cut = CutRectangle(p, over, picture, pass);
      const Spans expected = Expected(p, over, picture, pass);
      ASSERT_EQ(cut.left, expected.across.offset) << "round " << i;
      ASSERT_EQ(cut.top, expected.down.offset) << "round " << i;
      ASSERT_EQ(cut.width, expected.across.length) << "round " << i;
      ASSERT_EQ(cut.height, expected.down.length) << "round " << i;
    }
  }
}

TEST(CutRectangleProperty, WhatIsOutsideTheCutAddsUpToThePicture) {
  Sampler sampler;
  for (int i = 0; i < kRounds; ++i) {
    CutGeometry p = sampler.Parameters();
    p.SkipCutThisImage = false;
    const base::Size picture{sampler.Side(), sampler.Side()};
    const Overhang over = PopOverhang(p);
    const base::Rect cut = CutRectangle(p, over, picture);
    if (!p.ChCutA) {
      // Offset and length are rounded apart, so that the far edge is off by a pixel at most.
      ASSERT_NEAR(cut.left + cut.width, picture.width * (100 - p.MR) / 100, 1.001) << "round " << i;
      ASSERT_NEAR(cut.top + cut.height, picture.height * (100 - p.MB) / 100, 1.001) << "round " << i;
    } else if (p.ChFixCut && !p.ChAutoZoom) {
      ASSERT_EQ(cut.left + cut.width + p.FixW, picture.width) << "round " << i;
      ASSERT_EQ(cut.top + cut.height + p.FixH, picture.height) << "round " << i;
    } else if (p.ChFixCut && !p.ChFull) {
      // The offset that was rounded is used on, so that the far edge is off by half a pixel.
      ASSERT_NEAR(cut.left + cut.width, picture.width * (100 - p.MR) / 100, 0.501) << "round " << i;
      ASSERT_NEAR(cut.top + cut.height, picture.height * (100 - p.MB) / 100, 0.501) << "round " << i;
    }
  }
}

TEST(OverhangProperty, NothingIsLostOrLeftNegative) {
  Sampler sampler;
  for (int i = 0; i < kRounds; ++i) {
    const CutGeometry before = sampler.Parameters();
    CutGeometry after = before;
    const Overhang over = PopOverhang(after);
    ASSERT_DOUBLE_EQ(after.ML + after.MR + over.OverH, before.ML + before.MR) << "round " << i;
    ASSERT_DOUBLE_EQ(after.MT + after.MB + over.OverV, before.MT + before.MB) << "round " << i;
    if (before.ChFixCut) {
      ASSERT_GE(std::min({after.ML, after.MT, after.MR, after.MB}), 0) << "round " << i;
    } else {
      ASSERT_EQ(over.OverH, 0) << "round " << i;
      ASSERT_EQ(over.OverV, 0) << "round " << i;
    }
  }
}

TEST(FitToSizeProperty, LiesInsideAndTouchesTwoSides) {
  Sampler sampler;
  for (int i = 0; i < kRounds; ++i) {
    const base::Size picture{sampler.Side(), sampler.Side()};
    const int width = sampler.Side();
    const int height = sampler.Side();
    const Fit fit = FitToSize(picture, width, height);
    // If the height decided, the width is rounded back from it and may pass the limit by that rounding.
    const double slack = 0.5 * picture.width / picture.height + 0.5;
    ASSERT_LE(fit.FitW, width + slack) << "round " << i;
    ASSERT_LE(fit.FitH, height) << "round " << i;
    ASSERT_TRUE(fit.FitW == width || fit.FitH == height) << "round " << i;
    ASSERT_LE(std::abs(2 * fit.offsetX + fit.FitW - width), 1) << "round " << i;
    ASSERT_LE(std::abs(2 * fit.offsetY + fit.FitH - height), 1) << "round " << i;
  }
}

}  // namespace
}  // namespace quillon::job
