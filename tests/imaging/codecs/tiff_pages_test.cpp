// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_pages.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <cmath>

#include "imaging/pictures.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging::testing {
namespace {

using host::Problem;

class TiffPagesTest : public ServicesTest {
 protected:
  // A PNG of these pixels, since it is lossless.
  std::string Png(const std::string& name, const Sheet& sheet, VipsInterpretation kind = VIPS_INTERPRETATION_sRGB) {
    auto data = std::make_unique<ImageData>();
    data->picture.pixels = ToVips(sheet, kind);
    EXPECT_TRUE(services.SaveImageToPngFile(Image(std::move(data)), Path(name)));
    return Path(name);
  }

  Status Write(const std::string& name, const std::vector<std::string>& pages, const TiffPageOptions& options) {
    return world.files.Save(Path(name), [&](host::Draft& draft) {
      TiffPages tiff(draft, static_cast<int>(pages.size()));
      for (const std::string& page : pages) {
        if (Status added = tiff.AddFile(world.files, page, options); !added) return added;
      }
      return tiff.Finish();
    });
  }

  vips::VImage Page(const std::string& name, int page) {
    return vips::VImage::tiffload(Path(name).c_str(), vips::VImage::option()->set("page", page));
  }

  int Tag(const std::string& name, std::uint32_t tag) {
    const std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(TIFFOpen(Path(name).c_str(), "r"), TIFFClose);
    std::uint16_t value = 0;
    EXPECT_EQ(TIFFGetField(tiff.get(), tag, &value), 1);
    return value;
  }

