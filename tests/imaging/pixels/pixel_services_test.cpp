// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "imaging/pictures.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using vips::VImage;

class PixelServices : public ServicesTest {
 protected:
  static Image Make(const VImage& pixels, const PictureTags& tags = {}) {
    auto data = std::make_unique<ImageData>();
    data->picture = {pixels, tags};
    return Image(std::move(data));
  }
  static const PictureTags& TagsOf(const Image& image) { return image.Data()->picture.tags; }
};

TEST_F(PixelServices, NoImageFailsEverywhere) {
  Image none;
  Image canvas = Make(ToVips(Plain(2, 2, {1, 2, 3})));
  EXPECT_FALSE(services.CloneImage(none, canvas));
  EXPECT_FALSE(services.RotateImage(none, 10, base::kWhite));
  EXPECT_FALSE(services.ResampleImage(none, 1, 1));
  EXPECT_FALSE(services.ConvertImageToGrayMode(none));
  EXPECT_FALSE(services.Invert(none));
  EXPECT_FALSE(services.Threshold(none, 128));
  EXPECT_FALSE(services.CutImage(none, {0, 0, 1, 1}));
  EXPECT_FALSE(services.DrawImage(none, canvas, {0, 0, 1, 1}));
  EXPECT_FALSE(services.DrawImage(canvas, none, {0, 0, 1, 1}));
  EXPECT_FALSE(services.SaveImageToPngFile(none, Path("a.png")));
  EXPECT_FALSE(services.SaveByType(none, Path("a.png"), "png", {}));
  EXPECT_EQ(services.Invert(none).Why(), "没有图片");
  EXPECT_EQ(services.GetImageWidth(none), 0);
  EXPECT_EQ(services.GetImageHeight(none), 0);
  EXPECT_EQ(services.GetImageResolution(none), 0);
  services.SetImageResolution(none, 300);
  services.DisposeImage(none);
  EXPECT_TRUE(none.Empty());
  EXPECT_FALSE(world.folder.Exists("a.png"));
}

TEST_F(PixelServices, ReturnsSizeAndResolution) {
  Image image = Make(ToVips(Plain(7, 5, {1, 2, 3})));
  EXPECT_EQ(services.GetImageWidth(image), 7);
  EXPECT_EQ(services.GetImageHeight(image), 5);
  EXPECT_EQ(services.GetImageResolution(image), 0);
  services.SetImageResolution(image, 300);
  EXPECT_EQ(services.GetImageResolution(image), 300);
  services.SetImageResolution(image, 0);
  EXPECT_EQ(services.GetImageResolution(image), 300);
  services.DisposeImage(image);
  EXPECT_TRUE(image.Empty());
}

