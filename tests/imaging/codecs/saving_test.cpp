// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "imaging/byte_text.h"
#include "imaging/codecs/encode.h"
#include "imaging/jpeg_maker.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pictures.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using host::Problem;
using host::Reply;
using host::testing::DiskCall;
using host::testing::Fault;
using vips::VImage;

unsigned Little(const std::string& bytes, std::size_t at, int size) {
  unsigned value = 0;
  for (int i = size - 1; i >= 0; --i)
    value = value << 8 | static_cast<unsigned char>(bytes[at + static_cast<unsigned>(i)]);
  return value;
}

// Returns the value of a numeric tag in the first directory of a little-endian TIFF, or -1 if it is missing.
int TiffTag(const std::string& bytes, unsigned tag) {
  const std::size_t directory = Little(bytes, 4, 4);
  const unsigned count = Little(bytes, directory, 2);
  for (unsigned i = 0; i < count; ++i) {
    const std::size_t entry = directory + 2 + i * 12;
    if (Little(bytes, entry, 2) == tag)
      return static_cast<int>(Little(bytes, entry + 8, Little(bytes, entry + 2, 2) == 3 ? 2 : 4));
  }
  return -1;
}

class Saving : public ServicesTest {
 protected:
  static Image Make(const VImage& pixels, const PictureTags& tags = {}) {
    auto data = std::make_unique<ImageData>();
    data->picture = {pixels, tags};
    return Image(std::move(data));
  }
  std::string Saved(const Image& image, Encoder encoder, int quality = 90) {
    const Status status = services.SaveByEncoder(image, Path("out"), encoder, quality);
    EXPECT_TRUE(status) << status.Why();
    return status ? world.folder.Read("out") : "";
  }
  const Encoder kAll[5] = {Encoder::Bmp, Encoder::Jpeg, Encoder::Png, Encoder::Gif, Encoder::Tiff};
};

TEST_F(Saving, PngAndTiffAreLossless) {
  const Sheet rgb = PhotoLike(130, 70, 3);
  const Sheet clear = PhotoLike(30, 20, 4);
  const Sheet deep = PhotoLike(30, 20, 3, 65535);
  const Sheet grey = PhotoLike(30, 20, 1);
  for (const Encoder encoder : {Encoder::Png, Encoder::Tiff}) {
    Saved(Make(ToVips(rgb)), encoder);
    EXPECT_EQ(ReadPlainly(Path("out")), rgb);
    Saved(Make(ToVips(clear)), encoder);
    EXPECT_EQ(ReadPlainly(Path("out")), clear);
    Saved(Make(ToVipsDeep(deep)), encoder);
    EXPECT_EQ(ReadPlainly(Path("out")), deep);
    Saved(Make(ToVips(grey, VIPS_INTERPRETATION_B_W)), encoder);
    EXPECT_EQ(ReadPlainly(Path("out")), grey);
  }
}

TEST_F(Saving, BmpIsTwentyFourBitsFromTheBottomUp) {
  const std::string file =
      Saved(Make(ToVips({3, 2, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15, 16, 17, 18, 19}}), {.dpi = 300}),
            Encoder::Bmp);
  ByteText expected;
  expected.Text("BM").Little32(78).Little32(0).Little32(54);
  expected.Little32(40).Little32(3).Little32(2).Little16(1).Little16(24).Little32(0).Little32(24);
  expected.Little32(11811).Little32(11811).Zeros(8);
  expected.U8({13, 12, 11, 16, 15, 14, 19, 18, 17, 0, 0, 0, 3, 2, 1, 6, 5, 4, 9, 8, 7, 0, 0, 0});
  EXPECT_TRUE(file == expected.Bytes());
}

TEST_F(Saving, BmpKeepsTheProfile) {
  const std::string profile = ProfileFor("RGB ");
  Saved(Make(ToVips(Plain(5, 5, {1, 2, 3})), {.profile = profile, .dpi = 254}), Encoder::Bmp);
  const Image image = Load(Path("out"));
  EXPECT_EQ(image.Data()->picture.tags.profile, profile);
  EXPECT_EQ(image.Data()->picture.tags.dpi, 254);
  EXPECT_EQ(PixelsOf(image), Plain(5, 5, {1, 2, 3}));
}

