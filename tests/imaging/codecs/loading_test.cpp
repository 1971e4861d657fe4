// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <string>

#include "imaging/byte_text.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/jpeg_maker.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pictures.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using host::Problem;
using vips::VImage;

class Loading : public ServicesTest {
 protected:
  const PictureTags& TagsOf(const Image& image) { return image.Data()->picture.tags; }
  Sheet Loaded(const std::string& name) { return PixelsOf(Load(Path(name))); }
};

TEST(FormatOf, TheContentDecides) {
  using namespace std::string_view_literals;
  EXPECT_EQ(FormatOf("\xFF\xD8\xFF\xE0..."sv), Format::Jpeg);
  EXPECT_EQ(FormatOf("\x89PNG\r\n\x1A\n...."sv), Format::Png);
  EXPECT_EQ(FormatOf("GIF87a"sv), Format::Gif);
  EXPECT_EQ(FormatOf("GIF89a"sv), Format::Gif);
  EXPECT_EQ(FormatOf("II*\0"sv), Format::Tiff);
  EXPECT_EQ(FormatOf("MM\0*"sv), Format::Tiff);
  EXPECT_EQ(FormatOf("II+\0"sv), Format::Tiff);
  EXPECT_EQ(FormatOf("BM12"sv), Format::Bmp);
  EXPECT_EQ(FormatOf("8BPS"sv), Format::Psd);
  for (const std::string_view other : {""sv, "B"sv, "%PDF-1.4"sv, "GIF88a"sv, "RIFF....WEBP"sv, "<svg>"sv}) {
    EXPECT_EQ(FormatOf(other), Format::Unknown) << other;
  }
}

TEST_F(Loading, PngOfEveryKind) {
  struct Case {
    const char* name;
    Sheet sheet;
    bool deep;
    VipsInterpretation kind;
  };
  const Case cases[] = {
      {"grey", PhotoLike(21, 13, 1), false, VIPS_INTERPRETATION_B_W},
      {"grey and alpha", PhotoLike(21, 13, 2), false, VIPS_INTERPRETATION_B_W},
      {"rgb", PhotoLike(21, 13, 3), false, VIPS_INTERPRETATION_sRGB},
      {"rgb and alpha", PhotoLike(21, 13, 4), false, VIPS_INTERPRETATION_sRGB},
      {"deep grey", PhotoLike(21, 13, 1, 65535), true, VIPS_INTERPRETATION_GREY16},
      {"deep rgb", PhotoLike(21, 13, 3, 65535), true, VIPS_INTERPRETATION_RGB16},
      {"deep rgb and alpha", PhotoLike(21, 13, 4, 65535), true, VIPS_INTERPRETATION_RGB16},
  };
  for (const bool interlaced : {false, true}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.name);
      const VImage made = c.deep ? ToVipsDeep(c.sheet, c.kind) : ToVips(c.sheet, c.kind);
      made.pngsave(Path("a.png").c_str(), VImage::option()->set("interlace", interlaced));
      const Image image = Load(Path("a.png"));
      EXPECT_EQ(PixelsOf(image), c.sheet);
      EXPECT_EQ(image.Data()->picture.pixels.interpretation(), c.kind);
    }
  }
}

TEST_F(Loading, PngWithPaletteAndWithOneBit) {
  Sheet few{8, 4, 3, {}};
  for (int i = 0; i < 32; ++i) {
    for (const int value : {i % 4 * 60, 255 - i % 4 * 60, i % 2 * 255}) few.values.push_back(value);
  }
  ToVips(few).pngsave(Path("palette.png").c_str(), VImage::option()->set("palette", true)->set("bitdepth", 4));
  ASSERT_EQ(world.folder.Read("palette.png")[25], 3) << "not a palette picture";
  EXPECT_LE(Difference(Loaded("palette.png"), few), 1);

  const Sheet bits{5, 2, 1, {0, 255, 255, 0, 255, 255, 0, 0, 0, 255}};
  ToVips(bits, VIPS_INTERPRETATION_B_W).pngsave(Path("bits.png").c_str(), VImage::option()->set("bitdepth", 1));
  ASSERT_EQ(world.folder.Read("bits.png")[24], 1) << "not one bit a pixel";
  EXPECT_EQ(Loaded("bits.png"), bits);
}