  int Count(const std::string& name) {
    int pages = -1;
    return CountTiffPages(world.files, Path(name), pages) ? pages : 0;
  }
};

TEST_F(TiffPagesTest, KeepPixelsSizeAndOrder) {
  const Sheet first = PhotoLike(61, 43, 3);
  const Sheet second = PhotoLike(20, 900, 3);
  const std::vector<std::string> pages = {Png("1.png", first), Png("2.png", second), Png("3.png", first)};
  for (const auto compression : {TiffCompression::Lzw, TiffCompression::PackBits, TiffCompression::None}) {
    ASSERT_TRUE(Write("out.tif", pages, {.compression = compression}));
    EXPECT_EQ(Count("out.tif"), 3);
    EXPECT_EQ(FromVips(Page("out.tif", 0)), first);
    EXPECT_EQ(FromVips(Page("out.tif", 1)), second);
    EXPECT_EQ(FromVips(Page("out.tif", 2)), first);
  }
}

TEST_F(TiffPagesTest, FaxPagesAreBlackBelow128) {
  const std::vector<std::string> pages = {
      Png("grey.png", {10, 1, 1, {0, 127, 128, 255, 127, 128, 0, 255, 126, 129}}, VIPS_INTERPRETATION_B_W)};
  for (const auto compression : {TiffCompression::Group3, TiffCompression::Group4}) {
    ASSERT_TRUE(Write("fax.tif", pages, {.compression = compression}));
    const vips::VImage page = Page("fax.tif", 0);
    EXPECT_EQ(FromVips(page), (Sheet{10, 1, 1, {0, 0, 255, 255, 0, 255, 0, 255, 0, 255}}));
    EXPECT_EQ(Tag("fax.tif", TIFFTAG_BITSPERSAMPLE), 1);
  }
}

TEST_F(TiffPagesTest, AreStoredAsRequested) {
  const std::vector<std::string> pages = {Png("1.png", PhotoLike(9, 9, 3))};
  const std::pair<TiffCompression, int> requested[] = {
      {TiffCompression::Lzw, COMPRESSION_LZW},          {TiffCompression::PackBits, COMPRESSION_PACKBITS},
      {TiffCompression::None, COMPRESSION_NONE},        {TiffCompression::Group3, COMPRESSION_CCITTFAX3},
      {TiffCompression::Group4, COMPRESSION_CCITTFAX4}, {TiffCompression::Jpeg, COMPRESSION_JPEG}};
  for (const auto& [compression, tag] : requested) {
    ASSERT_TRUE(Write("c.tif", pages, {.compression = compression}));
    EXPECT_EQ(Tag("c.tif", TIFFTAG_COMPRESSION), tag);
  }
}

TEST_F(TiffPagesTest, JpegPagesKeepSizeAndNearlyTheColours) {
  // Neither side is a multiple of a block, and there is more than one strip.
  const Sheet photo = PhotoLike(333, 451, 3);
  ASSERT_TRUE(Write("j.tif", {Png("1.png", photo)}, {.compression = TiffCompression::Jpeg, .quality = 98}));
  EXPECT_LT(Difference(FromVips(Page("j.tif", 0)), photo), 60);
  const Sheet grey = PhotoLike(333, 451, 1);
  ASSERT_TRUE(Write("j.tif", {Png("2.png", grey, VIPS_INTERPRETATION_B_W)}, {.compression = TiffCompression::Jpeg}));
  EXPECT_LT(Difference(FromVips(Page("j.tif", 0)), grey), 60);
}

TEST_F(TiffPagesTest, ResolutionIsTheGivenOneElseTheOwnElse96) {
  Image image = Load(Png("1.png", PhotoLike(8, 8, 3)));
  services.SetImageResolution(image, 254);
  ASSERT_TRUE(services.SaveImageToPngFile(image, Path("254.png")));
  const auto dpiOf = [&](const std::string& source, int requested) {
    EXPECT_TRUE(Write("r.tif", {source}, {.dpi = requested}));
    return std::lround(Page("r.tif", 0).xres() * 25.4);
  };
  EXPECT_EQ(dpiOf(Path("1.png"), 0), 96);
  EXPECT_EQ(dpiOf(Path("254.png"), 0), 254);
  EXPECT_EQ(dpiOf(Path("254.png"), 300), 300);
}

TEST_F(TiffPagesTest, IncludeEveryPageOfATiff) {
  const Sheet first = PhotoLike(12, 7, 3);
  const Sheet second = PhotoLike(7, 12, 1);
  ASSERT_TRUE(Write("a.tif", {Png("1.png", first), Png("2.png", second, VIPS_INTERPRETATION_B_W)}, TiffPageOptions{}));
  ASSERT_TRUE(Write("b.tif", {Path("a.tif"), Path("1.png")}, TiffPageOptions{}));
  EXPECT_EQ(Count("b.tif"), 3);
  EXPECT_EQ(FromVips(Page("b.tif", 1)), second);
}

TEST_F(TiffPagesTest, ADamagedPageLeavesTheOthers) {
  const Sheet good = PhotoLike(300, 300, 3);
  Png("good.png", good);
  ASSERT_TRUE(services.SaveImageToJpgFile(Load(Path("good.png")), Path("bad.jpg"), 90, Exif::Drop));
  const std::string whole = world.folder.Read("bad.jpg");
  world.folder.Write("bad.jpg", whole.substr(0, whole.size() / 2));
  const Status saved = world.files.Save(Path("out.tif"), [&](host::Draft& draft) {
    TiffPages tiff(draft, 3);
    EXPECT_TRUE(tiff.AddFile(world.files, Path("good.png"), {}));
    EXPECT_EQ(tiff.AddFile(world.files, Path("bad.jpg"), {}).GetProblem(), Problem::Damaged);
    EXPECT_EQ(tiff.AddFile(world.files, Path("none.jpg"), {}).GetProblem(), Problem::Missing);
    EXPECT_TRUE(tiff.AddFile(world.files, Path("good.png"), {}));
    EXPECT_EQ(tiff.Count(), 2);
    return tiff.Finish();
  });
  EXPECT_TRUE(saved);
  EXPECT_EQ(Count("out.tif"), 2);
  EXPECT_EQ(FromVips(Page("out.tif", 1)), good);
}

TEST_F(TiffPagesTest, WithoutPagesFailAndLeaveNoFile) {
  EXPECT_FALSE(Write("empty.tif", {}, {}));
  EXPECT_FALSE(world.folder.Exists("empty.tif"));
}

TEST_F(TiffPagesTest, AFullDiskIsReported) {
  const std::string page = Png("1.png", PhotoLike(200, 200, 3));
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .nth = 2,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver});
  EXPECT_TRUE(Write("full.tif", {page}, {.compression = TiffCompression::None}).DiskFull());
  EXPECT_FALSE(world.folder.Exists("full.tif"));
}