TEST_F(Saving, WhatAFormatCannotHoldIsChanged) {
  const Image clear = Make(ToVips({2, 1, 4, {10, 20, 30, 255, 10, 20, 30, 0}}));
  const Image deep = Make(ToVipsDeep(Plain(2, 1, {257 * 10, 257 * 20, 257 * 30})));
  const Image grey = Make(ToVips(Plain(2, 1, {77}), VIPS_INTERPRETATION_B_W));
  const Image inks = Make(ToVips(Plain(2, 1, {0, 0, 0, 0}), VIPS_INTERPRETATION_CMYK), {.profile = ProfileFor("CMYK")});
  Saved(clear, Encoder::Bmp);
  EXPECT_EQ(PixelsOf(Load(Path("out"))), (Sheet{2, 1, 3, {10, 20, 30, 255, 255, 255}}));
  Saved(deep, Encoder::Bmp);
  EXPECT_EQ(PixelsOf(Load(Path("out"))), Plain(2, 1, {10, 20, 30}));
  Saved(grey, Encoder::Bmp);
  EXPECT_EQ(PixelsOf(Load(Path("out"))), Plain(2, 1, {77, 77, 77}));
  Saved(inks, Encoder::Bmp);
  EXPECT_EQ(PixelsOf(Load(Path("out"))), Plain(2, 1, {255, 255, 255}));
  EXPECT_EQ(Load(Path("out")).Data()->picture.tags.profile, "");

  Saved(clear, Encoder::Jpeg, 100);
  EXPECT_EQ(PixelsOf(Load(Path("out"))).bands, 3);
  EXPECT_NEAR(PixelsOf(Load(Path("out"))).At(1, 0, 1), 255, 6);
  Saved(deep, Encoder::Jpeg, 100);
  EXPECT_LE(Difference(PixelsOf(Load(Path("out"))), Plain(2, 1, {10, 20, 30})), 3);

  Saved(clear, Encoder::Gif);
  EXPECT_EQ(PixelsOf(Load(Path("out"))).At(1, 0, 3), 0);
  EXPECT_EQ(PixelsOf(Load(Path("out"))).Pixel(0, 0), (std::vector<int>{10, 20, 30, 255}));
  Saved(deep, Encoder::Gif);
  EXPECT_EQ(PixelsOf(Load(Path("out"))), Plain(2, 1, {10, 20, 30, 255}));
  for (const Encoder encoder : {Encoder::Gif, Encoder::Png}) {
    Saved(inks, encoder);
    EXPECT_EQ(PixelsOf(Load(Path("out"))).Pixel(1, 0)[1], 255);
    EXPECT_FALSE(IsCmyk(Load(Path("out")).Data()->picture.pixels));
    EXPECT_EQ(Load(Path("out")).Data()->picture.tags.profile, "");
  }
}

TEST_F(Saving, InkStaysInkInJpegAndTiff) {
  const Sheet sheet = Plain(16, 16, {10, 120, 200, 30});
  const std::string profile = ProfileFor("CMYK");
  for (const Encoder encoder : {Encoder::Jpeg, Encoder::Tiff}) {
    Saved(Make(ToVips(sheet, VIPS_INTERPRETATION_CMYK), {.profile = profile}), encoder, 100);
    const Image image = Load(Path("out"));
    EXPECT_TRUE(IsCmyk(image.Data()->picture.pixels));
    EXPECT_LE(Difference(PixelsOf(image), sheet), 2);
    EXPECT_LE(Difference(ReadPlainly(Path("out")), sheet), 2);
    EXPECT_EQ(image.Data()->picture.tags.profile, profile);
  }
}

TEST_F(Saving, GifKeepsFewColoursExactly) {
  Sheet few{40, 30, 3, {}};
  for (int i = 0; i < 1200; ++i) {
    for (const int value : {i % 6 * 50, i % 7 * 42, i % 5 * 60}) few.values.push_back(value);
  }
  Saved(Make(ToVips(few)), Encoder::Gif);
  EXPECT_LE(Difference(FromVips(LoadPlainly(Path("out")).extract_band(0, VImage::option()->set("n", 3))), few), 4);
}

