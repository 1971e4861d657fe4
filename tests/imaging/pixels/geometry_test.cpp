// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/geometry.h"

#include <gtest/gtest.h>

#include <cmath>

#include "imaging/pictures.h"
#include "imaging/pixels/colours.h"

namespace quillon::imaging {
namespace {

using testing::FromVips;
using testing::PhotoLike;
using testing::Plain;
using testing::Sheet;
using testing::ToVips;
using testing::ToVipsDeep;
using vips::VImage;

constexpr base::Colour kRed{0x0000FF};
constexpr base::Colour kBlue{0xFF0000};

TEST(Geometry, TurnedSizeIsTheBoundingBoxRoundedUp) {
  struct Case {
    base::Size size;
    double angle;
    base::Size expected;
  };
  const Case cases[] = {
      {{100, 50}, 0, {100, 50}},
      {{100, 50}, 90, {50, 100}},
      {{100, 50}, 180, {100, 50}},
      {{100, 50}, -90, {50, 100}},
      {{100, 50}, 450, {50, 100}},
      // 100 cos 30 + 50 sin 30 = 111.60, 100 sin 30 + 50 cos 30 = 93.30.
      {{100, 50}, 30, {112, 94}},
      {{100, 50}, -30, {112, 94}},
      {{100, 50}, 150, {112, 94}},
      // 100 (cos 45 + sin 45) = 141.42.
      {{100, 100}, 45, {142, 142}},
      {{1, 1}, 7.3, {2, 2}},
  };
  for (const Case& c : cases) EXPECT_EQ(TurnedSize(c.size, c.angle), c.expected) << c.angle;
}

// a b    counter-clockwise: the right column becomes the top row.
// c d
// e f
TEST(Geometry, QuarterTurnsAreExact) {
  const VImage image = ToVips({2, 3, 1, {1, 2, 3, 4, 5, 6}}, VIPS_INTERPRETATION_B_W);
  struct Case {
    double angle;
    Sheet expected;
  };
  const Case cases[] = {
      {0, {2, 3, 1, {1, 2, 3, 4, 5, 6}}},   {90, {3, 2, 1, {2, 4, 6, 1, 3, 5}}},
      {180, {2, 3, 1, {6, 5, 4, 3, 2, 1}}}, {270, {3, 2, 1, {5, 3, 1, 6, 4, 2}}},
      {-90, {3, 2, 1, {5, 3, 1, 6, 4, 2}}}, {-270, {3, 2, 1, {2, 4, 6, 1, 3, 5}}},
      {360, {2, 3, 1, {1, 2, 3, 4, 5, 6}}}, {720 + 90, {3, 2, 1, {2, 4, 6, 1, 3, 5}}},
  };
  for (const Case& c : cases) EXPECT_EQ(FromVips(Turned(image, c.angle, kRed)), c.expected) << c.angle;
}

// An angle close to 90 degrees is interpolated, and must give nearly the same picture as the exact rotation.
TEST(Geometry, InterpolatedTurnsMeetTheExactOnes) {
  const Sheet photo = PhotoLike(40, 30, 3);
  for (const double angle : {90.0, 180.0, 270.0, 360.0, -90.0}) {
    const Sheet exact = FromVips(Turned(ToVips(photo), angle, kRed));
    const VImage nearly = Turned(ToVips(photo), angle + 1e-9, kRed);
    EXPECT_LE(testing::Difference(FromVips(nearly), exact), 1) << angle;
  }
}

TEST(Geometry, CornersShowTheColourAndTheMiddleStays) {
  const Sheet turned = FromVips(Turned(ToVips(Plain(101, 51, {10, 20, 30})), 30, kRed));
  EXPECT_EQ(turned.Pixel(0, 0), (std::vector<int>{255, 0, 0}));
  EXPECT_EQ(turned.Pixel(turned.width - 1, turned.height - 1), (std::vector<int>{255, 0, 0}));
  EXPECT_EQ(turned.Pixel(turned.width / 2, turned.height / 2), (std::vector<int>{10, 20, 30}));
}

// The picture's own top right corner turns up to the top: counter-clockwise as seen.
TEST(Geometry, PositiveAnglesTurnCounterClockwise) {
  Sheet marked = Plain(101, 101, {0, 0, 0});
  for (int y = 45; y < 56; ++y) {
    for (int x = 90; x < 101; ++x) marked.values[static_cast<std::size_t>((y * 101 + x) * 3)] = 255;
  }
  const Sheet turned = FromVips(Turned(ToVips(marked), 30, base::Colour{0}));
  // The mark, 45 right of the middle, goes to 45 cos 30 = 39 right, 45 sin 30 = 22.5 up.
  const int middle = turned.width / 2;
  EXPECT_GT(turned.At(middle + 39, middle - 22), 200);
  EXPECT_LT(turned.At(middle + 39, middle + 22), 50);
}

TEST(Geometry, TurnsKeepKindAndDepth) {
  const Sheet inks =
      FromVips(Turned(ToVips(Plain(20, 20, {50, 60, 70, 80}), VIPS_INTERPRETATION_CMYK), 45, base::kWhite));
  EXPECT_EQ(inks.Pixel(0, 0), (std::vector<int>{0, 0, 0, 0}));
  EXPECT_EQ(inks.Pixel(inks.width / 2, inks.height / 2), (std::vector<int>{50, 60, 70, 80}));
  const VImage deep = Turned(ToVipsDeep(Plain(20, 20, {5000, 6000, 7000})), 45, base::kWhite);
  EXPECT_EQ(deep.format(), VIPS_FORMAT_USHORT);
  EXPECT_EQ(FromVips(deep).Pixel(0, 0), (std::vector<int>{65535, 65535, 65535}));
  // Grey cannot show a colour.
  const Sheet grey = FromVips(Turned(ToVips(Plain(20, 20, {9}), VIPS_INTERPRETATION_B_W), 45, kBlue));
  EXPECT_EQ(grey.Pixel(0, 0), (std::vector<int>{0, 0, 255}));
  EXPECT_EQ(FromVips(Turned(ToVips(Plain(20, 20, {9}), VIPS_INTERPRETATION_B_W), 45, base::kWhite)).bands, 1);
  const Sheet clear = FromVips(Turned(ToVips(Plain(20, 20, {9, 9, 9, 0})), 45, kRed));
  EXPECT_EQ(clear.Pixel(0, 0), (std::vector<int>{255, 0, 0, 255}));
  EXPECT_EQ(clear.At(clear.width / 2, clear.height / 2, 3), 0);
}

// No ringing at the edge: every value lies between the picture and the background colour.
TEST(Geometry, TheRimOfATurnedPictureIsSmooth) {
  const Sheet white = FromVips(Turned(ToVips(Plain(60, 40, {255, 255, 255})), 7.3, base::kWhite));
  for (const int value : white.values) ASSERT_EQ(value, 255);
  const Sheet dark = FromVips(Turned(ToVips(Plain(60, 40, {100, 100, 100})), 7.3, base::kWhite));
  int between = 0;
  for (const int value : dark.values) {
    ASSERT_GE(value, 100);
    if (value > 100 && value < 255) ++between;
  }
  EXPECT_GT(between, 100);
  // The covered area stays the same.
  const double area = 60 * 40;
  double covered = 0;
  for (std::size_t i = 0; i < dark.values.size(); i += 3) covered += (255 - dark.values[i]) / 155.0;
  EXPECT_NEAR(covered, area, area * 0.005);
}

TEST(Geometry, TransparentPixelsDoNotBleedWhenTurned) {
  // Left half red and opaque, right half green and transparent.
  Sheet sheet{20, 20, 4, {}};
  for (int i = 0; i < 400; ++i) {
    const bool left = i % 20 < 10;
    for (const int value : {left ? 255 : 0, left ? 0 : 255, 0, left ? 255 : 0}) sheet.values.push_back(value);
  }
  const Sheet turned = FromVips(Turned(ToVips(sheet), 10, kRed));
  for (int i = 0; i < turned.width * turned.height; ++i) {
    const auto at = static_cast<std::size_t>(i * 4);
    if (turned.values[at + 3] < 8) continue;
    ASSERT_LE(turned.values[at + 1], 1) << i;
  }
}

// A smooth wave has a known value at every position, which must come out with an error of half a sample value.
TEST(Geometry, InterpolationIsPrecise) {
  const auto wave = [](double x, double y) { return 128 + 100 * std::sin(x / 4) * std::cos(y / 5); };
  Sheet sheet{80, 60, 1, {}};
  for (int y = 0; y < 60; ++y) {
    for (int x = 0; x < 80; ++x) sheet.values.push_back(static_cast<int>(std::lround(wave(x, y))));
  }
  const VImage image = ToVips(sheet, VIPS_INTERPRETATION_B_W);
  const Sheet larger = FromVips(Scaled(image, {208, 156}));
  for (int y = 20; y < 136; ++y) {
    for (int x = 20; x < 188; ++x) {
      ASSERT_NEAR(larger.At(x, y), wave((x + 0.5) / 2.6 - 0.5, (y + 0.5) / 2.6 - 0.5), 2) << x << " " << y;
    }
  }
  const Sheet turned = FromVips(Turned(image, 7.3, base::kWhite));
  const double angle = 7.3 * 3.14159265358979 / 180;
  for (int y = 20; y < turned.height - 20; ++y) {
    for (int x = 20; x < turned.width - 20; ++x) {
      const double dx = x - (turned.width - 1) / 2.0;
      const double dy = y - (turned.height - 1) / 2.0;
      const double sx = 39.5 + std::cos(angle) * dx - std::sin(angle) * dy;
      const double sy = 29.5 + std::sin(angle) * dx + std::cos(angle) * dy;
      if (sx < 6 || sx > 73 || sy < 6 || sy > 53) continue;
      ASSERT_NEAR(turned.At(x, y), wave(sx, sy), 2) << x << " " << y;
    }
  }
}

TEST(Geometry, WhiteOfSixteenBitsStaysWhite) {
  const Sheet scaled = FromVips(Scaled(ToVipsDeep(Plain(30, 20, {65535, 65535, 65535})), {77, 9}));
  EXPECT_EQ(scaled, Plain(77, 9, {65535, 65535, 65535}));
}

TEST(Geometry, ScalesToTheExactSize) {
  const VImage photo = ToVips(PhotoLike(97, 61, 3));
  for (const base::Size size :
       {base::Size{50, 30}, {13, 61}, {97, 7}, {1, 1}, {201, 150}, {97, 61}, {33, 200}, {1000, 3}}) {
    const VImage scaled = Scaled(photo, size);
    EXPECT_EQ(scaled.width(), size.width);
    EXPECT_EQ(scaled.height(), size.height);
    EXPECT_EQ(scaled.format(), VIPS_FORMAT_UCHAR);
    EXPECT_EQ(scaled.interpretation(), VIPS_INTERPRETATION_sRGB);
  }
}

TEST(Geometry, ScalingKeepsPlainColoursAndMeans) {
  const Sheet plain = FromVips(Scaled(ToVips(Plain(64, 48, {200, 100, 7})), {20, 90}));
  EXPECT_EQ(testing::Difference(plain, Plain(20, 90, {200, 100, 7})), 0);
  // A grid of single black and white pixels becomes even grey.
  Sheet grid{64, 64, 1, {}};
  for (int i = 0; i < 64 * 64; ++i) grid.values.push_back((i + i / 64) % 2 * 255);
  const Sheet grey = FromVips(Scaled(ToVips(grid, VIPS_INTERPRETATION_B_W), {16, 16}));
  EXPECT_NEAR(grey.At(8, 8), 128, 3);
  const VImage deep = Scaled(ToVipsDeep(Plain(64, 48, {20000, 100, 7})), {20, 20});
  EXPECT_EQ(deep.format(), VIPS_FORMAT_USHORT);
  EXPECT_EQ(FromVips(deep).Pixel(5, 5), (std::vector<int>{20000, 100, 7}));
}

TEST(Geometry, TransparentPixelsDoNotBleed) {
  Sheet half{40, 10, 4, {}};
  for (int i = 0; i < 400; ++i) {
    const bool clear = i % 40 < 20;
    for (const int value : {clear ? 255 : 10, clear ? 0 : 200, clear ? 255 : 10, clear ? 0 : 255})
      half.values.push_back(value);
  }
  const Sheet scaled = FromVips(Scaled(ToVips(half), {20, 5}));
  for (int x = 0; x < 20; ++x) {
    if (scaled.At(x, 2, 3) < 32) continue;
    EXPECT_NEAR(scaled.At(x, 2, 0), 10, 4) << x;
    EXPECT_NEAR(scaled.At(x, 2, 1), 200, 4) << x;
  }
  EXPECT_EQ(scaled.Pixel(19, 2), (std::vector<int>{10, 200, 10, 255}));
  EXPECT_EQ(scaled.At(0, 2, 3), 0);
}

TEST(Geometry, WindowShowsWhiteOutside) {
  const VImage image = ToVips({2, 2, 1, {1, 2, 3, 4}}, VIPS_INTERPRETATION_B_W);
  struct Case {
    base::Rect rect;
    Sheet expected;
  };
  const Case cases[] = {
      {{0, 0, 2, 2}, {2, 2, 1, {1, 2, 3, 4}}},         {{1, 0, 1, 2}, {1, 2, 1, {2, 4}}},
      {{-1, -1, 2, 2}, {2, 2, 1, {255, 255, 255, 1}}}, {{1, 1, 2, 2}, {2, 2, 1, {4, 255, 255, 255}}},
      {{-1, 0, 4, 1}, {4, 1, 1, {255, 1, 2, 255}}},    {{5, 5, 2, 1}, {2, 1, 1, {255, 255}}},
      {{-9, -9, 2, 1}, {2, 1, 1, {255, 255}}},
  };
  for (const Case& c : cases) EXPECT_EQ(FromVips(CropOrPad(image, c.rect, base::kWhite)), c.expected);
  EXPECT_EQ(FromVips(CropOrPad(ToVips(Plain(1, 1, {1, 2, 3, 4})), {0, 0, 2, 1}, base::kWhite)),
            (Sheet{2, 1, 4, {1, 2, 3, 4, 255, 255, 255, 255}}));
  EXPECT_EQ(
      FromVips(CropOrPad(ToVips(Plain(1, 1, {1, 2, 3, 4}), VIPS_INTERPRETATION_CMYK), {0, 0, 2, 1}, base::kWhite)),
      (Sheet{2, 1, 4, {1, 2, 3, 4, 0, 0, 0, 0}}));
}

TEST(Colours, SamplesOfAColour) {
  const base::Colour colour{0x302010};  // red 16, green 32, blue 48
  EXPECT_EQ(SamplesOf(ToVips(Plain(1, 1, {0, 0, 0})), colour), (std::vector<double>{16, 32, 48}));
  EXPECT_EQ(SamplesOf(ToVips(Plain(1, 1, {0, 0, 0, 0})), colour), (std::vector<double>{16, 32, 48, 255}));
  EXPECT_EQ(SamplesOf(ToVips(Plain(1, 1, {0, 0, 0, 0}), VIPS_INTERPRETATION_CMYK), colour),
            (std::vector<double>{32, 16, 0, 207}));
  EXPECT_EQ(SamplesOf(ToVipsDeep(Plain(1, 1, {0, 0, 0})), base::kWhite), (std::vector<double>{65535, 65535, 65535}));
}

TEST(Colours, EightBitsAreTheUpperHalf) {
  EXPECT_EQ(FromVips(EightBit(ToVipsDeep({1, 1, 3, {65535, 257 * 100, 255}}))), (Sheet{1, 1, 3, {255, 100, 0}}));
}

TEST(Colours, FlattenedLiesOnTheColour) {
  const VImage image = ToVips({3, 1, 4, {10, 20, 30, 255, 10, 20, 30, 0, 0, 100, 200, 51}});
  // A fifth of (0, 100, 200) and four fifths of white.
  EXPECT_LE(testing::Difference(FromVips(Flattened(image, base::kWhite)),
                                {3, 1, 3, {10, 20, 30, 255, 255, 255, 204, 224, 244}}),
            1);
  EXPECT_EQ(FromVips(Flattened(image, kRed)).Pixel(1, 0), (std::vector<int>{255, 0, 0}));
}

TEST(Colours, GreyHasTheGivenWeights) {
  const Sheet colours{5, 1, 3, {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255, 10, 20, 30}};
  // 76.245, 149.685, 29.07, 255, 18.15
  EXPECT_EQ(FromVips(GreyPicture({ToVips(colours), {}}).pixels), (Sheet{5, 1, 1, {76, 150, 29, 255, 18}}));
  const Picture clear = GreyPicture({ToVips({1, 1, 4, {255, 0, 0, 7}}), {}});
  EXPECT_EQ(FromVips(clear.pixels), (Sheet{1, 1, 2, {76, 7}}));
  const Picture deep = GreyPicture({ToVipsDeep({1, 1, 3, {65535, 0, 0}}), {}});
  EXPECT_EQ(FromVips(deep.pixels), (Sheet{1, 1, 1, {19595}}));
}

TEST(Colours, DisplayedUsesTheProfile) {
  const std::string wide = testing::ProfileFor("RGB ");
  const VImage green = ToVips({1, 1, 3, {40, 160, 40}});
  const Picture shown = Displayed({green, {.profile = wide}});
  EXPECT_TRUE(shown.tags.profile.empty());
  const Sheet pixel = FromVips(shown.pixels);
  // A green of the wide space is a stronger one of sRGB.
  EXPECT_LT(pixel.At(0, 0, 0), 30);
  EXPECT_GT(pixel.At(0, 0, 1), 160);
  EXPECT_EQ(FromVips(Displayed({green, {}}).pixels).Pixel(0, 0), (std::vector<int>{40, 160, 40}));
  const Sheet clear = FromVips(Displayed({ToVips({1, 1, 4, {40, 160, 40, 99}}), {.profile = wide}}).pixels);
  EXPECT_EQ(clear.Pixel(0, 0), (std::vector<int>{pixel.At(0, 0, 0), pixel.At(0, 0, 1), pixel.At(0, 0, 2), 99}));
}

TEST(Colours, InkWithoutProfileIsAGenericPress) {
  const Sheet shown = FromVips(
      Displayed({ToVips({3, 1, 4, {0, 0, 0, 0, 0, 0, 0, 255, 255, 0, 0, 0}}, VIPS_INTERPRETATION_CMYK), {}}).pixels);
  EXPECT_EQ(shown.Pixel(0, 0), (std::vector<int>{255, 255, 255}));
  for (int band = 0; band < 3; ++band) EXPECT_LT(shown.At(1, 0, band), 60) << band;
  EXPECT_LT(shown.At(2, 0, 0), 60);
  EXPECT_GT(shown.At(2, 0, 2), 180);
}

TEST(Colours, ProfilesMustBeForTheKind) {
  const VImage rgb = ToVips({1, 1, 3, {1, 2, 3}});
  const VImage grey = ToVips({1, 1, 1, {1}}, VIPS_INTERPRETATION_B_W);
  EXPECT_TRUE(ProfileFits(testing::ProfileFor("RGB "), rgb));
  EXPECT_FALSE(ProfileFits(testing::ProfileFor("RGB "), grey));
  EXPECT_TRUE(ProfileFits(testing::ProfileFor("GRAY"), grey));
  EXPECT_FALSE(ProfileFits("short", rgb));
  EXPECT_FALSE(ProfileFits(std::string(500, 'x'), rgb));
}

}  // namespace
}  // namespace quillon::imaging