TEST_F(PixelServices, ACloneStandsAlone) {
  Image image = Make(ToVips(Plain(4, 4, {1, 2, 3})), {.dpi = 72});
  Image clone;
  ASSERT_TRUE(services.CloneImage(image, clone));
  Image stamp = Make(ToVips(Plain(1, 1, {9, 9, 9})));
  ASSERT_TRUE(services.DrawImage(image, stamp, {0, 0, 2, 2}));
  services.SetImageResolution(image, 300);
  EXPECT_EQ(PixelsOf(clone), Plain(4, 4, {1, 2, 3}));
  EXPECT_EQ(services.GetImageResolution(clone), 72);
  ASSERT_TRUE(services.DrawImage(clone, stamp, {3, 3, 1, 1}));
  EXPECT_EQ(PixelsOf(image).Pixel(3, 3), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(PixelsOf(image).Pixel(0, 0), (std::vector<int>{9, 9, 9}));
}

TEST_F(PixelServices, ACutOfACanvasDoesNotSeeLaterDrawing) {
  Image canvas;
  ASSERT_TRUE(services.NewCanvas({8, 8}, base::kWhite, canvas));
  Image cut;
  ASSERT_TRUE(services.CloneImage(canvas, cut));
  ASSERT_TRUE(services.CutImage(cut, {2, 2, 4, 4}));
  ASSERT_TRUE(services.DrawImage(canvas, Make(ToVips(Plain(1, 1, {0, 0, 0}))), {0, 0, 8, 8}));
  EXPECT_EQ(PixelsOf(cut), Plain(4, 4, {255, 255, 255}));
  EXPECT_EQ(PixelsOf(canvas), Plain(8, 8, {0, 0, 0}));
}

TEST_F(PixelServices, RotationResetsTheOrientationAndKeepsTheRest) {
  const std::string profile = ProfileFor("RGB ");
  Image image = Make(ToVips(Plain(10, 4, {1, 2, 3})), {.profile = profile, .orientation = 6, .dpi = 254});
  ASSERT_TRUE(services.RotateImage(image, 90, base::kWhite));
  EXPECT_EQ(services.GetImageWidth(image), 4);
  EXPECT_EQ(TagsOf(image).orientation, 1);
  EXPECT_EQ(TagsOf(image).dpi, 254);
  EXPECT_EQ(TagsOf(image).profile, profile);
  ASSERT_TRUE(services.RotateImage(image, 30, base::Colour{0x0000FF}));
  EXPECT_EQ(PixelsOf(image).Pixel(0, 0), (std::vector<int>{255, 0, 0}));
}

TEST_F(PixelServices, ResampleAcceptsAnySizeFromOne) {
  Image image = Make(ToVips(PhotoLike(40, 30, 3)), {.orientation = 3});
  EXPECT_FALSE(services.ResampleImage(image, 0, 5));
  EXPECT_FALSE(services.ResampleImage(image, 5, -1));
  EXPECT_EQ(services.GetImageWidth(image), 40);
  ASSERT_TRUE(services.ResampleImage(image, 17, 23));
  EXPECT_EQ(services.GetImageWidth(image), 17);
  EXPECT_EQ(services.GetImageHeight(image), 23);
  EXPECT_EQ(TagsOf(image).orientation, 3);
}

TEST_F(PixelServices, ResultsAboveTheLimitsAreRefused) {
  Limits limits;
  limits.side = 100;
  limits.memory = 3000;
  Services tight(world.files, world.host.programFolder, {}, limits);
  Image image = Make(ToVips(PhotoLike(40, 20, 3)));
  EXPECT_EQ(tight.ResampleImage(image, 101, 1).GetProblem(), host::Problem::TooLarge);
  EXPECT_EQ(tight.ResampleImage(image, 40, 40).GetProblem(), host::Problem::TooLarge);
  EXPECT_EQ(tight.RotateImage(image, 45, base::kWhite).GetProblem(), host::Problem::TooLarge);
  EXPECT_EQ(tight.CutImage(image, {0, 0, 101, 1}).GetProblem(), host::Problem::TooLarge);
  EXPECT_EQ(tight.NewCanvas({101, 1}, base::kWhite, image).GetProblem(), host::Problem::TooLarge);
  EXPECT_EQ(PixelsOf(image), PhotoLike(40, 20, 3));
}

TEST_F(PixelServices, GreyKeepsAlphaAndDropsTheProfile) {
  Image image = Make(ToVips({1, 1, 4, {255, 0, 0, 7}}));
  ASSERT_TRUE(services.ConvertImageToGrayMode(image));
  EXPECT_EQ(PixelsOf(image), (Sheet{1, 1, 2, {76, 7}}));
  Image inks = Make(ToVips({1, 1, 4, {0, 0, 0, 0}}, VIPS_INTERPRETATION_CMYK), {.profile = ProfileFor("CMYK")});
  ASSERT_TRUE(services.ConvertImageToGrayMode(inks));
  EXPECT_EQ(PixelsOf(inks), (Sheet{1, 1, 1, {255}}));
  EXPECT_EQ(TagsOf(inks).profile, "");
}

TEST_F(PixelServices, InvertTurnsColoursOnly) {
  Image image = Make(ToVips({1, 1, 3, {0, 100, 255}}), {.profile = ProfileFor("RGB ")});
  ASSERT_TRUE(services.Invert(image));
  EXPECT_EQ(PixelsOf(image), (Sheet{1, 1, 3, {255, 155, 0}}));
  EXPECT_NE(TagsOf(image).profile, "");
  Image clear = Make(ToVips({1, 1, 4, {0, 100, 255, 30}}));
  ASSERT_TRUE(services.Invert(clear));
  EXPECT_EQ(PixelsOf(clear), (Sheet{1, 1, 4, {255, 155, 0, 30}}));
  Image deep = Make(ToVipsDeep({1, 1, 1, {1000}}, VIPS_INTERPRETATION_GREY16));
  ASSERT_TRUE(services.Invert(deep));
  EXPECT_EQ(PixelsOf(deep), (Sheet{1, 1, 1, {64535}}));
  // CMYK is inverted as displayed: white paper becomes black.
  Image inks = Make(ToVips({1, 1, 4, {0, 0, 0, 0}}, VIPS_INTERPRETATION_CMYK));
  ASSERT_TRUE(services.Invert(inks));
  EXPECT_EQ(PixelsOf(inks), (Sheet{1, 1, 3, {0, 0, 0}}));
}

TEST_F(PixelServices, ThresholdMakesTheLevelItselfWhite) {
  Image image = Make(ToVips({4, 1, 1, {0, 127, 128, 255}}, VIPS_INTERPRETATION_B_W));
  ASSERT_TRUE(services.Threshold(image, 128));
  EXPECT_EQ(PixelsOf(image), (Sheet{4, 1, 1, {0, 0, 255, 255}}));
  // Red is grey 76; a transparent pixel counts as white; of 16 bits the upper 8 count.
  Image colours = Make(ToVips({2, 1, 4, {255, 0, 0, 255, 0, 0, 0, 0}}));
  ASSERT_TRUE(services.Threshold(colours, 77));
  EXPECT_EQ(PixelsOf(colours), (Sheet{2, 1, 1, {0, 255}}));
  Image deep = Make(ToVipsDeep({2, 1, 1, {128 * 256, 128 * 256 - 1}}, VIPS_INTERPRETATION_GREY16));
  ASSERT_TRUE(services.Threshold(deep, 128));
  EXPECT_EQ(PixelsOf(deep), (Sheet{2, 1, 1, {255, 0}}));
}

TEST_F(PixelServices, CutImageIsWhiteAndOpaqueOutside) {
  Image image = Make(ToVips({1, 1, 4, {1, 2, 3, 4}}));
  EXPECT_FALSE(services.CutImage(image, {0, 0, 0, 1}));
  EXPECT_FALSE(services.CutImage(image, {0, 0, 1, -1}));
  ASSERT_TRUE(services.CutImage(image, {-1, 0, 2, 1}));
  EXPECT_EQ(PixelsOf(image), (Sheet{2, 1, 4, {255, 255, 255, 255, 1, 2, 3, 4}}));
}

TEST_F(PixelServices, NewCanvasIsPlain) {
  Image canvas;
  EXPECT_FALSE(services.NewCanvas({0, 5}, base::kWhite, canvas));
  ASSERT_TRUE(services.NewCanvas({3, 2}, base::Colour{0x302010}, canvas));
  EXPECT_EQ(PixelsOf(canvas), Plain(3, 2, {16, 32, 48}));
}

TEST_F(PixelServices, DrawImageScalesPlacesAndClips) {
  const Image red = Make(ToVips(Plain(2, 2, {255, 0, 0})));
  struct Case {
    base::Rect drawn;
    base::Rect covered;
  };
  const Case cases[] = {{{1, 1, 2, 2}, {1, 1, 2, 2}},   {{0, 0, 6, 4}, {0, 0, 6, 4}},   {{-1, -1, 3, 3}, {0, 0, 2, 2}},
                        {{4, 2, 10, 10}, {4, 2, 2, 2}}, {{-5, 1, 20, 1}, {0, 1, 6, 1}}, {{6, 0, 2, 2}, {0, 0, 0, 0}},
                        {{-9, -9, 3, 3}, {0, 0, 0, 0}}};
  for (const Case& c : cases) {
    Image canvas;
    ASSERT_TRUE(services.NewCanvas({6, 4}, base::kWhite, canvas));
    ASSERT_TRUE(services.DrawImage(canvas, red, c.drawn));
    const Sheet drawn = PixelsOf(canvas);
    for (int y = 0; y < 4; ++y) {
      for (int x = 0; x < 6; ++x) {
        const bool inside = x >= c.covered.left && x < c.covered.left + c.covered.width && y >= c.covered.top &&
                            y < c.covered.top + c.covered.height;
        EXPECT_EQ(drawn.Pixel(x, y), inside ? (std::vector<int>{255, 0, 0}) : (std::vector<int>{255, 255, 255}))
            << c.drawn.left << " " << x << " " << y;
      }
    }
  }
  Image canvas;
  ASSERT_TRUE(services.NewCanvas({6, 4}, base::kWhite, canvas));
  EXPECT_FALSE(services.DrawImage(canvas, red, {0, 0, 0, 4}));
}

TEST_F(PixelServices, DrawImageLaysTransparencyOver) {
  Image canvas;
  ASSERT_TRUE(services.NewCanvas({3, 1}, base::Colour{0xFF0000}, canvas));
  const Image veil = Make(ToVips({3, 1, 4, {255, 0, 0, 255, 255, 0, 0, 0, 255, 0, 0, 51}}));
  ASSERT_TRUE(services.DrawImage(canvas, veil, {0, 0, 3, 1}));
  EXPECT_EQ(PixelsOf(canvas), (Sheet{3, 1, 3, {255, 0, 0, 0, 0, 255, 51, 0, 204}}));
  // On a transparent canvas.
  Image clear = Make(ToVips({2, 1, 4, {0, 0, 0, 0, 0, 0, 255, 255}}));
  ASSERT_TRUE(services.DrawImage(clear, Make(ToVips(Plain(2, 1, {255, 0, 0, 0}))), {0, 0, 2, 1}));
  EXPECT_EQ(PixelsOf(clear).At(0, 0, 3), 0);
  EXPECT_EQ(PixelsOf(clear).Pixel(1, 0), (std::vector<int>{0, 0, 255, 255}));
  ASSERT_TRUE(services.DrawImage(clear, Make(ToVips(Plain(1, 1, {9, 8, 7}))), {0, 0, 1, 1}));
  EXPECT_EQ(PixelsOf(clear).Pixel(0, 0), (std::vector<int>{9, 8, 7, 255}));
}

TEST_F(PixelServices, DrawImageConvertsToTheCanvasColours) {
  Image canvas;
  ASSERT_TRUE(services.NewCanvas({1, 1}, base::kWhite, canvas));
  ASSERT_TRUE(services.DrawImage(canvas, Make(ToVips({1, 1, 1, {77}}, VIPS_INTERPRETATION_B_W)), {0, 0, 1, 1}));
  EXPECT_EQ(PixelsOf(canvas), (Sheet{1, 1, 3, {77, 77, 77}}));
  ASSERT_TRUE(services.DrawImage(canvas, Make(ToVipsDeep({1, 1, 3, {257, 514, 65535}})), {0, 0, 1, 1}));
  EXPECT_EQ(PixelsOf(canvas), (Sheet{1, 1, 3, {1, 2, 255}}));
  ASSERT_TRUE(
      services.DrawImage(canvas, Make(ToVips({1, 1, 4, {0, 0, 0, 0}}, VIPS_INTERPRETATION_CMYK)), {0, 0, 1, 1}));
  EXPECT_EQ(PixelsOf(canvas), (Sheet{1, 1, 3, {255, 255, 255}}));
  const std::string wide = ProfileFor("RGB ");
  const Sheet green{1, 1, 3, {100, 160, 100}};
  ASSERT_TRUE(services.DrawImage(canvas, Make(ToVips(green), {.profile = wide}), {0, 0, 1, 1}));
  const Sheet shown = PixelsOf(canvas);
  EXPECT_LT(shown.At(0, 0, 0), 95);
  // And back: what sRGB calls this is the wide space's first colour again.
  Image wideCanvas = Make(ToVips({1, 1, 3, {0, 0, 0}}), {.profile = wide});
  ASSERT_TRUE(services.DrawImage(wideCanvas, canvas, {0, 0, 1, 1}));
  EXPECT_LE(Difference(PixelsOf(wideCanvas), green), 2);
  EXPECT_EQ(TagsOf(wideCanvas).profile, wide);
  // White on a CMYK canvas is no ink.
  Image inks = Make(ToVips({1, 1, 4, {9, 9, 9, 9}}, VIPS_INTERPRETATION_CMYK));
  ASSERT_TRUE(services.DrawImage(inks, Make(ToVips({1, 1, 3, {255, 255, 255}})), {0, 0, 1, 1}));
  EXPECT_LE(Difference(PixelsOf(inks), {1, 1, 4, {0, 0, 0, 0}}), 1);
  // A canvas with 16 bits keeps them.
  Image deep = Make(ToVipsDeep({1, 1, 3, {0, 0, 0}}));
  ASSERT_TRUE(services.DrawImage(deep, Make(ToVips({1, 1, 3, {1, 2, 255}})), {0, 0, 1, 1}));
  EXPECT_EQ(PixelsOf(deep), (Sheet{1, 1, 3, {257, 514, 65535}}));
}

TEST_F(PixelServices, DrawingOnACanvasOfOneOwnerCopiesNothing) {
  Image canvas;
  ASSERT_TRUE(services.NewCanvas({1000, 1000}, base::kWhite, canvas));
  const Image dot = Make(ToVips(Plain(1, 1, {0, 0, 0})));
  const void* before = vips_image_get_data(canvas.Data()->picture.pixels.get_image());
  for (int i = 0; i < 5; ++i) ASSERT_TRUE(services.DrawImage(canvas, dot, {i, 0, 1, 1}));
  EXPECT_EQ(vips_image_get_data(canvas.Data()->picture.pixels.get_image()), before);
}

// Every kind of picture comes out of the lane unchanged.
TEST_F(PixelServices, TheClipBoardLaneKeepsEverything) {
  Image out;
  EXPECT_EQ(services.CreateImageFromClipBoard(out).GetProblem(), host::Problem::Missing);
  EXPECT_TRUE(out.Empty());
  const VImage kinds[] = {
      ToVips(PhotoLike(31, 17, 3)),
      ToVips(PhotoLike(31, 17, 4)),
      ToVips(PhotoLike(31, 17, 1), VIPS_INTERPRETATION_B_W),
      ToVips(PhotoLike(31, 17, 2), VIPS_INTERPRETATION_B_W),
      ToVips(PhotoLike(31, 17, 4), VIPS_INTERPRETATION_CMYK),
      ToVipsDeep(PhotoLike(31, 17, 3, 65535)),
      ToVipsDeep(PhotoLike(31, 17, 1, 65535), VIPS_INTERPRETATION_GREY16),
  };
  const PictureTags tags{.profile = ProfileFor("RGB "), .exif = ExifWithThumbnail(8), .orientation = 8, .dpi = 254};
  for (const VImage& kind : kinds) {
    auto data = std::make_unique<ImageData>();
    data->picture = {kind, tags};
    const Image image(std::move(data));
    ASSERT_TRUE(services.PutImageOnClipBoard(image));
    ASSERT_TRUE(services.CreateImageFromClipBoard(out));
    const Picture& taken = out.Data()->picture;
    EXPECT_EQ(FromVips(taken.pixels), FromVips(kind));
    EXPECT_EQ(taken.pixels.interpretation(), kind.interpretation());
    EXPECT_EQ(taken.pixels.format(), kind.format());
    EXPECT_EQ(taken.tags.profile, tags.profile);
    EXPECT_EQ(taken.tags.exif, tags.exif);
    EXPECT_EQ(taken.tags.orientation, 8);
    EXPECT_EQ(taken.tags.dpi, 254);
  }
  // The picture can be processed like any other.
  ASSERT_TRUE(services.RotateImage(out, 7.3, base::kWhite));
  EXPECT_FALSE(services.PutImageOnClipBoard(Image()));
}

TEST_F(PixelServices, ATornLaneIsRefused) {
  Image image;
  ASSERT_TRUE(services.NewCanvas({9, 5}, base::kWhite, image));
  ASSERT_TRUE(services.PutImageOnClipBoard(image));
  const std::string lane = world.host.programFolder + "/ClipBoard.lane";
  std::string whole;
  ASSERT_TRUE(world.host.files.ReadFile(lane, whole));
  Image out;
  for (std::size_t size = 0; size < whole.size(); size += 7) {
    ASSERT_TRUE(world.host.files.Save(lane, whole.substr(0, size)));
    EXPECT_FALSE(services.CreateImageFromClipBoard(out));
  }
  for (std::size_t at = 0; at < 80; ++at) {
    std::string odd = whole;
    odd[at] = static_cast<char>(odd[at] ^ 0x81);
    ASSERT_TRUE(world.host.files.Save(lane, odd));
    static_cast<void>(services.CreateImageFromClipBoard(out));
  }
  ASSERT_TRUE(world.host.files.Save(lane, whole + "x"));
  EXPECT_EQ(services.CreateImageFromClipBoard(out).GetProblem(), host::Problem::Damaged);
}

TEST_F(PixelServices, TagsOfAPictureGoToWhatIsMadeOfIt) {
  Image canvas;
  Image source;
  ASSERT_TRUE(services.NewCanvas({4, 4}, base::kWhite, canvas));
  ASSERT_TRUE(services.NewCanvas({4, 4}, base::kWhite, source));
  source.Data()->picture.tags = {.profile = "p", .exif = ExifWithThumbnail(6), .orientation = 6, .dpi = 254};
  services.CopyTags(canvas, source);
  const PictureTags& tags = canvas.Data()->picture.tags;
  EXPECT_EQ(tags.exif, ExifWithThumbnail(6));
  EXPECT_EQ(tags.orientation, 6);
  EXPECT_EQ(tags.dpi, 254);
  EXPECT_EQ(tags.profile, "");  // its colours are its own
  services.CopyTags(canvas, Image());
  EXPECT_EQ(tags.dpi, 254);
}

}  // namespace
}  // namespace quillon::imaging