TEST_F(Saving, GifShowsDisplayedColours) {
  Saved(Make(ToVips(Plain(4, 4, {100, 160, 100})), {.profile = ProfileFor("RGB ")}), Encoder::Gif);
  EXPECT_LT(ReadPlainly(Path("out")).At(0, 0, 0), 95);
}

TEST_F(Saving, JpegQualityAndSampling) {
  const Image image = Make(ToVips(PhotoLike(64, 64, 3)));
  const std::size_t poor = Saved(image, Encoder::Jpeg, 0).size();
  const std::size_t middle = Saved(image, Encoder::Jpeg, 60).size();
  const std::size_t best = Saved(image, Encoder::Jpeg, 100).size();
  EXPECT_LT(poor, middle);
  EXPECT_LT(middle, best);
  EXPECT_EQ(Saved(image, Encoder::Jpeg, -5).size(), poor);
  EXPECT_EQ(Saved(image, Encoder::Jpeg, 400).size(), best);
  using Sampling = std::vector<std::pair<int, int>>;
  EXPECT_EQ(ReadJpeg(Saved(image, Encoder::Jpeg, 89)).sampling, (Sampling{{2, 2}, {1, 1}, {1, 1}}));
  EXPECT_EQ(ReadJpeg(Saved(image, Encoder::Jpeg, 90)).sampling, (Sampling{{1, 1}, {1, 1}, {1, 1}}));
}

TEST_F(Saving, TiffCompressions) {
  const Image image = Make(ToVips({3, 1, 3, {127, 127, 127, 128, 128, 128, 255, 0, 0}}));
  ASSERT_TRUE(services.SaveImageToTifFile(image, Path("a.tif"), 2));
  EXPECT_EQ(TiffTag(world.folder.Read("a.tif"), 259), 5) << "LZW";
  ASSERT_TRUE(services.SaveImageToTifFile(image, Path("b.tif"), 4));
  const std::string fax = world.folder.Read("b.tif");
  EXPECT_EQ(TiffTag(fax, 259), 4) << "CCITT group 4";
  EXPECT_EQ(TiffTag(fax, 258), 1) << "bits";
  EXPECT_EQ(ReadPlainly(Path("b.tif")), (Sheet{3, 1, 1, {0, 255, 0}}));
}

TEST_F(Saving, ResolutionIsKeptOrLeftUntold) {
  for (const Encoder encoder : {Encoder::Bmp, Encoder::Jpeg, Encoder::Png, Encoder::Tiff}) {
    for (const int dpi : {72, 96, 254, 300, 301, 1200}) {
      Saved(Make(ToVips(Plain(4, 4, {1, 2, 3})), {.dpi = dpi}), encoder);
      EXPECT_EQ(services.GetImageResolution(Load(Path("out"))), dpi) << static_cast<int>(encoder);
    }
    Saved(Make(ToVips(Plain(4, 4, {1, 2, 3}))), encoder);
    EXPECT_EQ(services.GetImageResolution(Load(Path("out"))), encoder == Encoder::Tiff ? 96 : 0);
  }
  const std::string jpeg = Saved(Make(ToVips(Plain(4, 4, {1, 2, 3})), {.dpi = 254}), Encoder::Jpeg);
  EXPECT_EQ(ReadJpeg(jpeg).densityUnit, 1);
  EXPECT_EQ(ReadJpeg(jpeg).densityX, 254);
  const std::string png = Saved(Make(ToVips(Plain(4, 4, {1, 2, 3}))), Encoder::Png);
  const std::size_t density = png.find("pHYs");
  ASSERT_NE(density, std::string::npos);
  EXPECT_EQ(png.substr(density + 4, 9), std::string("\0\0\0\1\0\0\0\1\0", 9)) << "one to one, without a unit";
}

