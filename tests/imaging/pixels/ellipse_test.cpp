// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/ellipse.h"

#include <gtest/gtest.h>

#include "imaging/pictures.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging::testing {
namespace {

TEST(EllipseRow, OfACircleByHand) {
  // Radius 5 about (5, 5): 3² + 4² lies on the line.
  const base::Size circle{10, 10};
  EXPECT_EQ(EllipseRow(circle, 0), (Span{5, 6}));
  EXPECT_EQ(EllipseRow(circle, 1), (Span{2, 9}));
  EXPECT_EQ(EllipseRow(circle, 2), (Span{1, 10}));
  EXPECT_EQ(EllipseRow(circle, 5), (Span{0, 10}));
  EXPECT_EQ(EllipseRow(circle, 9), (Span{2, 9}));
}

TEST(EllipseRow, OfAnEllipseByHand) {
  // a = 4, b = 2 about (4, 2): in row 1 a column is inside up to 4 x sqrt(3 / 4) = 3.46 from the middle.
  EXPECT_EQ(EllipseRow({8, 4}, 0), (Span{4, 5}));
  EXPECT_EQ(EllipseRow({8, 4}, 1), (Span{1, 8}));
  EXPECT_EQ(EllipseRow({8, 4}, 2), (Span{0, 8}));
  EXPECT_EQ(EllipseRow({8, 4}, 3), (Span{1, 8}));
}

TEST(EllipseRow, IsWhatTheFormulaSaysAtEveryPixel) {
  for (int width = 1; width <= 41; ++width) {
    for (int height = 1; height <= 29; ++height) {
      for (int row = 0; row < height; ++row) {
        const Span span = EllipseRow({width, height}, row);
        for (int column = 0; column < width; ++column) {
          const int across = (2 * column - width) * height;
          const int down = (2 * row - height) * width;
          const bool inside = across * across + down * down <= width * width * height * height;
          ASSERT_EQ(inside, column >= span.first && column < span.end)
              << width << " x " << height << " at " << column << ", " << row;
        }
      }
    }
  }
}

TEST(EllipseRow, OfALargeShapeIsExact) {
  const base::Size size{46340, 46340};
  EXPECT_EQ(EllipseRow(size, 0), (Span{23170, 23171}));
  EXPECT_EQ(EllipseRow(size, 23170), (Span{0, 46340}));
}

class CutEllipseTest : public ServicesTest {
 protected:
  Image Of(const Sheet& sheet, VipsInterpretation kind = VIPS_INTERPRETATION_sRGB) {
    auto data = std::make_unique<ImageData>();
    data->picture.pixels = ToVips(sheet, kind);
    data->picture.tags.dpi = 300;
    return Image(std::move(data));
  }
};

TEST_F(CutEllipseTest, KeepsPixelsInsideAndNothingOutside) {
  const Sheet photo = PhotoLike(40, 30, 3);
  Image out;
  ASSERT_TRUE(CutEllipse(Of(photo), {5, 3, 20, 16}, {}, out));
  const Sheet cut = PixelsOf(out);
  ASSERT_EQ(cut.width, 20);
  ASSERT_EQ(cut.height, 16);
  ASSERT_EQ(cut.bands, 4);
  for (int y = 0; y < 16; ++y) {
    const Span span = EllipseRow({20, 16}, y);
    for (int x = 0; x < 20; ++x) {
      std::vector<int> expected = {0, 0, 0, 0};
      if (x >= span.first && x < span.end) {
        expected = photo.Pixel(5 + x, 3 + y);
        expected.push_back(255);
      }
      EXPECT_EQ(cut.Pixel(x, y), expected);
    }
  }
  EXPECT_EQ(services.GetImageResolution(out), 300);
}

TEST_F(CutEllipseTest, IsTransparentOutsideThePicture) {
  Image out;
  ASSERT_TRUE(CutEllipse(Of(Plain(10, 10, {1, 2, 3})), {-5, -5, 10, 10}, {}, out));
  EXPECT_EQ(PixelsOf(out).Pixel(4, 4), (std::vector<int>{0, 0, 0, 0}));
  EXPECT_EQ(PixelsOf(out).Pixel(5, 5), (std::vector<int>{1, 2, 3, 255}));
  ASSERT_TRUE(CutEllipse(Of(Plain(10, 10, {1, 2, 3})), {100, 100, 4, 4}, {}, out));
  EXPECT_EQ(PixelsOf(out).Pixel(2, 2), (std::vector<int>{0, 0, 0, 0}));
}

TEST_F(CutEllipseTest, KeepsTransparencyAndTurnsGreyToRgb) {
  Image out;
  ASSERT_TRUE(CutEllipse(Of(Plain(6, 6, {9, 8, 7, 100})), {0, 0, 6, 6}, {}, out));
  EXPECT_EQ(PixelsOf(out).Pixel(3, 3), (std::vector<int>{9, 8, 7, 100}));
  ASSERT_TRUE(CutEllipse(Of(Plain(6, 6, {50}), VIPS_INTERPRETATION_B_W), {0, 0, 6, 6}, {}, out));
  EXPECT_EQ(PixelsOf(out).Pixel(3, 3), (std::vector<int>{50, 50, 50, 255}));
}

TEST_F(CutEllipseTest, RefusesEmptyAndHugeBoxes) {
  Image out;
  EXPECT_FALSE(CutEllipse(Of(Plain(6, 6, {1, 2, 3})), {0, 0, 0, 5}, {}, out));
  EXPECT_EQ(CutEllipse(Of(Plain(6, 6, {1, 2, 3})), {0, 0, 100000, 100000}, {}, out).GetProblem(),
            host::Problem::TooLarge);
  EXPECT_FALSE(CutEllipse(Image(), {0, 0, 5, 5}, {}, out));
}

}  // namespace
}  // namespace quillon::imaging::testing
