// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillon::base {

void PrintTo(const Rect& rect, std::ostream* out) {
  *out << rect.left << "," << rect.top << " " << rect.width << "x" << rect.height;
}

void PrintTo(const Size& size, std::ostream* out) { *out << size.width << "x" << size.height; }

}  // namespace quillon::base

namespace quillon::job {
namespace {

using base::Rect;
using base::Size;

CutGeometry Percent(double left, double top, double right, double bottom) {
  return {.ML = left, .MT = top, .MR = right, .MB = bottom};
}

CutGeometry Pixels(double left, double top, int width, int height) {
  return {.ML = left, .MT = top, .FixW = width, .FixH = height, .ChCutA = true};
}

CutGeometry Proportional(double left, double top, double right, double bottom) {
  return {.ML = left, .MT = top, .MR = right, .MB = bottom, .ChCutA = true, .ChFixCut = true, .ChAutoZoom = true};
}

TEST(CmToPixels, MultipliesAndRounds) {
  EXPECT_EQ(CmToPixels(13.8F, 300), 1630);   // 1629.918
  EXPECT_EQ(CmToPixels(9.0F, 300), 1063);    // 1062.99
  EXPECT_EQ(CmToPixels(2.54F, 300), 300);    // 299.9994
  EXPECT_EQ(CmToPixels(32.0F, 300), 3780);   // 3779.52
  EXPECT_EQ(CmToPixels(46.4F, 300), 5480);   // 5480.304
  EXPECT_EQ(CmToPixels(2.5F, 96), 94);       // 94.488
  EXPECT_EQ(CmToPixels(8.56F, 254), 856);    // 855.996...
  EXPECT_EQ(CmToPixels(50.0F, 300), 5905);   // 19.6849995, the single; 19.685 would give 5906
  EXPECT_EQ(CmToPixels(75.0F, 600), 17717);  // 29.5275002, the single; 29.5275 would give 17716
  EXPECT_EQ(CmToPixels(0.0F, 300), 0);
  EXPECT_EQ(CmToPixels(-1.0F, 300), -118);
  EXPECT_EQ(CmToPixels(1.0F, 0), 0);
}

TEST(Overhang, WithoutAFixedCutNegativeMarginsStay) {
  CutGeometry parameters = Percent(-1, -2, -3, -4);
  const Overhang overhang = PopOverhang(parameters);
  EXPECT_EQ(overhang.OverH, 0);
  EXPECT_EQ(overhang.OverV, 0);
  EXPECT_EQ(parameters.ML, -1);
  EXPECT_EQ(parameters.MT, -2);
  EXPECT_EQ(parameters.MR, -3);
  EXPECT_EQ(parameters.MB, -4);
}

TEST(Overhang, AFixedCutMovesNegativeMarginsIntoTheSums) {
  CutGeometry parameters = Percent(-1.5, -2.25, -3, -4);
  parameters.ChFixCut = true;
  const Overhang overhang = PopOverhang(parameters);
  EXPECT_EQ(overhang.OverH, -4.5);
  EXPECT_EQ(overhang.OverV, -6.25);
  EXPECT_EQ(parameters.ML, 0);
  EXPECT_EQ(parameters.MT, 0);
  EXPECT_EQ(parameters.MR, 0);
  EXPECT_EQ(parameters.MB, 0);
}

TEST(Overhang, AFixedCutLeavesTheOtherMargins) {
  CutGeometry parameters = Percent(10, 0, -3, 4);
  parameters.ChFixCut = true;
  const Overhang overhang = PopOverhang(parameters);
  EXPECT_EQ(overhang.OverH, -3);
  EXPECT_EQ(overhang.OverV, 0);
  EXPECT_EQ(parameters.ML, 10);
  EXPECT_EQ(parameters.MT, 0);
  EXPECT_EQ(parameters.MR, 0);
  EXPECT_EQ(parameters.MB, 4);
}

struct RectCase {
  const char* what;
  CutGeometry parameters;
  Overhang overhang;
  Size picture;
  Rect expected;
};

class CutRectangleTest : public ::testing::TestWithParam<RectCase> {};

TEST_P(CutRectangleTest, IsAsExpected) {
  const RectCase& c = GetParam();
  EXPECT_EQ(CutRectangle(c.parameters, c.overhang, c.picture), c.expected) << c.what;
}

CutGeometry With(CutGeometry parameters, void (*change)(CutGeometry&)) {
  change(parameters);
  return parameters;
}

void Skip(CutGeometry& p) { p.SkipCutThisImage = true; }
void Full(CutGeometry& p) { p.ChFull = true; }
void NoFixedCut(CutGeometry& p) { p.ChFixCut = false; }
void FixedCut(CutGeometry& p) { p.ChFixCut = true; }
void OptionsLoaded(CutGeometry& p) {
  p.AdvancedOptionsLoaded = true;
  p.TSmalS2 = 1800;
  p.TSmalS3 = 1000;
}
void OptionsLoadedAndFixed(CutGeometry& p) {
  OptionsLoaded(p);
  p.ChFixCut = true;
}
void FractionalSize(CutGeometry& p) {
  p.AdvancedOptionsLoaded = true;
  p.TSmalS2 = 10.5;
  p.TSmalS3 = 11.5;
}

INSTANTIATE_TEST_SUITE_P(
    Percent, CutRectangleTest,
    ::testing::Values(
        RectCase{"all four", Percent(10, 5, 20, 25), {}, {1000, 800}, {100, 40, 700, 560}},
        RectCase{"nothing cut", Percent(0, 0, 0, 0), {}, {1000, 800}, {0, 0, 1000, 800}},
        RectCase{"ties go to the even neighbour", Percent(10, 30, 40, 20), {}, {5, 5}, {0, 2, 2, 2}},
        RectCase{"x/100 comes before the product", Percent(70, 14, 0, 0), {}, {45, 75}, {31, 11, 14, 64}},
        RectCase{"also for what is left", Percent(30, 18, 0, 0), {}, {45, 75}, {14, 14, 31, 61}},
        RectCase{"each side is rounded on its own", Percent(10, 10, 10, 10), {}, {15, 25}, {2, 2, 12, 20}},
        RectCase{"a sum of 100 leaves nothing", Percent(60, 50, 40, 50), {}, {1000, 800}, {600, 400, 0, 0}},
        RectCase{"a sum above 100 is negative", Percent(60, 90, 50, 20), {}, {1000, 800}, {600, 720, -100, -80}},
        RectCase{"negative values enter the formulas", Percent(-10, -5, 0, 0), {}, {1000, 800}, {-100, -40, 1100, 840}},
        RectCase{"the fixed size does not matter",
                 With(Percent(10, 5, 20, 25), OptionsLoadedAndFixed),
                 {},
                 {1000, 800},
                 {100, 40, 700, 560}},
        RectCase{"nor do overhang and full",
                 With(With(Percent(10, 5, 20, 25), FixedCut), Full),
                 {-1, -1},
                 {1000, 800},
                 {100, 40, 700, 560}},
        RectCase{
            "a skipped picture stays whole", With(Percent(10, 5, 20, 25), Skip), {}, {1000, 800}, {0, 0, 1000, 800}}));

INSTANTIATE_TEST_SUITE_P(
    Pixels, CutRectangleTest,
    ::testing::Values(
        RectCase{"fixed: the size is taken as remainders",
                 With(Pixels(100, 50, 200, 100), FixedCut),
                 {},
                 {1000, 800},
                 {100, 50, 700, 650}},
        RectCase{"options never opened: the same", Pixels(100, 50, 200, 100), {}, {1000, 800}, {100, 50, 700, 650}},
        RectCase{"right and bottom margins do not enter",
                 With(Pixels(100, 50, 200, 100), [](CutGeometry& p) { p.MR = p.MB = 77; }),
                 {},
                 {1000, 800},
                 {100, 50, 700, 650}},
        RectCase{"fixed with the options opened",
                 With(Pixels(100, 50, 200, 100), OptionsLoadedAndFixed),
                 {},
                 {1000, 800},
                 {100, 50, 700, 650}},
        RectCase{"options opened: their size, whatever the picture's",
                 With(Pixels(100, 50, 200, 100), OptionsLoaded),
                 {},
                 {640, 480},
                 {100, 50, 1800, 1000}},
        RectCase{"their size is rounded", With(Pixels(0, 0, 0, 0), FractionalSize), {}, {640, 480}, {0, 0, 10, 12}},
        RectCase{"ties go to the even neighbour", Pixels(0.5, 1.5, 0, 0), {}, {10, 10}, {0, 2, 10, 8}},
        RectCase{"and at the next pair", Pixels(2.5, 3.5, 0, 0), {}, {10, 10}, {2, 4, 8, 6}},
        RectCase{"too wide a size is negative", Pixels(10, 10, 1062, 1630), {}, {1000, 800}, {10, 10, -72, -840}},
        RectCase{"negative margins reach outside", Pixels(-10, -20, 100, 100), {}, {1000, 800}, {-10, -20, 910, 720}},
        RectCase{"equal proportions need the fixed cut",
                 With(With(Pixels(10, 20, 100, 100), [](CutGeometry& p) { p.ChAutoZoom = true; }), NoFixedCut),
                 {},
                 {1000, 800},
                 {10, 20, 890, 680}},
        RectCase{"a skipped picture stays whole",
                 With(Pixels(100, 50, 200, 100), Skip),
                 {},
                 {1000, 800},
                 {0, 0, 1000, 800}}));

INSTANTIATE_TEST_SUITE_P(
    Proportional, CutRectangleTest,
    ::testing::Values(
        RectCase{"the values count as percent", Proportional(10, 5, 20, 25), {}, {1000, 800}, {100, 40, 700, 560}},
        RectCase{"the rounded offsets are used", Proportional(10, 10, 0, 0), {}, {335, 335}, {34, 34, 301, 301}},
        RectCase{"x/100 comes before the product", Proportional(70, 14, 0, 0), {}, {45, 75}, {31, 11, 14, 64}},
        RectCase{"full, over the sides: the whole height",
                 With(Proportional(10, 5, 20, 25), Full),
                 {-3, 0},
                 {1000, 800},
                 {100, 0, 900, 800}},
        RectCase{"full, over top or bottom: the whole width",
                 With(Proportional(10, 5, 20, 25), Full),
                 {0, -3},
                 {1000, 800},
                 {0, 40, 1000, 760}},
        RectCase{"full, over both: the sides come first",
                 With(Proportional(10, 5, 20, 25), Full),
                 {-3, -3},
                 {1000, 800},
                 {100, 0, 900, 800}},
        RectCase{"full multiplies before it divides",
                 With(Proportional(70, 14, 0, 0), Full),
                 {-3, 0},
                 {45, 75},
                 {32, 0, 14, 75}},
        RectCase{"likewise from the top", With(Proportional(70, 14, 0, 0), Full), {0, -3}, {45, 75}, {0, 10, 45, 64}},
        RectCase{"full without overhang: as without full",
                 With(Proportional(10, 5, 20, 25), Full),
                 {},
                 {1000, 800},
                 {100, 40, 700, 560}},
        RectCase{"overhang without full does not matter",
                 Proportional(10, 5, 20, 25),
                 {-3, -3},
                 {1000, 800},
                 {100, 40, 700, 560}},
        RectCase{"a skipped picture stays whole",
                 With(With(Proportional(10, 5, 20, 25), Full), Skip),
                 {-3, 0},
                 {1000, 800},
                 {0, 0, 1000, 800}}));

TEST(CutRectangleAfterRotation, HasTheFixedSizeOnlyWithAFixedCut) {
  CutGeometry parameters = Pixels(100, 50, 200, 100);
  parameters.TSmalS2 = 300;
  parameters.TSmalS3 = 400;
  EXPECT_EQ(CutRectangle(parameters, {}, {800, 1000}, Pass::AfterRotation), (Rect{100, 50, 300, 400}));
  parameters.ChFixCut = true;
  EXPECT_EQ(CutRectangle(parameters, {}, {800, 1000}, Pass::AfterRotation), (Rect{100, 50, 500, 850}));
}

TEST(CutRectangleAfterRotation, IsOtherwiseTheSame) {
  EXPECT_EQ(CutRectangle(Percent(10, 5, 20, 25), {}, {800, 1000}, Pass::AfterRotation), (Rect{80, 50, 560, 700}));
  EXPECT_EQ(CutRectangle(Proportional(10, 5, 20, 25), {}, {800, 1000}, Pass::AfterRotation), (Rect{80, 50, 560, 700}));
}

TEST(Overlap, NeedsOnePixel) {
  constexpr base::Size kPicture{100, 80};
  EXPECT_TRUE(Overlap({99, 79, 5, 5}, kPicture));
  EXPECT_FALSE(Overlap({100, 0, 5, 5}, kPicture));
  EXPECT_FALSE(Overlap({0, 80, 5, 5}, kPicture));
  EXPECT_TRUE(Overlap({-5, -5, 6, 6}, kPicture));
  EXPECT_FALSE(Overlap({-5, 0, 5, 5}, kPicture));
  EXPECT_FALSE(Overlap({0, -5, 5, 5}, kPicture));
  EXPECT_TRUE(Overlap({-10, -10, 200, 200}, kPicture));
  constexpr int kFar = std::numeric_limits<int>::max();
  EXPECT_FALSE(Overlap({kFar, 0, kFar, 5}, kPicture));
  EXPECT_FALSE(Overlap({-kFar, 0, kFar, 5}, kPicture));
  EXPECT_TRUE(Overlap({1 - kFar, 0, kFar, 5}, kPicture));
}

CutGeometry Exact(int FixW, int FixH, int anchor) {
  CutGeometry geometry;
  geometry.ChCutA = geometry.ChFixCut = geometry.ChExact = true;
  geometry.FixW = FixW;
  geometry.FixH = FixH;
  geometry.CmbAnchor = anchor;
  return geometry;
}

TEST(ExactRectangle, IsTheLargestOfItsRatioAtEachAnchor) {
  // 90 x 60 leaves 11 columns of 101 x 60; 40 x 60 leaves 61 columns.
  const Size wide{101, 60};
  EXPECT_EQ(PlacedRectangle(Exact(3, 2, 0), wide), (Rect{0, 0, 90, 60}));
  EXPECT_EQ(PlacedRectangle(Exact(3, 2, 4), wide), (Rect{6, 0, 90, 60}));  // 5.5, ties to even
  EXPECT_EQ(PlacedRectangle(Exact(3, 2, 5), wide), (Rect{11, 0, 90, 60}));
  EXPECT_EQ(PlacedRectangle(Exact(200, 300, 8), wide), (Rect{61, 0, 40, 60}));
  const Size tall{60, 101};
  EXPECT_EQ(PlacedRectangle(Exact(2, 3, 1), tall), (Rect{0, 0, 60, 90}));
  EXPECT_EQ(PlacedRectangle(Exact(2, 3, 3), tall), (Rect{0, 6, 60, 90}));
  EXPECT_EQ(PlacedRectangle(Exact(2, 3, 7), tall), (Rect{0, 11, 60, 90}));
  EXPECT_EQ(PlacedRectangle(Exact(30000, 1, 4), {50, 50}), (Rect{0, 24, 50, 1}));  // 24.5
}

TEST(ExactRectangle, StaysInsideWhereverTheMarginsPlaceIt) {
  CutGeometry geometry = Exact(2, 3, kAnchorByMargins);
  geometry.ML = 7;
  EXPECT_EQ(PlacedRectangle(geometry, {100, 60}), (Rect{7, 0, 40, 60}));
  geometry.ML = 70;
  geometry.MT = 3;
  EXPECT_EQ(PlacedRectangle(geometry, {100, 60}), (Rect{60, 0, 40, 60}));
}

TEST(ExactRectangle, IsTheWholePictureIfThatIsPadded) {
  CutGeometry geometry = Exact(2, 3, 0);
  geometry.ChExactPad = true;
  EXPECT_EQ(PlacedRectangle(geometry, {100, 60}), (Rect{0, 0, 100, 60}));
}

TEST(ExactRectangle, NeedsAFixedCutOfSomeSize) {
  CutGeometry geometry = Exact(2, 3, 0);
  geometry.ChFixCut = false;
  geometry.ChExactPad = true;
  EXPECT_FALSE(geometry.Exact() || geometry.PadsToExact() || geometry.ScalesToExact());
  EXPECT_FALSE(Exact(0, 3, 0).Exact());
  EXPECT_FALSE(Exact(3, 0, 0).Exact());
}

// Each value is changed in many settings: the rectangle changes if the value counts, and never otherwise.
TEST(ValuesThatCount, AreThoseThatTheRectangleDependsOn) {
  constexpr Size kPicture{400, 300};
  for (unsigned bits = 0; bits < 256; ++bits) {
    const auto bit = [bits](unsigned place) { return (bits >> place & 1U) != 0; };
    CutGeometry geometry;
    geometry.ML = 5;
    geometry.MT = 6;
    geometry.MR = 7;
    geometry.MB = 8;
    geometry.FixW = 50;
    geometry.FixH = 70;
    geometry.TSmalS2 = 80;
    geometry.TSmalS3 = 90;
    geometry.ChCutA = bit(0);
    geometry.ChFixCut = bit(1) && bit(0);  // the window allows it in pixels only
    geometry.ChAutoZoom = bit(2);
    geometry.AdvancedOptionsLoaded = bit(3);
    geometry.ChAsFramed = bit(4);
    geometry.ChAutoCenter = bit(5);
    geometry.ChExact = bit(6);
    geometry.ChExactPad = bit(7);
    for (const int anchor : {0, kAnchorByMargins}) {
      geometry.CmbAnchor = anchor;
      SCOPED_TRACE("settings " + std::to_string(bits) + ", anchor " + std::to_string(anchor));
      const CountingValues counting = ValuesThatCount(geometry);
      const Rect cut = PlacedRectangle(geometry, kPicture);
      const auto changes = [&](auto member, auto by) {
        CutGeometry other = geometry;
        other.*member += by;
        return PlacedRectangle(other, kPicture) != cut;
      };
      // The largest part of this ratio is as high as the picture, so that it cannot move down.
      const bool atTop = geometry.Exact() && anchor == kAnchorByMargins && !geometry.PadsToExact();
      EXPECT_EQ(changes(&CutGeometry::ML, 10), counting.margins[0]);
      if (!atTop) {
        EXPECT_EQ(changes(&CutGeometry::MT, 10), counting.margins[1]);
      }
      EXPECT_EQ(changes(&CutGeometry::MR, 10), counting.margins[2]);
      EXPECT_EQ(changes(&CutGeometry::MB, 10), counting.margins[3]);
      // A padded picture is not cut; its size decides the border.
      if (!geometry.PadsToExact()) {
        EXPECT_EQ(changes(&CutGeometry::FixW, 10), counting.fixedSize);
      }
      EXPECT_EQ(changes(&CutGeometry::TSmalS2, 10), counting.keptSize);
      EXPECT_EQ(changes(&CutGeometry::TSmalS3, 10), counting.keptSize);
      CutGeometry other = geometry;
      other.ChAutoCenter = !geometry.ChAutoCenter;
      EXPECT_EQ(PlacedRectangle(other, kPicture) != cut, counting.centred);
    }
  }
}

TEST(FrameOf, IsTheCutWithChAsFramed) {
  CutGeometry geometry;
  geometry.ChCutA = geometry.ChAsFramed = true;
  geometry.ML = 10.5;
  geometry.MT = 20;
  geometry.MR = 30;
  geometry.MB = 40;
  geometry.FixW = 50;
  geometry.FixH = 60;
  EXPECT_EQ(FrameOf(geometry, {400, 300}), (PreviewFrame{10.5, 20, 359.5, 240}));
  EXPECT_EQ(PlacedRectangle(geometry, {400, 300}), (Rect{10, 20, 360, 240}));
  geometry.ChFixCut = true;
  EXPECT_EQ(PlacedRectangle(geometry, {400, 300}), (Rect{10, 20, 50, 60}));
  geometry.ChAutoCenter = true;
  EXPECT_EQ(PlacedRectangle(geometry, {400, 300}), (Rect{175, 120, 50, 60}));
  geometry.ChAsFramed = false;
  EXPECT_EQ(PlacedRectangle(geometry, {400, 300}), (Rect{10, 20, 340, 220}));
  geometry.SkipCutThisImage = geometry.ChAsFramed = true;
  EXPECT_EQ(PlacedRectangle(geometry, {400, 300}), (Rect{0, 0, 400, 300}));
}

TEST(NeedRotate, FollowsItsRule) {
  const Size wide{200, 100};
  const Size tall{100, 200};
  const Size square{100, 100};
  struct Row {
    int rule;
    bool wide;
    bool tall;
    bool square;
  };
  const Row rows[] = {{-1, false, false, false}, {0, false, false, false}, {1, true, false, false},
                      {2, true, false, false},   {3, false, true, false},  {4, false, true, false},
                      {5, true, true, true},     {6, false, false, false}};
  for (const Row& row : rows) {
    EXPECT_EQ(NeedRotate(wide.width, wide.height, row.rule, 90), row.wide) << row.rule;
    EXPECT_EQ(NeedRotate(tall.width, tall.height, row.rule, 90), row.tall) << row.rule;
    EXPECT_EQ(NeedRotate(square.width, square.height, row.rule, 90), row.square) << row.rule;
    EXPECT_FALSE(NeedRotate(wide.width, wide.height, row.rule, 0)) << row.rule;
    EXPECT_FALSE(NeedRotate(tall.width, tall.height, row.rule, 0)) << row.rule;
  }
}

TEST(PreRotation, FollowsItsEntry) {
  const Size wide{200, 100};
  const Size tall{100, 200};
  const Size square{100, 100};
  const auto none = std::optional<double>();
  struct Row {
    int entry;
    std::optional<double> wide;
    std::optional<double> tall;
    std::optional<double> square;
  };
  const Row rows[] = {{0, none, none, none},  {1, 90.0, none, none}, {2, -90.0, none, none}, {3, none, 90.0, none},
                      {4, none, -90.0, none}, {5, 12.5, 12.5, 12.5}, {6, none, none, none},  {-1, none, none, none}};
  for (const Row& row : rows) {
    EXPECT_EQ(PreRotation(row.entry, wide, 12.5), row.wide) << row.entry;
    EXPECT_EQ(PreRotation(row.entry, tall, 12.5), row.tall) << row.entry;
    EXPECT_EQ(PreRotation(row.entry, square, 12.5), row.square) << row.entry;
  }
}

TEST(FitToSize, KeepsProportionsAndCentres) {
  EXPECT_EQ(FitToSize({4000, 3000}, 1062, 1630), (Fit{1062, 796, 0, 417}));
  EXPECT_EQ(FitToSize({3000, 4000}, 1062, 1630), (Fit{1062, 1416, 0, 107}));
  EXPECT_EQ(FitToSize({100, 1000}, 1062, 1630), (Fit{163, 1630, 450, 0}));
  EXPECT_EQ(FitToSize({1000, 1000}, 400, 301), (Fit{301, 301, 50, 0}));
  EXPECT_EQ(FitToSize({1062, 1630}, 1062, 1630), (Fit{1062, 1630, 0, 0}));
  EXPECT_EQ(FitToSize({10, 20}, 301, 300), (Fit{150, 300, 76, 0}));
  EXPECT_EQ(FitToSize({3, 2}, 100, 50), (Fit{75, 50, 12, 0}));
  EXPECT_EQ(FitToSize({2, 1}, 101, 50), (Fit{101, 50, 0, 0}));  // a height that just fits decides nothing
}

TEST(FitToSize, APictureWithoutAreaGivesNothing) {
  EXPECT_EQ(FitToSize({0, 10}, 100, 100), Fit{});
  EXPECT_EQ(FitToSize({10, 0}, 100, 100), Fit{});
}

TEST(BoardPixels, TurnsMillimetresIntoPixels) {
  EXPECT_EQ(BoardPixels({5, 10, 43, 0}, 300, 1), (Board{59, 118, 508, 0}));
  EXPECT_EQ(BoardPixels({5, 5, 5, 43}, 72, 1), (Board{14, 14, 14, 122}));
}

TEST(BoardPixels, RoundsBeforeAndAfterTheScale) {
  // 5 mm at 300 dpi are 59 pixels (59.055), half of them 29.5: to the even neighbour.
  EXPECT_EQ(BoardPixels({5, 5, 5, 5}, 300, 0.5), (Board{30, 30, 30, 30}));
  // 7 mm at 96 dpi are 26 pixels (26.457): 2.5 times 26 and not 2.5 times 26.457.
  EXPECT_EQ(BoardPixels({7, 0, 0, 0}, 96, 2.5), (Board{65, 0, 0, 0}));
}

TEST(ExtendedSize, PutsTheBorderOnTheRightOrTheBottom) {
  const Board board{1, 20, 300, 4000};
  EXPECT_EQ(ExtendedSize(Extend::Right, 10000, 20000, board), (Size{20301, 14020}));
  EXPECT_EQ(ExtendedSize(Extend::Bottom, 10000, 20000, board), (Size{24020, 10301}));
}

TEST(ZoomText, IsAPercentageOrTwoNumbers) {
  for (const char* text : {"50%", "50", "99.5 %", "0%", "501%", "+50%", "12,5%", "800,600", "0,99999", " 800 , 600 ",
                           "５０％", "８００，６００", "50%,60"}) {
    EXPECT_TRUE(IsZoomText(text)) << text;
  }
  for (const char* text : {"", "%", ",", "10,", ",10", "abc", "abc%", "10,b", "10,20,30", "1e999", "NaN", "nan,5", "-5",
                           "-50%", "-800,600", "50%+", "50%abc", "+", "1e2%"}) {
    EXPECT_FALSE(IsZoomText(text)) << text;
  }
}

TEST(ResolutionOfBoard, IsTheOutputsWithAFixedCutAndElseTheSources) {
  EXPECT_EQ(ResolutionOfBoard(true, 300, 72, 96), (BoardResolution{300, 1}));
  EXPECT_EQ(ResolutionOfBoard(true, 0, 72, 96), (BoardResolution{96, 1}));
  EXPECT_EQ(ResolutionOfBoard(false, 300, 75, 96), (BoardResolution{75, 4}));
  EXPECT_EQ(ResolutionOfBoard(false, 300, 0, 100), (BoardResolution{100, 3}));
  EXPECT_EQ(ResolutionOfBoard(false, 0, 254, 96), (BoardResolution{254, 1}));
  EXPECT_EQ(ResolutionOfBoard(false, 300, 0, 0), (BoardResolution{0, 1}));
}

struct ZoomCase {
  const char* text;
  Size picture;
  std::optional<Size> before;
  std::optional<Size> after;
};

TEST(ZoomedSize, ReadsPercentAndSizes) {
  const auto same = [](Size size) { return std::optional(size); };
  const ZoomCase cases[] = {
      {"50%", {1001, 667}, same({500, 334}), same({500, 334})},
      {"50", {1000, 600}, same({500, 300}), same({500, 300})},
      {"99.5%", {1000, 600}, same({995, 597}), same({995, 597})},
      {"10%", {1000, 600}, same({100, 60}), same({100, 60})},
      {"500%", {100, 60}, same({500, 300}), same({500, 300})},
      {"10%", {100, 60}, same({10, 6}), same({10, 6})},
      {"100%", {1000, 600}, {}, {}},
      {"9%", {1000, 600}, {}, {}},
      {"501%", {1000, 600}, {}, {}},
      {"-50%", {1000, 600}, {}, {}},
      {"", {1000, 600}, {}, {}},
      {"abc", {1000, 600}, {}, {}},
      {"800,600", {1000, 600}, same({800, 600}), same({800, 600})},
      {"1000,600", {1000, 600}, same({1000, 600}), same({1000, 600})},
      {"10,99999", {1000, 600}, same({32, 30000}), same({32, 99999})},
      {"99999,10", {1000, 600}, same({30000, 32}), same({30000, 32})},
      {"-5,0", {1000, 600}, same({32, 32}), same({32, 32})},
      {"800,", {1000, 600}, same({800, 32}), same({800, 32})},
      {"+50%", {1000, 600}, same({500, 300}), same({500, 300})},
      {"12,5%", {1000, 600}, same({125, 75}), same({125, 75})},
      {"50%,60", {1000, 600}, same({500, 300}), same({500, 300})},
      {"%", {1000, 600}, {}, {}},
      {"0%", {1000, 600}, {}, {}},
      {",", {1000, 600}, same({32, 32}), same({32, 32})},
      {"99999,99999", {1000, 600}, same({30000, 30000}), same({30000, 99999})},
      {"99999,99999999999", {1000, 600}, same({30000, 30000}), same({30000, 2147483647})},
      {"５０％", {1000, 600}, same({500, 300}), same({500, 300})},
      {"８００，６００", {1000, 600}, same({800, 600}), same({800, 600})},
  };
  for (const ZoomCase& c : cases) {
    EXPECT_EQ(ZoomedSize(c.text, c.picture, ZoomTime::BeforeCut), c.before) << c.text;
    EXPECT_EQ(ZoomedSize(c.text, c.picture, ZoomTime::AfterCut), c.after) << c.text;
  }
}

}  // namespace
}  // namespace quillon::job