TEST_F(Saving, ProfileAndOrientationGoAlong) {
  const std::string profile = ProfileFor("RGB ");
  for (const Encoder encoder : {Encoder::Jpeg, Encoder::Png, Encoder::Tiff}) {
    SCOPED_TRACE(static_cast<int>(encoder));
    Saved(Make(ToVips(Plain(4, 4, {1, 2, 3})), {.profile = profile, .orientation = 6}), encoder);
    const PictureTags tags = Load(Path("out")).Data()->picture.tags;
    EXPECT_EQ(tags.profile, profile);
    EXPECT_EQ(tags.orientation, 6);
  }
}

TEST_F(Saving, ALargeProfileGoesInSegments) {
  std::string profile = ProfileFor("RGB ");
  profile.resize(150000, 'x');
  Saved(Make(ToVips(Plain(4, 4, {1, 2, 3})), {.profile = profile}), Encoder::Jpeg);
  EXPECT_EQ(Load(Path("out")).Data()->picture.tags.profile, profile);
}

TEST_F(Saving, ExifOnlyWhenAskedAndWithoutItsThumbnail) {
  const Image image = Make(ToVips(Plain(8, 8, {1, 2, 3})), {.exif = ExifWithThumbnail(6), .orientation = 6});
  ASSERT_TRUE(services.SaveImageToJpgFile(image, Path("a.jpg"), 80, Exif::Keep));
  const std::string kept = world.folder.Read("a.jpg");
  EXPECT_NE(kept.find("Camera"), std::string::npos);
  EXPECT_EQ(kept.find("THUMB"), std::string::npos);
  EXPECT_EQ(Load(Path("a.jpg")).Data()->picture.tags.orientation, 6);
  ASSERT_TRUE(services.SaveImageToJpgFile(image, Path("a.jpg"), 80, Exif::Drop));
  const std::string dropped = world.folder.Read("a.jpg");
  EXPECT_EQ(dropped.find("Camera"), std::string::npos);
  EXPECT_EQ(Load(Path("a.jpg")).Data()->picture.tags.orientation, 6);
  // An upright picture needs no block at all.
  ASSERT_TRUE(services.SaveImageToJpgFile(Make(ToVips(Plain(8, 8, {1, 2, 3})), {.exif = ExifWithThumbnail(1)}),
                                          Path("a.jpg"), 80, Exif::Drop));
  EXPECT_EQ(world.folder.Read("a.jpg").find("Exif"), std::string::npos);

  Image png = Make(ToVips(Plain(8, 8, {1, 2, 3})), {.exif = ExifWithThumbnail(6), .orientation = 6});
  ASSERT_TRUE(services.SaveByType(png, Path("a.png"), "png", {.exif = Exif::Keep}));
  EXPECT_NE(world.folder.Read("a.png").find("Camera"), std::string::npos);
  EXPECT_EQ(world.folder.Read("a.png").find("THUMB"), std::string::npos);
  ASSERT_TRUE(services.SaveImageToPngFile(image, Path("a.png")));
  EXPECT_EQ(world.folder.Read("a.png").find("Camera"), std::string::npos);
}

TEST_F(Saving, ATurnedPictureHasNoOrientationTag) {
  Image image = Make(ToVips(Plain(8, 4, {1, 2, 3})), {.exif = ExifWithThumbnail(6), .orientation = 6});
  ASSERT_TRUE(services.RotateImage(image, -90, base::kWhite));
  for (const Exif exif : {Exif::Keep, Exif::Drop}) {
    ASSERT_TRUE(services.SaveImageToJpgFile(image, Path("a.jpg"), 80, exif));
    EXPECT_EQ(Load(Path("a.jpg")).Data()->picture.tags.orientation, 1);
  }
}

