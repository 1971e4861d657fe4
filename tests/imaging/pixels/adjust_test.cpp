// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/adjust.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "imaging/pictures.h"
#include "imaging/pixels/picture.h"
#include "imaging/pixels/raw_pixels.h"
#include "imaging/pixels/text_mask.h"

namespace quillon::imaging::testing {
namespace {

Image Of(const Sheet& sheet, VipsInterpretation kind = VIPS_INTERPRETATION_sRGB) {
  auto data = std::make_unique<ImageData>();
  data->picture.pixels = ToVips(sheet, kind);
  return Image(std::move(data));
}

TEST(Adjust, MovesSamplesByTheFormula) {
  struct Case {
    int brightness;
    int contrast;
    std::vector<int> expected;
  };
  const Case cases[] = {
      {0, 0, {0, 100, 128, 255}},     {20, 0, {51, 151, 179, 255}},  {-20, 0, {0, 49, 77, 204}},
      {0, 50, {0, 86, 128, 255}},     {0, -50, {64, 114, 128, 192}}, {0, -100, {128, 128, 128, 128}},
      {100, 0, {255, 255, 255, 255}}, {-500, 0, {0, 0, 0, 0}},
  };
  for (const Case& one : cases) {
    Image image = Of({4, 1, 1, {0, 100, 128, 255}}, VIPS_INTERPRETATION_B_W);
    ASSERT_TRUE(AdjustBrightnessAndContrast(image, one.brightness, one.contrast));
    EXPECT_EQ(PixelsOf(image).values, one.expected) << one.brightness << ", " << one.contrast;
  }
}

TEST(Adjust, LeavesTransparencyAlone) {
  Image image = Of(Plain(2, 2, {10, 20, 30, 77}));
  ASSERT_TRUE(AdjustBrightnessAndContrast(image, 100, 0));
  EXPECT_EQ(PixelsOf(image).Pixel(0, 0), (std::vector<int>{255, 255, 255, 77}));
}

TEST(Sharpen, KeepsFlatPartsAndStressesEdges) {
  Image image = Of({4, 1, 1, {100, 100, 120, 120}}, VIPS_INTERPRETATION_B_W);
  ASSERT_TRUE(Sharpen(image));
  // At the edge: (16 x 100 - 5 x 100 - 3 x 120) / 8 = 92.5 and its mirror.
  const Sheet sharp = PixelsOf(image);
  EXPECT_EQ(sharp.values[0], 100);
  EXPECT_NEAR(sharp.values[1], 92.5, 1);
  EXPECT_NEAR(sharp.values[2], 127.5, 1);
  EXPECT_EQ(sharp.values[3], 120);
}

TEST(RawPixels, GoThereAndBack) {
  const std::vector<unsigned char> rgb = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  Image image;
  ASSERT_TRUE(ImageOfRgb({2, 2}, rgb, 200, image));
  EXPECT_EQ(PixelsOf(image).Pixel(1, 1), (std::vector<int>{10, 11, 12}));
  EXPECT_EQ(image.Data()->picture.tags.dpi, 200);
  EXPECT_EQ(PixelsOf(image).values, std::vector<int>(rgb.begin(), rgb.end()));
  EXPECT_FALSE(ImageOfRgb({2, 3}, rgb, 0, image));
  EXPECT_FALSE(ImageOfRgb({0, 0}, {}, 0, image));
}

TEST(TextMask, CoversSomeOfItsArea) {
  TextMask mask;
  ASSERT_TRUE(DrawTextMask("客户名<&>+正面", 40, mask));
  EXPECT_GT(mask.size.width, 100);
  EXPECT_GT(mask.size.height, 20);
  ASSERT_EQ(mask.cover.size(), static_cast<std::size_t>(mask.size.width) * static_cast<unsigned>(mask.size.height));
  EXPECT_EQ(*std::max_element(mask.cover.begin(), mask.cover.end()), 255);
  EXPECT_EQ(*std::min_element(mask.cover.begin(), mask.cover.end()), 0);
  Image image;
  ASSERT_TRUE(ImageOfMask(mask, base::Colour{0x0000FF}, image));
  const std::vector<int> corner = PixelsOf(image).Pixel(0, 0);
  EXPECT_EQ(std::vector<int>(corner.begin(), corner.begin() + 3), (std::vector<int>{255, 0, 0}));
}

TEST(TextMask, AcceptsNamesThatAreNoText) {
  TextMask mask;
  EXPECT_TRUE(DrawTextMask("a\xFF\n\tb", 20, mask));
  EXPECT_FALSE(DrawTextMask("", 20, mask));
  EXPECT_FALSE(DrawTextMask(std::string(5000, 'a'), 20, mask));
}

}  // namespace
}  // namespace quillon::imaging::testing
