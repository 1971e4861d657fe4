// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The arithmetic of the cut frame.
#include "regions/frame/frame_math.h"

#include <gtest/gtest.h>

#include <vector>

namespace quillon::job {

void PrintTo(const PreviewFrame& frame, std::ostream* out) {
  *out << frame.left << "," << frame.top << " " << frame.width << "x" << frame.height;
}

}  // namespace quillon::job

namespace quillon::regions {
namespace {

using job::PreviewFrame;
using Values = std::array<double, 4>;

TEST(FrameMath, AFrameIsStretchedInAllFourDirections) {
  const PreviewFrame expected{10, 20, 30, 40};
  EXPECT_EQ(Stretched({10, 20}, {40, 60}), expected);
  EXPECT_EQ(Stretched({40, 60}, {10, 20}), expected);
  EXPECT_EQ(Stretched({40, 20}, {10, 60}), expected);
  EXPECT_EQ(Stretched({10, 60}, {40, 20}), expected);
  EXPECT_EQ(Stretched({5, 5}, {5, 5}), (PreviewFrame{5, 5, 0, 0}));
}

TEST(FrameMath, GripsMoveTheirSides) {
  const PreviewFrame frame{10, 20, 100, 50};
  EXPECT_EQ(Resized(frame, {1, 0}, {5, 99}, {}), (PreviewFrame{10, 20, 105, 50}));
  EXPECT_EQ(Resized(frame, {-1, 0}, {5, 99}, {}), (PreviewFrame{15, 20, 95, 50}));
  EXPECT_EQ(Resized(frame, {0, -1}, {99, 5}, {}), (PreviewFrame{10, 25, 100, 45}));
  EXPECT_EQ(Resized(frame, {1, 1}, {5, 6}, {}), (PreviewFrame{10, 20, 105, 56}));
  // The side is moved past the opposite one.
  EXPECT_EQ(Resized(frame, {1, 0}, {-130, 0}, {}), (PreviewFrame{-20, 20, 30, 50}));
  // With a ratio the other side follows, and the opposite corner stays.
  EXPECT_EQ(Resized(frame, {1, 1}, {20, 0}, 2.0), (PreviewFrame{10, 20, 120, 60}));
  EXPECT_EQ(Resized(frame, {-1, -1}, {-20, 0}, 2.0), (PreviewFrame{-10, 10, 120, 60}));
  EXPECT_EQ(Resized(frame, {0, 1}, {0, 10}, 2.0), (PreviewFrame{10, 20, 120, 60}));
}

TEST(FrameMath, AFrameIsPulledIntoThePicture) {
  const base::Size picture{400, 300};
  EXPECT_EQ(Constrained({-20, -10, 100, 50}, picture, {}), (PreviewFrame{0, 0, 100, 50}));
  EXPECT_EQ(Constrained({350, 280, 100, 50}, picture, {}), (PreviewFrame{300, 250, 100, 50}));
  EXPECT_EQ(Constrained({-20, 5, 999, 999}, picture, {}), (PreviewFrame{0, 0, 400, 300}));
  EXPECT_EQ(Constrained({50, 60, 100, 50}, picture, {}), (PreviewFrame{50, 60, 100, 50}));
  // A fixed size never changes, even if it is too large.
  EXPECT_EQ(Constrained({-20, 290, 500, 50}, picture, {.fixed = true}), (PreviewFrame{0, 250, 500, 50}));
  EXPECT_EQ(Constrained({0, 0, 1, 1}, {1, 1}, {}), (PreviewFrame{0, 0, 1, 1}));
}

TEST(FrameMath, ARatioSetsTheHeightOrElseTheWidth) {
  const base::Size picture{400, 300};
  EXPECT_EQ(Constrained({10, 10, 200, 20}, picture, {.ratio = 2.0}), (PreviewFrame{10, 10, 200, 100}));
  // 200 / 2 = 100 would end at 350: the width comes from the height.
  EXPECT_EQ(Constrained({10, 250, 200, 40}, picture, {.ratio = 2.0}), (PreviewFrame{10, 250, 80, 40}));
  EXPECT_EQ(Constrained({0, 0, 400, 300}, picture, {.ratio = 1.0}), (PreviewFrame{0, 0, 300, 300}));
}

struct BackCase {
  PreviewFrame frame;
  base::Size picture;
  WriteBackRule rule;
  Values values;
};

TEST(FrameMath, PercentIsWrittenBack) {
  const WriteBackRule percent{.unit = Unit::Percent};
  const std::vector<BackCase> cases = {
      {{0, 0, 400, 300}, {400, 300}, percent, {0, 0, 0, 0}},
      {{0, 0, 1, 1}, {1, 1}, percent, {0, 0, 0, 0}},
      {{0, 0, 65500, 1}, {65500, 1}, percent, {0, 0, 0, 0}},
      {{40, 30, 200, 150}, {400, 300}, percent, {10, 10, 40, 40}},
      // 45 / 400 = 11.25 -> 11; 245 / 400 = 61.25 -> 61; 31 / 300 = 10.33 -> 10; 181 / 300 = 60.33 -> 60.
      {{45, 31, 200, 150}, {400, 300}, percent, {11, 10, 39, 40}},
      // Ties to even: 2.5 / 100 of the right end: 97.5 -> 98, 98.5 -> 98.
      {{0, 0, 97.5, 98.5}, {100, 100}, percent, {0, 0, 2, 2}},
      // 29 of 100 stays 29 in spite of floating-point errors.
      {{0.29 * 300, 0, 100, 100}, {300, 300}, percent, {29, 0, 38, 67}},
  };
  for (const BackCase& one : cases) EXPECT_EQ(WrittenBack(one.frame, one.picture, one.rule), one.values);
}

TEST(FrameMath, PixelsAreWrittenBack) {
  const WriteBackRule free{.unit = Unit::Pixels};
  EXPECT_EQ(WrittenBack({40, 30, 200, 150}, {400, 300}, free), (Values{40, 30, 160, 120}));
  EXPECT_EQ(WrittenBack({40.7, 30.2, 200, 150}, {400, 300}, free)[0], 40);
  EXPECT_DOUBLE_EQ(WrittenBack({40.5, 30, 200, 150}, {400, 300}, free)[2], 159.5);
  EXPECT_EQ(WrittenBack({0, 0, 400, 300}, {400, 300}, free), (Values{0, 0, 0, 0}));
}

TEST(FrameMath, AFixedSizeIsWrittenBackAtTheScaleOfTheScreen) {
  WriteBackRule fixed{.unit = Unit::Pixels, .fixed = true, .FixW = 100, .FixH = 80, .PreviewScale = 0.5};
  EXPECT_EQ(WrittenBack({40, 30, 100, 80}, {400, 300}, fixed), (Values{40, 30, 400 - 50 - 40, 300 - 40 - 30}));
  fixed.PreviewScale = 1;
  EXPECT_EQ(WrittenBack({40, 30, 100, 80}, {400, 300}, fixed), (Values{40, 30, 260, 190}));
}

TEST(FrameMath, APictureIsFittedToTheScreen) {
  const base::Size screen{1920, 1080};
  EXPECT_DOUBLE_EQ(FittedScale({640, 480}, screen), 1);
  EXPECT_DOUBLE_EQ(FittedScale({2048, 100}, screen), 0.5);  // 1024 wide
  EXPECT_DOUBLE_EQ(FittedScale({100, 1536}, screen), 0.5);  // 768 high
  EXPECT_DOUBLE_EQ(FittedScale({1000, 100}, {1000, 1000}), 0.9);
  EXPECT_DOUBLE_EQ(FittedScale({100, 600}, {1000, 600}), 0.85);
  EXPECT_DOUBLE_EQ(FittedScale({2048, 1536}, {}), 0.5);
  EXPECT_DOUBLE_EQ(FittedScale({}, screen), 1);
}

TEST(FrameMath, APictureGrowsInOneDirectionToARatio) {
  EXPECT_EQ(PaddedToRatio({400, 100}, 2), (base::Size{400, 200}));
  EXPECT_EQ(PaddedToRatio({100, 400}, 2), (base::Size{800, 400}));
  EXPECT_EQ(PaddedToRatio({400, 200}, 2), (base::Size{400, 200}));
  EXPECT_EQ(PaddedToRatio({100, 100}, 3.0 / 2), (base::Size{150, 100}));
}

}  // namespace
}  // namespace quillon::regions