TEST_F(Saving, APictureOfAWindowMayBeTurnedAndIsNoPsd) {
  const Image image = Make(ToVips({2, 1, 3, {255, 0, 0, 0, 0, 255}}));
  ASSERT_TRUE(services.SaveByEncoder(image, Path("a.psd"), Encoder::Jpeg, 95, 0));
  EXPECT_FALSE(world.folder.Exists("a.psd"));
  EXPECT_EQ(services.GetImageWidth(Load(Path("a.jpg"))), 2);
  ASSERT_TRUE(services.SaveByEncoder(image, Path("a.png"), Encoder::Png, 95, 90));
  EXPECT_EQ(ReadPlainly(Path("a.png")), (Sheet{1, 2, 3, {0, 0, 255, 255, 0, 0}}));
  ASSERT_TRUE(services.SaveByEncoder(image, Path("a.png"), Encoder::Png, 95, 45));
  EXPECT_EQ(ReadPlainly(Path("a.png")).Pixel(0, 0), (std::vector<int>{255, 255, 255}));
  EXPECT_EQ(services.GetImageWidth(image), 2);
  EXPECT_FALSE(services.SaveByEncoder(Image(), Path("b.png"), Encoder::Png, 95, 0));
}

TEST_F(Saving, SidesThatAFormatCannotHoldAreRefused) {
  const VImage wide = CropOrPad(ToVips(Plain(1, 1, {1, 2, 3})), {0, 0, 70000, 1}, base::kWhite);
  for (const Encoder encoder : kAll) {
    const bool fits = encoder != Encoder::Jpeg && encoder != Encoder::Gif;
    EXPECT_EQ(services.SaveByEncoder(Make(wide), Path("wide"), encoder, 80).GetProblem(),
              fits ? Problem::None : Problem::TooLarge);
  }
  const VImage huge = CropOrPad(ToVips(Plain(1, 1, {1, 2, 3})), {0, 0, 40000, 40000}, base::kWhite);
  EXPECT_EQ(services.SaveImageToBmpFile(Make(huge), Path("huge.bmp")).GetProblem(), Problem::TooLarge);
  EXPECT_FALSE(world.folder.Exists("huge.bmp"));
}

TEST_F(Saving, SaveByTypeUsesTheFirstMatchAndDisposes) {
  struct Case {
    const char* type;
    const char* head;
  };
  const Case cases[] = {{"jpg", "\xFF\xD8"},       {"jpeg", "\xFF\xD8"}, {"JPG", "\xFF\xD8"}, {".png", "\x89PNG"},
                        {"gif", "GIF8"},           {"tif", "II*"},       {"tiff", "II*"},     {"bmp", "BM"},
                        {"png or jp", "\xFF\xD8"}, {"bmp tif", "II*"}};
  for (const Case& c : cases) {
    Image image = Make(ToVips(Plain(8, 8, {1, 2, 3})));
    ASSERT_TRUE(services.SaveByType(image, Path("any.name"), c.type, {})) << c.type;
    EXPECT_TRUE(world.folder.Read("any.name").starts_with(c.head)) << c.type;
    EXPECT_TRUE(image.Empty());
  }
  Image image = Make(ToVips(Plain(8, 8, {1, 2, 3})));
  const Status status = services.SaveByType(image, Path("other"), "psd", {});
  EXPECT_EQ(status.Why(), "不支持保存为此类型");
  EXPECT_TRUE(image.Empty());
  EXPECT_FALSE(world.folder.Exists("other"));
  Image fax = Make(ToVips(Plain(8, 8, {1, 2, 3})));
  ASSERT_TRUE(services.SaveByType(fax, Path("fax.tif"), "tif", {.blackWhite = true}));
  EXPECT_EQ(TiffTag(world.folder.Read("fax.tif"), 259), 4);
}

TEST_F(Saving, AFullDiskIsAskedAboutUntilItIsGivenUp) {
  world.folder.Write("a.jpg", "the old one");
  world.faults.Set(
      {.call = DiskCall::Write, .nth = 1, .error = ENOSPC, .length = Fault::Length::ForEver, .pathHolds = ""});
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", Reply::Retry, 3);
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", Reply::Cancel, 1);
  Image image = Make(ToVips(Plain(8, 8, {1, 2, 3})));
  const Status status = saver.Save(Path("a.jpg"), [&] { return services.SaveByType(image, Path("a.jpg"), "jpg", {}); });
  EXPECT_TRUE(status.DiskFull());
  EXPECT_EQ(world.boxes.Count("盘空间不足，请释放空间后重试保存！"), 4);
  EXPECT_EQ(world.faults.Fired(), 4);
  EXPECT_TRUE(stopped);
  EXPECT_FALSE(image.Empty()) << "it could be tried again";
  EXPECT_EQ(world.folder.Read("a.jpg"), "the old one");
}

