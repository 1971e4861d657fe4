// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The rectangle of each cut mode. All expected values are computed by hand.
#include "job/settings/mode_rectangle.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace quillon::job {
namespace {

using base::Rect;
using base::Size;

struct ModeCase {
  std::string what;
  CutMode mode;
  CutGeometry geometry;
  Size picture;
  Rect expected;
};

CutGeometry Percent(double left, double top, double right, double bottom) {
  return {.ML = left, .MT = top, .MR = right, .MB = bottom, .FixW = 1062, .FixH = 1630};
}

CutGeometry Pixels(double left, double top, double right, double bottom) {
  CutGeometry geometry = Percent(left, top, right, bottom);
  geometry.ChCutA = true;
  return geometry;
}

CutGeometry Fixed(CutGeometry geometry, int width, int height) {
  geometry.ChFixCut = true;
  geometry.FixW = width;
  geometry.FixH = height;
  return geometry;
}

CutGeometry WithAll(CutGeometry geometry) {
  geometry.ChFull = geometry.ChAutoZoom = geometry.AdvancedOptionsLoaded = geometry.ChExact = true;
  return geometry;
}

void Expect(const std::vector<ModeCase>& cases) {
  for (const ModeCase& c : cases) EXPECT_EQ(RectangleOfMode(c.mode, c.geometry, c.picture), c.expected) << c.what;
}

// The same rule for both modes.
void ExpectOfFrames(const std::vector<ModeCase>& cases) {
  for (const CutMode mode : {CutMode::Gif, CutMode::Png}) {
    for (ModeCase c : cases) {
      c.mode = mode;
      Expect({c});
    }
  }
}

TEST(RectangleOfMode, FramesLoseTheMarginsWithoutAFixedCut) {
  ExpectOfFrames({
      {"pixels", {}, Pixels(10, 20, 30, 40), {100, 200}, {10, 20, 60, 140}},
      {"narrower than the fixed size", {}, Pixels(0, 0, 0, 6), {320, 240}, {0, 0, 320, 234}},
      {"ties to even", {}, Pixels(0.5, 1.5, 0, 0), {100, 200}, {0, 2, 100, 198}},
      {"options of other modes", {}, WithAll(Pixels(10, 20, 30, 40)), {100, 200}, {10, 20, 60, 140}},
      {"per cent", {}, Percent(10, 20, 30, 40), {1000, 500}, {100, 100, 600, 200}},
      {"fractions of per cent", {}, Percent(12.5, 0, 12.5, 0), {800, 600}, {100, 0, 600, 600}},
      {"rounded on its own", {}, Percent(10, 10, 10, 10), {335, 334}, {34, 33, 268, 268}},
  });
}

TEST(RectangleOfMode, FramesLoseTheFixedSizeWithAFixedCut) {
  ExpectOfFrames({
      {"pixels", {}, Fixed(Pixels(10, 20, 77, 77), 30, 40), {100, 200}, {10, 20, 60, 140}},
      {"options of other modes", {}, WithAll(Fixed(Pixels(10, 20, 77, 77), 30, 40)), {100, 200}, {10, 20, 60, 140}},
      {"sides below 0", {}, Fixed(Pixels(90, 10, 0, 0), 20, 200), {100, 200}, {90, 10, -10, -10}},
      {"nothing left", {}, Fixed(Pixels(0, 0, 0, 0), 100, 200), {100, 200}, {0, 0, 0, 0}},
      {"per cent", {}, Fixed(Percent(10, 20, 77, 77), 30, 40), {1000, 500}, {100, 100, 600, 200}},
  });
}

TEST(RectangleOfMode, OddSidesOfAGifAreRaisedInsideThePicture) {
  Expect({
      {"both", CutMode::Gif, Pixels(3, 5, 96, 44), {200, 100}, {3, 5, 102, 52}},
      {"even already", CutMode::Gif, Pixels(3, 5, 97, 45), {200, 100}, {3, 5, 100, 50}},
      {"whole width", CutMode::Gif, Pixels(0, 0, 0, 49), {101, 100}, {0, 0, 101, 52}},
      {"to the lower edge", CutMode::Gif, Pixels(3, 49, 96, 0), {200, 100}, {3, 49, 102, 51}},
      {"png", CutMode::Png, Pixels(3, 5, 96, 44), {200, 100}, {3, 5, 101, 51}},
  });
}

TEST(RectangleOfMode, APdfPageIsAlwaysCutByPercent) {
  Expect({
      {"per cent", CutMode::Pdf, Percent(10, 20, 30, 40), {1000, 500}, {100, 100, 600, 200}},
      {"pixels", CutMode::Pdf, Pixels(10, 20, 30, 40), {1000, 500}, {100, 100, 600, 200}},
      {"fixed", CutMode::Pdf, Fixed(Pixels(10, 20, 30, 40), 50, 60), {1000, 500}, {100, 100, 600, 200}},
  });
}

TEST(RectangleOfMode, ATiffPageHasThreeRules) {
  Expect({
      {"fixed", CutMode::Tiff, Fixed(Pixels(10, 20, 30, 40), 50, 60), {1000, 500}, {100, 100, 50, 60}},
      {"fixed, per cent", CutMode::Tiff, Fixed(Percent(12.5, 20, 30, 40), 50, 60), {1000, 500}, {125, 100, 50, 60}},
      {"joined", CutMode::Tiff, Pixels(10, 1, 20, 2), {2480, 3508}, {10, 1, 1460, 3496}},
      {"joined with a 0 first", CutMode::Tiff, Pixels(0, 0, 20, 5), {100, 100}, {0, 0, 80, 95}},
      {"joined with a 0 last", CutMode::Tiff, Pixels(2, 3, 0, 0), {100, 100}, {2, 3, 80, 70}},
      {"joined fractions", CutMode::Tiff, Pixels(1.5, 0, 2.5, 0), {100, 100}, {2, 0, 98, 100}},
      {"per cent", CutMode::Tiff, Percent(10, 20, 30, 40), {1000, 500}, {100, 100, 600, 200}},
      {"nothing left", CutMode::Tiff, Percent(60, 0, 60, 0), {100, 100}, {60, 0, -20, 100}},
  });
}

TEST(RectangleOfMode, TheFrameOfThePreviewCountsIfItIsChosen) {
  CutGeometry framed = Fixed(Pixels(10, 20, 30, 40), 50, 60);
  framed.ChAsFramed = framed.ChExact = true;
  Expect({
      {"gif", CutMode::Gif, framed, {400, 300}, {10, 20, 50, 60}},
      {"png", CutMode::Png, framed, {400, 300}, {10, 20, 50, 60}},
      {"tiff", CutMode::Tiff, framed, {400, 300}, {10, 20, 50, 60}},
  });
}

TEST(ValuesOfMode, AreThoseOfItsRule) {
  CutGeometry free;
  free.ChCutA = true;
  free.ChExact = true;  // counts in the normal cut alone
  CutGeometry fixed = free;
  fixed.ChFixCut = true;
  constexpr std::array kAll{true, true, true, true};
  constexpr std::array kLeftAndTop{true, true, false, false};
  for (const CutMode mode : {CutMode::Gif, CutMode::Png, CutMode::Tiff}) {
    EXPECT_EQ(ValuesOfMode(mode, free).margins, kAll);
    EXPECT_FALSE(ValuesOfMode(mode, free).fixedSize);
    EXPECT_EQ(ValuesOfMode(mode, fixed).margins, kLeftAndTop);
    EXPECT_TRUE(ValuesOfMode(mode, fixed).fixedSize);
  }
  EXPECT_EQ(ValuesOfMode(CutMode::Pdf, fixed).margins, kAll);
  EXPECT_FALSE(ValuesOfMode(CutMode::Pdf, fixed).fixedSize);
  EXPECT_EQ(ValuesOfMode(CutMode::Normal, fixed).margins, ValuesThatCount(fixed).margins);
  fixed.ChAsFramed = true;
  EXPECT_TRUE(ValuesOfMode(CutMode::Gif, fixed).centred);
}

TEST(RectangleOfMode, APictureThatIsNotCutIsWhole) {
  CutGeometry skipped = Fixed(Pixels(10, 20, 30, 40), 50, 60);
  skipped.SkipCutThisImage = true;
  for (const CutMode mode : {CutMode::Normal, CutMode::Gif, CutMode::Png, CutMode::Pdf, CutMode::Tiff}) {
    EXPECT_EQ(RectangleOfMode(mode, skipped, {400, 300}), (Rect{0, 0, 400, 300})) << static_cast<int>(mode);
  }
}

TEST(RectangleOfMode, OtherModesCutAsPlacedRectangle) {
  const CutGeometry fixed = Fixed(Pixels(-10, 20, 30, 40), 50, 60);
  for (const CutMode mode : {CutMode::Normal, CutMode::PenHui, CutMode::Colour}) {
    EXPECT_EQ(RectangleOfMode(mode, fixed, {400, 300}), PlacedRectangle(fixed, {400, 300}));
    EXPECT_EQ(RectangleOfMode(mode, fixed, {400, 300}), (Rect{0, 20, 350, 220}));
  }
}

}  // namespace
}  // namespace quillon::job