// The disk fills up in the middle of a page, at its directory, and at the end.
TEST_F(TiffPagesTest, AFullDiskIsReportedAtEveryWrite) {
  const std::string page = Png("1.png", PhotoLike(600, 500, 3));
  for (const auto compression : {TiffCompression::None, TiffCompression::Lzw, TiffCompression::Jpeg}) {
    int nth = 1;
    for (;; ++nth) {
      world.faults.Clear();
      world.faults.Set({.call = host::testing::DiskCall::Write,
                        .nth = nth,
                        .error = ENOSPC,
                        .length = host::testing::Fault::Length::ForEver});
      const Status status = Write("full.tif", {page, page}, {.compression = compression});
      if (world.faults.Fired() == 0) break;
      EXPECT_TRUE(status.DiskFull()) << nth << status.Why();
      EXPECT_FALSE(world.folder.Exists("full.tif")) << nth;
    }
    EXPECT_GT(nth, 3);
    static_cast<void>(world.files.RemoveOwn(Path("full.tif")));
  }
}

TEST_F(TiffPagesTest, LoadOnePage) {
  const Sheet second = PhotoLike(7, 12, 3);
  ASSERT_TRUE(Write("a.tif", {Png("1.png", PhotoLike(12, 7, 3)), Png("2.png", second)}, {.dpi = 150}));
  Image image;
  ASSERT_TRUE(LoadTiffPage(world.files, Path("a.tif"), 1, {}, image));
  EXPECT_EQ(PixelsOf(image), second);
  EXPECT_EQ(services.GetImageResolution(image), 150);
  EXPECT_EQ(LoadTiffPage(world.files, Path("a.tif"), 2, {}, image).GetProblem(), Problem::Damaged);
  EXPECT_EQ(LoadTiffPage(world.files, Path("1.png"), 0, {}, image).GetProblem(), Problem::Unsupported);
}

TEST_F(TiffPagesTest, CountOfWhatIsNoTiffFails) {
  int pages = 77;
  world.folder.Write("empty.tif", "");
  world.folder.Write("torn.tif", std::string("II*\0\xF0\xFF\0\0", 8));
  world.folder.Write("text.tif", "no picture at all");
  EXPECT_EQ(CountTiffPages(world.files, Path("empty.tif"), pages).GetProblem(), Problem::Damaged);
  EXPECT_FALSE(CountTiffPages(world.files, Path("torn.tif"), pages));
  EXPECT_EQ(CountTiffPages(world.files, Path("text.tif"), pages).GetProblem(), Problem::Unsupported);
  EXPECT_EQ(CountTiffPages(world.files, Path("none.tif"), pages).GetProblem(), Problem::Missing);
  EXPECT_EQ(CountTiffPages(world.files, Path("."), pages).GetProblem(), Problem::Unsupported);
  EXPECT_EQ(pages, 77);
}

TEST_F(TiffPagesTest, ACircleOfPagesComesToAnEnd) {
  // One directory without entries whose next one is itself.
  world.folder.Write("circle.tif", std::string("II*\0\x08\0\0\0", 8) + std::string("\0\0\x08\0\0\0", 6));
  int pages = 0;
  if (CountTiffPages(world.files, Path("circle.tif"), pages)) {
    EXPECT_EQ(pages, 1);
  }
}

}  // namespace
}  // namespace quillon::imaging::testing