TEST_F(Saving, ARetryThatFindsRoomSucceeds) {
  world.faults.Set({.call = DiskCall::Write, .nth = 1, .error = ENOSPC, .pathHolds = ""});
  world.boxes.Answer("盘空间不足", Reply::Retry, 1);
  Image image = Make(ToVips(Plain(8, 8, {1, 2, 3})));
  ASSERT_TRUE(saver.Save(Path("a.jpg"), [&] { return services.SaveByType(image, Path("a.jpg"), "jpg", {}); }));
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_TRUE(image.Empty());
  EXPECT_FALSE(stopped);
  EXPECT_EQ(services.GetImageWidth(Load(Path("a.jpg"))), 8);
}

// Every disk call of every saver fails, first once, then permanently.
TEST_F(Saving, NoFaultLeavesAnyFile) {
  const Image image = Make(ToVips(PhotoLike(120, 90, 3)), {.profile = ProfileFor("RGB ")});
  for (const Encoder encoder : kAll) {
    for (const DiskCall call : {DiskCall::OpenNew, DiskCall::Write, DiskCall::Read, DiskCall::Seek}) {
      world.faults.Clear();
      ASSERT_TRUE(services.SaveByEncoder(image, Path("probe"), encoder, 80));
      const int calls = world.faults.Count(call);
      world.files.Flush();
      for (int nth = 1; nth <= calls; ++nth) {
        SCOPED_TRACE(std::string(NameOf(call)) + " " + std::to_string(nth) + " encoder " +
                     std::to_string(static_cast<int>(encoder)));
        world.folder.Write("a", "the old one");
        world.faults.Clear();
        world.faults.Set({.call = call, .nth = nth, .error = EIO, .length = Fault::Length::ForEver, .pathHolds = ""});
        const Status status = services.SaveByEncoder(image, Path("a"), encoder, 80);
        EXPECT_GE(world.faults.Fired(), 1);
        world.faults.Clear();
        EXPECT_FALSE(status);
        EXPECT_FALSE(status.Why().empty());
        EXPECT_TRUE(world.folder.Read("a") == "the old one");
        for (const std::string& name : world.folder.Names()) EXPECT_FALSE(host::IsDraftName(name)) << name;
      }
    }
  }
}

TEST_F(Saving, TheEndOfAResultIsChecked) {
  class TextDraft : public host::Draft {
   public:
    explicit TextDraft(std::string text) : text_(std::move(text)) {}
    Status Write(const void*, std::size_t) override { return Status::Ok(); }
    Status Seek(std::uint64_t position) override {
      at_ = position;
      return Status::Ok();
    }
    std::int64_t Read(void* data, std::size_t size) override {
      const std::size_t count = std::min(size, text_.size() - std::min<std::size_t>(at_, text_.size()));
      std::copy_n(text_.data() + at_, count, static_cast<char*>(data));
      at_ += count;
      return static_cast<std::int64_t>(count);
    }
    std::uint64_t Size() const override { return text_.size(); }

   private:
    std::string text_;
    std::size_t at_ = 0;
  };
  const Image image = Make(ToVips(PhotoLike(40, 30, 3)));
  for (const Encoder encoder : kAll) {
    SCOPED_TRACE(static_cast<int>(encoder));
    const std::string whole = Saved(image, encoder);
    TextDraft good(whole);
    EXPECT_TRUE(CheckOutput(encoder, good));
    TextDraft cut(whole.substr(0, encoder == Encoder::Tiff ? 200 : whole.size() - 1));
    EXPECT_FALSE(CheckOutput(encoder, cut));
    TextDraft empty("");
    EXPECT_FALSE(CheckOutput(encoder, empty));
    std::string other = whole;
    other[0] = 'x';
    TextDraft wrong(other);
    EXPECT_FALSE(CheckOutput(encoder, wrong));
  }
}

}  // namespace
}  // namespace quillon::imaging