TEST_F(Loading, GifShowsItsFirstFrame) {
  const Sheet frames[] = {Plain(6, 4, {255, 0, 0}), Plain(6, 4, {0, 255, 0}), Plain(6, 4, {0, 0, 255})};
  VImage all = ToVips(frames[0])
                   .join(ToVips(frames[1]), VIPS_DIRECTION_VERTICAL)
                   .join(ToVips(frames[2]), VIPS_DIRECTION_VERTICAL);
  all.set("page-height", 4);
  all.gifsave(Path("a.gif").c_str());
  ASSERT_EQ(LoadPlainly(Path("a.gif")).get_int("n-pages"), 3);
  EXPECT_EQ(Loaded("a.gif"), Plain(6, 4, {255, 0, 0, 255}));
}

TEST_F(Loading, GifKeepsItsTransparency) {
  const Sheet sheet{2, 1, 4, {255, 0, 0, 255, 0, 0, 0, 0}};
  ToVips(sheet).gifsave(Path("a.gif").c_str());
  const Sheet loaded = Loaded("a.gif");
  EXPECT_EQ(loaded.Pixel(0, 0), (std::vector<int>{255, 0, 0, 255}));
  EXPECT_EQ(loaded.At(1, 0, 3), 0);
}

TEST_F(Loading, TiffOfEveryKind) {
  struct Case {
    const char* name;
    Sheet sheet;
    bool deep;
    VipsInterpretation kind;
  };
  const Case cases[] = {
      {"grey", PhotoLike(150, 140, 1), false, VIPS_INTERPRETATION_B_W},
      {"rgb", PhotoLike(150, 140, 3), false, VIPS_INTERPRETATION_sRGB},
      {"rgb and alpha", PhotoLike(150, 140, 4), false, VIPS_INTERPRETATION_sRGB},
      {"inks", PhotoLike(150, 140, 4), false, VIPS_INTERPRETATION_CMYK},
      {"deep grey", PhotoLike(150, 140, 1, 65535), true, VIPS_INTERPRETATION_GREY16},
      {"deep rgb", PhotoLike(150, 140, 3, 65535), true, VIPS_INTERPRETATION_RGB16},
  };
  for (const bool tiled : {false, true}) {
    for (const auto compression : {VIPS_FOREIGN_TIFF_COMPRESSION_NONE, VIPS_FOREIGN_TIFF_COMPRESSION_LZW,
                                   VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE}) {
      for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const VImage made = c.deep ? ToVipsDeep(c.sheet, c.kind) : ToVips(c.sheet, c.kind);
        made.tiffsave(Path("a.tif").c_str(), VImage::option()->set("tile", tiled)->set("compression", compression));
        const Image image = Load(Path("a.tif"));
        EXPECT_EQ(PixelsOf(image), c.sheet);
        EXPECT_EQ(image.Data()->picture.pixels.interpretation(), c.kind);
      }
    }
  }
}

TEST_F(Loading, TiffWithInksAndMoreKeepsTheInks) {
  ToVips({1, 1, 5, {10, 20, 30, 40, 50}}, VIPS_INTERPRETATION_CMYK).tiffsave(Path("a.tif").c_str());
  const Image image = Load(Path("a.tif"));
  EXPECT_EQ(PixelsOf(image), (Sheet{1, 1, 4, {10, 20, 30, 40}}));
  EXPECT_TRUE(IsCmyk(image.Data()->picture.pixels));
}

TEST_F(Loading, TiffOfOneBitAndOfLab) {
  const Sheet bits{9, 1, 1, {0, 255, 255, 0, 255, 255, 0, 0, 255}};
  ToVips(bits, VIPS_INTERPRETATION_B_W)
      .tiffsave(Path("bits.tif").c_str(),
                VImage::option()->set("bitdepth", 1)->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_CCITTFAX4));
  EXPECT_EQ(Loaded("bits.tif"), bits);

  ToVips(Plain(3, 3, {200, 100, 50})).colourspace(VIPS_INTERPRETATION_LAB).tiffsave(Path("lab.tif").c_str());
  EXPECT_LE(Difference(Loaded("lab.tif"), Plain(3, 3, {200, 100, 50})), 2);
}

TEST_F(Loading, TiffShowsItsFirstPage) {
  VImage all = ToVips(Plain(3, 2, {1, 2, 3})).join(ToVips(Plain(3, 2, {4, 5, 6})), VIPS_DIRECTION_VERTICAL);
  all.set("page-height", 2);
  all.tiffsave(Path("a.tif").c_str());
  EXPECT_EQ(Loaded("a.tif"), Plain(3, 2, {1, 2, 3}));
}

TEST_F(Loading, BmpAndPsd) {
  ByteText psd;
  psd.Text("8BPS").Big16(1).Zeros(6).Big16(3).Big32(1).Big32(2).Big16(8).Big16(3).Zeros(12).Big16(0);
  world.folder.Write("a.psd", psd.U8({1, 2, 3, 4, 5, 6}).Bytes());
  EXPECT_EQ(Loaded("a.psd"), (Sheet{2, 1, 3, {1, 3, 5, 2, 4, 6}}));

  ByteText bmp;
  bmp.Text("BM").Little32(0).Little32(0).Little32(54).Little32(40).Little32(1).Little32(1).Little16(1).Little16(24);
  world.folder.Write("a.bmp", bmp.Zeros(24).U8({3, 2, 1, 0}).Bytes());
  EXPECT_EQ(Loaded("a.bmp"), (Sheet{1, 1, 3, {1, 2, 3}}));
}

TEST_F(Loading, BmpLargerThanOneBlockOfRows) {
  const Sheet photo = PhotoLike(301, 517, 3);
  ToVips(photo).pngsave(Path("a.png").c_str());
  const Image image = Load(Path("a.png"));
  ASSERT_TRUE(services.SaveImageToBmpFile(image, Path("a.bmp")));
  EXPECT_EQ(Loaded("a.bmp"), photo);
}

TEST_F(Loading, JpegOfEveryKind) {
  struct Case {
    const char* name;
    Colours colours;
    VipsInterpretation kind;
  };
  const Case cases[] = {
      {"grey", Colours::Grey, VIPS_INTERPRETATION_B_W},        {"ycc", Colours::YCbCr, VIPS_INTERPRETATION_sRGB},
      {"rgb", Colours::Rgb, VIPS_INTERPRETATION_sRGB},         {"cmyk", Colours::Cmyk, VIPS_INTERPRETATION_CMYK},
      {"adobe", Colours::AdobeCmyk, VIPS_INTERPRETATION_CMYK}, {"ycck", Colours::Ycck, VIPS_INTERPRETATION_CMYK},
  };
  for (const Scans scans : {Scans::One, Scans::Progressive}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.name);
      const Pixels made = TestPicture({70, 50}, c.colours);
      MakeOptions options;
      options.colours = c.colours;
      options.luma = {1, 1};
      options.scans = scans;
      world.folder.Write("a.jpg", MakeJpeg(made, options));
      const Image image = Load(Path("a.jpg"));
      const VImage pixels = image.Data()->picture.pixels;
      EXPECT_EQ(pixels.interpretation(), c.kind);
      // The library decodes the same file to the same pixels, inks included, but it also treats inks without the marker
      // as inverted.
      const Sheet plain = ReadPlainly(Path("a.jpg"));
      if (c.colours != Colours::Cmyk) {
        EXPECT_LE(Difference(PixelsOf(image), plain), 1);
      }
      EXPECT_EQ(pixels.width(), 70);
      EXPECT_EQ(pixels.height(), 50);
      if (c.colours == Colours::Cmyk) {
        EXPECT_NEAR(PixelsOf(image).At(30, 20, 0), made.At(30, 20, 0), 12);
      }
      if (c.colours == Colours::AdobeCmyk) {
        EXPECT_NEAR(PixelsOf(image).At(30, 20, 0), 255 - made.At(30, 20, 0), 12);
      }
    }
  }
}

TEST_F(Loading, JpegBringsItsTags) {
  const std::string profile = ProfileFor("RGB ");
  MakeOptions options;
  options.densityUnit = 1;
  options.density = 254;
  options.segments = {{0xE1, std::string("Exif\0\0", 6) + MinimalExif(6, 0)},
                      {0xE2, std::string("ICC_PROFILE\0\2\2", 14) + profile.substr(100)},
                      {0xE2, std::string("ICC_PROFILE\0\1\2", 14) + profile.substr(0, 100)}};
  world.folder.Write("a.jpg", MakeJpeg(TestPicture({16, 16}, Colours::YCbCr), options));
  const Image image = Load(Path("a.jpg"));
  EXPECT_EQ(services.GetImageResolution(image), 254);
  EXPECT_EQ(TagsOf(image).orientation, 6);
  EXPECT_EQ(TagsOf(image).profile, profile);
  EXPECT_EQ(TagsOf(image).exif, MinimalExif(6, 0));
  // The pixels are as stored, whatever the orientation is.
  EXPECT_EQ(services.GetImageWidth(image), 16);
}

TEST_F(Loading, PngAndTiffBringTheirTags) {
  VImage made = ToVips(PhotoLike(8, 8, 3)).copy(VImage::option()->set("xres", 300 / 25.4)->set("yres", 300 / 25.4));
  const std::string profile = ProfileFor("RGB ");
  vips_image_set_blob_copy(made.get_image(), VIPS_META_ICC_NAME, profile.data(), profile.size());
  made.set(VIPS_META_ORIENTATION, 8);
  made.tiffsave(Path("a.tif").c_str());
  const std::string exif = std::string("Exif\0\0", 6) + MinimalExif(8, 0);
  vips_image_set_blob_copy(made.get_image(), VIPS_META_EXIF_NAME, exif.data(), exif.size());
  made.pngsave(Path("a.png").c_str());
  for (const char* name : {"a.png", "a.tif"}) {
    SCOPED_TRACE(name);
    const Image image = Load(Path(name));
    EXPECT_EQ(services.GetImageResolution(image), 300);
    EXPECT_EQ(TagsOf(image).profile, profile);
    EXPECT_EQ(TagsOf(image).orientation, 8);
  }
}

TEST_F(Loading, AMissingResolutionIsNone) {
  world.folder.Write("a.jpg", MakeJpeg(TestPicture({16, 16}, Colours::YCbCr), {}));
  EXPECT_EQ(services.GetImageResolution(Load(Path("a.jpg"))), 0);
  ToVips(PhotoLike(8, 8, 3)).gifsave(Path("a.gif").c_str());
  EXPECT_EQ(services.GetImageResolution(Load(Path("a.gif"))), 0);
}

TEST_F(Loading, AProfileForOtherColoursIsLeftOut) {
  VImage made = ToVips(PhotoLike(8, 8, 1), VIPS_INTERPRETATION_B_W);
  const std::string profile = ProfileFor("RGB ");
  vips_image_set_blob_copy(made.get_image(), VIPS_META_ICC_NAME, profile.data(), profile.size());
  made.tiffsave(Path("a.tif").c_str());
  EXPECT_EQ(TagsOf(Load(Path("a.tif"))).profile, "");
}

TEST_F(Loading, NamesAreOnlyNames) {
  const Sheet photo = PhotoLike(9, 9, 3);
  ToVips(photo).pngsave(Path("plain.png").c_str());
  const std::string bytes = world.folder.Read("plain.png");
  for (const char* name :
       {"a b.png", "a%d.png", "a[1].png", "a[page=1]", "-leading.png", "new\nline.png", "\xB2\xE2\xCA\xD4.png",
        "图片.png", "none", "wrong.jpg", "a.png[access=sequential]", "%s%n.tif"}) {
    world.folder.Write(name, bytes);
    EXPECT_EQ(Loaded(name), photo) << name;
  }
  const std::string longest = std::string(251, 'x') + ".png";
  world.folder.Write(longest, bytes);
  EXPECT_EQ(Loaded(longest), photo);
}

TEST_F(Loading, AnImageDoesNotFollowItsFile) {
  for (const char* name : {"a.png", "a.tif", "a.jpg", "a.bmp"}) {
    SCOPED_TRACE(name);
    Image first;
    ASSERT_TRUE(services.NewCanvas({40, 40}, base::Colour{0x0000FF}, first));
    ASSERT_TRUE(services.SaveByEncoder(first, Path(name), EncoderFor(std::string(name).substr(2)), 100));
    Image image = Load(Path(name));
    const Sheet before = PixelsOf(image);
    ASSERT_TRUE(services.CutImage(image, {5, 5, 20, 20}));
    world.folder.Write(name, "something else");
    EXPECT_EQ(PixelsOf(image), Part(before, {5, 5, 20, 20}));
    // Opening the path again reads the new file.
    Image second;
    EXPECT_EQ(services.LoadImageFromFile(Path(name), second).GetProblem(), Problem::Unsupported);
  }
}

TEST_F(Loading, LimitsAreCheckedFromTheHeader) {
  ToVips(PhotoLike(60, 50, 3)).pngsave(Path("a.png").c_str());
  world.folder.Write("a.jpg", MakeJpeg(TestPicture({60, 50}, Colours::YCbCr), {}));
  struct Case {
    Limits limits;
    bool fits;
  };
  const auto with = [](int side, std::int64_t pixels, std::int64_t memory) {
    Limits limits;
    limits.side = side;
    limits.pixels = pixels;
    limits.memory = memory;
    return limits;
  };
  const Case cases[] = {{with(60, 3000, 9000), true},
                        {with(59, 3000, 9000), false},
                        {with(60, 2999, 9000), false},
                        {with(60, 3000, 8999), false}};
  for (const Case& c : cases) {
    Services tight(world.files, world.host.programFolder, {}, c.limits);
    for (const char* name : {"a.png", "a.jpg"}) {
      Image image;
      EXPECT_EQ(tight.LoadImageFromFile(Path(name), image).GetProblem(), c.fits ? Problem::None : Problem::TooLarge)
          << name;
    }
  }
}

TEST_F(Loading, NoFilesRemain) {
  const auto held = [] { return vips_tracked_get_mem(); };
  ToVips(PhotoLike(200, 200, 3)).pngsave(Path("a.png").c_str());
  const auto before = held();
  for (int i = 0; i < 20; ++i) {
    Image image = Load(Path("a.png"));
    ASSERT_TRUE(services.RotateImage(image, 13, base::kWhite));
    ASSERT_TRUE(services.SaveImageToJpgFile(image, Path("b.jpg"), 80, Exif::Drop));
    world.folder.Write("bad.png", world.folder.Read("a.png").substr(0, 3000));
    Image bad;
    EXPECT_FALSE(services.LoadImageFromFile(Path("bad.png"), bad));
  }
  EXPECT_LE(held(), before + 1000);
  EXPECT_EQ(vips_tracked_get_files(), 0);
}

}  // namespace
}  // namespace quillon::imaging
