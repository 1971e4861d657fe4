// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>

#include "host/files/files.h"
#include "imaging/byte_text.h"
#include "imaging/jpeg_maker.h"
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

constexpr const char* kFullDisk = "盘空间不足，请释放空间后重试保存！";

class FileServices : public ServicesTest {
 protected:
  CropRequest Request(const std::string& source, const std::string& destination, base::Rect rect, Encoder encoder) {
    return {.source = Path(source), .destination = Path(destination), .rect = rect, .encoder = encoder, .quality = 95};
  }
  // The same 8-bit RGB picture in every format that can be read.
  void WriteEverywhere(const Sheet& sheet) {
    const VImage made = ToVips(sheet);
    made.pngsave(Path("in.png").c_str());
    made.tiffsave(Path("in.tif").c_str());
    made.pngsave(Path("in-interlaced.png").c_str(), VImage::option()->set("interlace", true));
    made.tiffsave(Path("in-tiled.tif").c_str(), VImage::option()->set("tile", true));
    const Image image = Load(Path("in.png"));
    ASSERT_TRUE(services.SaveImageToBmpFile(image, Path("in.bmp")));
    ByteText psd;
    psd.Text("8BPS").Big16(1).Zeros(6).Big16(3).Big32(static_cast<unsigned>(sheet.height));
    psd.Big32(static_cast<unsigned>(sheet.width)).Big16(8).Big16(3).Zeros(12).Big16(0);
    for (int band = 0; band < 3; ++band) {
      for (int i = 0; i < sheet.width * sheet.height; ++i)
        psd.U8({sheet.values[static_cast<std::size_t>(i * 3 + band)]});
    }
    world.folder.Write("in.psd", psd.Bytes());
  }
  const std::vector<std::string> kLossless = {"in.png",       "in.tif", "in-interlaced.png",
                                              "in-tiled.tif", "in.bmp", "in.psd"};
};

TEST_F(FileServices, CropsEveryFormatToEveryLosslessOne) {
  const Sheet photo = PhotoLike(211, 307, 3);
  WriteEverywhere(photo);
  const base::Rect rects[] = {
      {0, 0, 211, 307}, {13, 101, 100, 150}, {210, 306, 1, 1}, {0, 290, 211, 17}, {60, 0, 9, 1}};
  for (const std::string& source : kLossless) {
    for (const base::Rect& rect : rects) {
      for (const Encoder encoder : {Encoder::Png, Encoder::Tiff, Encoder::Bmp}) {
        SCOPED_TRACE(source + " " + std::to_string(rect.top) + " " + std::to_string(static_cast<int>(encoder)));
        const Status status = services.CropToFile(Request(source, "out", rect, encoder));
        ASSERT_TRUE(status) << status.Why();
        EXPECT_EQ(PixelsOf(Load(Path("out"))), Part(photo, rect));
      }
    }
  }
}

TEST_F(FileServices, WhatLiesOutsideIsWhite) {
  const Sheet photo = PhotoLike(40, 30, 3);
  WriteEverywhere(photo);
  const base::Rect rects[] = {{-5, -7, 20, 20}, {30, 20, 30, 30}, {-10, -10, 60, 50},
                              {100, 0, 5, 5},   {0, -50, 5, 5},   {-3, 10, 46, 5}};
  for (const std::string& source : kLossless) {
    for (const base::Rect& rect : rects) {
      SCOPED_TRACE(source + " " + std::to_string(rect.left) + " " + std::to_string(rect.top));
      ASSERT_TRUE(services.CropToFile(Request(source, "out.png", rect, Encoder::Png)));
      const Sheet out = ReadPlainly(Path("out.png"));
      ASSERT_EQ(out.width, rect.width);
      ASSERT_EQ(out.height, rect.height);
      for (int y = 0; y < rect.height; ++y) {
        for (int x = 0; x < rect.width; ++x) {
          const int fromX = x + rect.left;
          const int fromY = y + rect.top;
          const bool inside = fromX >= 0 && fromX < 40 && fromY >= 0 && fromY < 30;
          ASSERT_EQ(out.Pixel(x, y), inside ? photo.Pixel(fromX, fromY) : (std::vector<int>{255, 255, 255}));
        }
      }
    }
  }
}

TEST_F(FileServices, EveryPairOfFormatsWorks) {
  const Sheet photo = PhotoLike(64, 48, 3);
  WriteEverywhere(photo);
  ToVips(photo).gifsave(Path("in.gif").c_str());
  world.folder.Write("in.jpg", MakeJpeg(TestPicture({64, 48}, Colours::YCbCr), {}));
  std::vector<std::string> sources = kLossless;
  sources.insert(sources.end(), {"in.gif", "in.jpg"});
  const char* heads[] = {"", "BM", "\xFF\xD8", "\x89PNG", "GIF8", "II*"};
  for (const std::string& source : sources) {
    for (const Encoder encoder : {Encoder::Bmp, Encoder::Jpeg, Encoder::Png, Encoder::Gif, Encoder::Tiff}) {
      SCOPED_TRACE(source + " " + std::to_string(static_cast<int>(encoder)));
      ASSERT_TRUE(services.CropToFile(Request(source, "out", {8, 8, 32, 24}, encoder)));
      EXPECT_TRUE(world.folder.Read("out").starts_with(heads[static_cast<int>(encoder)]));
      const Image image = Load(Path("out"));
      EXPECT_EQ(services.GetImageWidth(image), 32);
      EXPECT_EQ(services.GetImageHeight(image), 24);
    }
  }
}

TEST_F(FileServices, JpegSourcesMeetTheirOwnPixels) {
  ToVips(PhotoLike(90, 70, 3)).jpegsave(Path("in.jpg").c_str(), VImage::option()->set("Q", 95));
  const Sheet whole = PixelsOf(Load(Path("in.jpg")));
  ASSERT_TRUE(services.CropToFile(Request("in.jpg", "out.png", {11, 33, 40, 30}, Encoder::Png)));
  EXPECT_EQ(ReadPlainly(Path("out.png")), Part(whole, {11, 33, 40, 30}));
  ASSERT_TRUE(services.CropToFile(Request("in.jpg", "out.jpg", {11, 33, 40, 30}, Encoder::Jpeg)));
  EXPECT_LE(Difference(PixelsOf(Load(Path("out.jpg"))), Part(whole, {11, 33, 40, 30})), 20);
}

TEST_F(FileServices, TheCanvasIsOpaqueAndOfEightBits) {
  ToVips({2, 1, 4, {10, 20, 30, 255, 10, 20, 30, 0}}).pngsave(Path("clear.png").c_str());
  ASSERT_TRUE(services.CropToFile(Request("clear.png", "out.png", {0, 0, 2, 1}, Encoder::Png)));
  EXPECT_EQ(ReadPlainly(Path("out.png")), (Sheet{2, 1, 3, {10, 20, 30, 255, 255, 255}}));
  ToVipsDeep(Plain(2, 1, {257, 514, 65535})).pngsave(Path("deep.png").c_str());
  ASSERT_TRUE(services.CropToFile(Request("deep.png", "out.png", {0, 0, 2, 1}, Encoder::Png)));
  EXPECT_EQ(LoadPlainly(Path("out.png")).format(), VIPS_FORMAT_UCHAR);
  EXPECT_EQ(ReadPlainly(Path("out.png")), Plain(2, 1, {1, 2, 255}));
}

TEST_F(FileServices, AlphaAndDepthAreKeptOnRequest) {
  const Sheet deep{2, 1, 4, {257, 514, 65535, 65535, 257, 514, 65535, 300}};
  ToVipsDeep(deep).pngsave(Path("deep.png").c_str());
  CropRequest request = Request("deep.png", "out.png", {0, 0, 2, 1}, Encoder::Png);
  request.depth = Depth::Kept;
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_EQ(LoadPlainly(Path("out.png")).bands(), 3);
  EXPECT_EQ(ReadPlainly(Path("out.png")).Pixel(0, 0), (std::vector<int>{257, 514, 65535}));
  request.alpha = Alpha::Kept;
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_EQ(ReadPlainly(Path("out.png")), deep);
  // What lies outside is white and opaque.
  request.rect = {-1, 0, 3, 1};
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_EQ(ReadPlainly(Path("out.png")).Pixel(0, 0), (std::vector<int>{65535, 65535, 65535, 65535}));
  // A format that cannot store either gets what it can.
  request.encoder = Encoder::Bmp;
  EXPECT_TRUE(services.CropToFile(request));
}

TEST_F(FileServices, InkStaysIfItCan) {
  const VImage inks = ToVips(Plain(16, 16, {10, 120, 200, 30}), VIPS_INTERPRETATION_CMYK);
  inks.tiffsave(Path("in.tif").c_str());
  inks.jpegsave(Path("in.jpg").c_str(), VImage::option()->set("Q", 100));
  for (const char* source : {"in.tif", "in.jpg"}) {
    for (const Encoder encoder : {Encoder::Jpeg, Encoder::Tiff}) {
      ASSERT_TRUE(services.CropToFile(Request(source, "out", {-8, 4, 16, 8}, encoder)));
      const Image image = Load(Path("out"));
      EXPECT_TRUE(IsCmyk(image.Data()->picture.pixels)) << source;
      EXPECT_LE(Difference(Part(PixelsOf(image), {9, 0, 6, 8}), Plain(6, 8, {10, 120, 200, 30})), 8);
      EXPECT_LE(Difference(Part(PixelsOf(image), {0, 0, 6, 8}), Plain(6, 8, {0, 0, 0, 0})), 8);
    }
    ASSERT_TRUE(services.CropToFile(Request(source, "out.png", {0, 0, 8, 8}, Encoder::Png)));
    EXPECT_EQ(LoadPlainly(Path("out.png")).bands(), 3);
  }
}

TEST_F(FileServices, TagsGoAlong) {
  const std::string profile = ProfileFor("RGB ");
  VImage made = ToVips(PhotoLike(20, 20, 3)).copy(VImage::option()->set("xres", 300 / 25.4)->set("yres", 300 / 25.4));
  vips_image_set_blob_copy(made.get_image(), VIPS_META_ICC_NAME, profile.data(), profile.size());
  made.set(VIPS_META_ORIENTATION, 6);
  made.tiffsave(Path("in.tif").c_str());
  for (const Encoder encoder : {Encoder::Jpeg, Encoder::Png, Encoder::Tiff, Encoder::Bmp}) {
    SCOPED_TRACE(static_cast<int>(encoder));
    CropRequest request = Request("in.tif", "out", {0, 0, 10, 10}, encoder);
    ASSERT_TRUE(services.CropToFile(request));
    const PictureTags kept = Load(Path("out")).Data()->picture.tags;
    EXPECT_EQ(kept.dpi, 300);
    EXPECT_EQ(kept.profile, profile);
    EXPECT_EQ(kept.orientation, encoder == Encoder::Bmp ? 1 : 6);
    request.dpi = 72;
    ASSERT_TRUE(services.CropToFile(request));
    EXPECT_EQ(Load(Path("out")).Data()->picture.tags.dpi, 72);
  }
}

TEST_F(FileServices, AnEmptyRectangleFails) {
  WriteEverywhere(PhotoLike(8, 8, 3));
  for (const base::Rect& rect : {base::Rect{0, 0, 0, 5}, {0, 0, 5, 0}, {0, 0, -1, 5}, {2, 2, 5, -9}}) {
    const Status status = services.CropToFile(Request("in.png", "out.png", rect, Encoder::Png));
    EXPECT_EQ(status.Why(), "裁切区域的宽和高必须大于零");
    EXPECT_FALSE(services.CropToGif(Request("in.png", "out.png", rect, Encoder::Gif)));
  }
  EXPECT_FALSE(world.folder.Exists("out.png"));
  EXPECT_EQ(services.CropToFile(Request("in.png", "out.png", {0, 0, 600000, 1}, Encoder::Png)).GetProblem(),
            Problem::TooLarge);
}

TEST_F(FileServices, ASourceMayBeItsOwnDestination) {
  const Sheet photo = PhotoLike(60, 40, 3);
  WriteEverywhere(photo);
  world.folder.Write("in.jpg", MakeJpeg(TestPicture({60, 40}, Colours::YCbCr), {}));
  struct Case {
    const char* name;
    Encoder encoder;
  };
  for (const Case& c :
       {Case{"in.png", Encoder::Png}, {"in.tif", Encoder::Tiff}, {"in.bmp", Encoder::Bmp}, {"in.jpg", Encoder::Jpeg}}) {
    SCOPED_TRACE(c.name);
    const std::string backup = std::string(c.name) + ".bak";
    const std::string source = world.folder.Read(c.name);
    ASSERT_TRUE(services.CropToFile(Request(c.name, c.name, {10, 10, 30, 20}, c.encoder)));
    EXPECT_EQ(services.GetImageWidth(Load(Path(c.name))), 30);
    EXPECT_TRUE(world.folder.Read(backup) == source);
    // If the crop fails, both files are unchanged.
    const std::string before = world.folder.Read(c.name);
    world.faults.Set(
        {.call = DiskCall::Write, .nth = 1, .error = EIO, .length = Fault::Length::ForEver, .pathHolds = ""});
    EXPECT_FALSE(services.CropToFile(Request(c.name, c.name, {0, 0, 5, 5}, c.encoder)));
    EXPECT_GE(world.faults.Fired(), 1);
    world.faults.Clear();
    EXPECT_TRUE(world.folder.Read(c.name) == before);
    EXPECT_TRUE(world.folder.Read(backup) == source);
  }
}

TEST_F(FileServices, AnOlderBackupGoesToTheTrash) {
  WriteEverywhere(PhotoLike(60, 40, 3));
  world.folder.Write("in.png.bak", "the user's own");
  const std::string source = world.folder.Read("in.png");
  ASSERT_TRUE(services.CropToFile(Request("in.png", "in.png", {0, 0, 5, 5}, Encoder::Png)));
  EXPECT_TRUE(world.folder.Read("in.png.bak") == source);
  EXPECT_EQ(world.folder.Read("data/Trash/files/in.png.bak"), "the user's own");
  // A backup that already equals the source is kept.
  const std::string cut = world.folder.Read("in.png");
  ASSERT_TRUE(KeepBackup(world.files, Path("in.png")));
  ASSERT_TRUE(KeepBackup(world.files, Path("in.png")));
  EXPECT_TRUE(world.folder.Read("in.png.bak") == cut);
  EXPECT_EQ(world.folder.Names("data/Trash/files").size(), 2u);
  // Nothing is replaced if there is no trash.
  world.folder.Write("in.png.bak", "again");
  world.faults.Set({.call = DiskCall::RenameNew,
                    .nth = 1,
                    .error = EACCES,
                    .length = Fault::Length::ForEver,
                    .pathHolds = "in.png.bak"});
  EXPECT_FALSE(services.CropToFile(Request("in.png", "in.png", {0, 0, 2, 2}, Encoder::Png)));
  EXPECT_TRUE(world.folder.Read("in.png") == cut);
  EXPECT_EQ(world.folder.Read("in.png.bak"), "again");
}

TEST_F(FileServices, AFolderOfTheNameOfABackupStays) {
  WriteEverywhere(PhotoLike(60, 40, 3));
  const std::string source = world.folder.Read("in.png");
  world.folder.Write("in.png.bak/own.txt", "the user's own");
  EXPECT_FALSE(services.CropToFile(Request("in.png", "in.png", {0, 0, 5, 5}, Encoder::Png)));
  EXPECT_EQ(world.folder.Read("in.png.bak/own.txt"), "the user's own");
  EXPECT_TRUE(world.folder.Read("in.png") == source);
}

TEST_F(FileServices, ASourceThatCannotBeKeptIsNotReplaced) {
  WriteEverywhere(PhotoLike(60, 40, 3));
  const std::string before = world.folder.Read("in.png");
  world.faults.Set({.call = DiskCall::Write, .nth = 1, .error = EIO, .pathHolds = ".bak"});
  EXPECT_FALSE(services.CropToFile(Request("in.png", "in.png", {0, 0, 5, 5}, Encoder::Png)));
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_TRUE(world.folder.Read("in.png") == before);
  EXPECT_FALSE(world.folder.Exists("in.png.bak"));
}

TEST_F(FileServices, TagsMayComeFromAnotherFile) {
  Image tagged;
  ToVips(PhotoLike(20, 10, 3)).pngsave(Path("plain.png").c_str());
  tagged = Load(Path("plain.png"));
  tagged.Data()->picture.tags.exif = ExifWithThumbnail(6);
  tagged.Data()->picture.tags.orientation = 6;
  ASSERT_TRUE(services.SaveImageToJpgFile(tagged, Path("tagged.jpg"), 90, Exif::Keep));
  ASSERT_TRUE(services.SaveImageToBmpFile(tagged, Path("work.bmp"), Orient::Defer));
  CropRequest request = Request("work.bmp", "out.jpg", {0, 0, 10, 10}, Encoder::Jpeg);
  request.tagSource = Path("tagged.jpg");
  request.exif = Exif::Keep;
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_NE(world.folder.Read("out.jpg").find("Camera"), std::string::npos);
  EXPECT_EQ(Load(Path("out.jpg")).Data()->picture.tags.orientation, 6);
  request.upright = true;
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_NE(world.folder.Read("out.jpg").find("Camera"), std::string::npos);
  EXPECT_EQ(Load(Path("out.jpg")).Data()->picture.tags.orientation, 1);
  // The orientation is copied in any case. A missing tag source is ignored.
  request.upright = false;
  request.exif = Exif::Drop;
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_EQ(world.folder.Read("out.jpg").find("Camera"), std::string::npos);
  EXPECT_EQ(Load(Path("out.jpg")).Data()->picture.tags.orientation, 6);
  request.tagSource = Path("missing.jpg");
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_EQ(Load(Path("out.jpg")).Data()->picture.tags.orientation, 1);
  // A JPEG source does not bypass the tag source and upright either, with or without prefetch.
  request.source = Path("tagged.jpg");
  request.exif = Exif::Keep;
  request.upright = true;
  services.PlanWork({{{request}}});
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_EQ(Load(Path("out.jpg")).Data()->picture.tags.orientation, 1);
}

TEST_F(FileServices, ACutThatFailsLeavesWhatStoodThere) {
  WriteEverywhere(PhotoLike(60, 40, 3));
  world.folder.Write("cut.png", world.folder.Read("in.png").substr(0, 2000));
  world.folder.Write("text.png", "no picture");
  world.folder.Write("out.png", "the old one");
  for (const char* source : {"cut.png", "missing.png", "text.png"}) {
    EXPECT_FALSE(services.CropToFile(Request(source, "out.png", {0, 0, 60, 40}, Encoder::Png))) << source;
    EXPECT_EQ(world.folder.Read("out.png"), "the old one") << source;
  }
}

TEST_F(FileServices, AFullDiskIsAskedAbout) {
  WriteEverywhere(PhotoLike(60, 40, 3));
  world.folder.Write("in.jpg", MakeJpeg(TestPicture({60, 40}, Colours::YCbCr), {}));
  for (const Encoder encoder : {Encoder::Png, Encoder::Jpeg}) {
    for (const char* source : {"in.bmp", "in.jpg"}) {
      world.boxes.Forget();
      world.boxes.Answer(kFullDisk, Reply::Retry, 1);
      world.faults.Clear();
      world.faults.Set({.call = DiskCall::Write, .nth = 1, .error = ENOSPC, .pathHolds = ""});
      const CropRequest request = Request(source, "out", {0, 0, 50, 30}, encoder);
      EXPECT_TRUE(saver.Save(request.destination, [&] { return services.CropToFile(request); }));
      EXPECT_EQ(world.faults.Fired(), 1);
      EXPECT_EQ(world.boxes.Count("盘空间不足"), 1);
      EXPECT_EQ(services.GetImageWidth(Load(Path("out"))), 50);
    }
  }
  EXPECT_FALSE(stopped);
  world.boxes.Answer("盘空间不足", Reply::Cancel);
  world.faults.Set(
      {.call = DiskCall::Write, .nth = 1, .error = ENOSPC, .length = Fault::Length::ForEver, .pathHolds = ""});
  const CropRequest request = Request("in.bmp", "new.png", {0, 0, 5, 5}, Encoder::Png);
  EXPECT_TRUE(saver.Save(request.destination, [&] { return services.CropToFile(request); }).DiskFull());
  EXPECT_TRUE(stopped);
  EXPECT_FALSE(world.folder.Exists("new.png"));
}

TEST_F(FileServices, PrefetchedWorkGivesTheSameBytes) {
  std::vector<CropRequest> requests;
  for (int i = 0; i < 6; ++i) {
    const std::string name = "in" + std::to_string(i) + ".jpg";
    world.folder.Write(name, MakeJpeg(TestPicture({120 + i, 90}, Colours::YCbCr), {}));
    requests.push_back(
        Request(name, "ahead" + std::to_string(i), {5, 6 + i, 70, 60}, i == 4 ? Encoder::Png : Encoder::Jpeg));
  }
  for (std::size_t i = 0; i < requests.size(); ++i) {
    std::vector<FileWork> works;
    for (std::size_t j = i; j < requests.size(); ++j) works.push_back({{requests[j]}});
    services.PlanWork(works);
    services.PlanMeasures({requests[i].source});
    ImageFacts facts;
    ASSERT_TRUE(services.ImageInfo(requests[i].source, facts));
    EXPECT_EQ(facts.width, 120 + static_cast<int>(i));
    ASSERT_TRUE(services.CropToFile(requests[i]));
    CropRequest alone = requests[i];
    alone.destination = Path("alone");
    Services other(world.files, world.host.programFolder);
    ASSERT_TRUE(other.CropToFile(alone));
    EXPECT_TRUE(world.folder.Read("ahead" + std::to_string(i)) == world.folder.Read("alone"));
  }
}

// Only the needed rows are decoded: these sources are much larger than the memory limit.
TEST_F(FileServices, LargePicturesAreNotHeld) {
  ByteText head;
  head.Text("BM").Little32(0).Little32(0).Little32(54).Little32(40).Little32(18000).Little32(18000).Little16(1);
  head.Little16(24).Zeros(24);
  world.folder.Write("large.bmp", head.Bytes());
  std::filesystem::resize_file(Path("large.bmp"), 54 + 54000ull * 18000);
  VImage::black(3000, 6000, VImage::option()->set("bands", 3))
      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
      .pngsave(Path("large.png").c_str(), VImage::option()->set("compression", 1));
  Limits limits;
  limits.memory = 10 << 20;
  Services tight(world.files, world.host.programFolder, {}, limits);
  const auto before = vips_tracked_get_mem();
  for (const char* name : {"large.bmp", "large.png"}) {
    SCOPED_TRACE(name);
    Image image;
    EXPECT_EQ(tight.LoadImageFromFile(Path(name), image).GetProblem(), Problem::TooLarge);
    for (const Encoder encoder : {Encoder::Bmp, Encoder::Jpeg, Encoder::Png, Encoder::Tiff}) {
      CropRequest request = Request(name, "out", {100, 5000, 2800, 900}, encoder);
      ASSERT_TRUE(tight.CropToFile(request));
    }
  }
  Image small;
  ASSERT_TRUE(tight.NewCanvas({100, 100}, base::kWhite, small));
  EXPECT_EQ(tight.CutImage(small, {0, 0, 3000, 3000}).GetProblem(), Problem::TooLarge);
  EXPECT_TRUE(tight.CutImage(small, {0, 0, 1000, 1000}));
  Services::Preview preview;
  ASSERT_TRUE(tight.LoadPreview(Path("large.png"), {100, 100}, preview));
  EXPECT_EQ(preview.size, (base::Size{50, 100}));
  EXPECT_EQ(preview.rgb[0], 0);
  ASSERT_TRUE(tight.ZoomPic(Path("large.png"), Path("small.png"), 50, 100));
  EXPECT_LT(vips_tracked_get_mem_highwater() - before, std::size_t{40} << 20);
}

TEST_F(FileServices, GifKeepsItsTransparency) {
  ToVips({3, 1, 4, {255, 0, 0, 255, 0, 0, 0, 0, 0, 0, 255, 255}}).gifsave(Path("in.gif").c_str());
  ASSERT_TRUE(services.CropToGif(Request("in.gif", "out.gif", {0, 0, 3, 1}, Encoder::Jpeg)));
  const Sheet out = ReadPlainly(Path("out.gif"));
  ASSERT_TRUE(world.folder.Read("out.gif").starts_with("GIF8"));
  EXPECT_EQ(out.Pixel(0, 0), (std::vector<int>{255, 0, 0, 255}));
  EXPECT_EQ(out.At(1, 0, 3), 0);
  EXPECT_EQ(out.Pixel(2, 0), (std::vector<int>{0, 0, 255, 255}));
  ASSERT_TRUE(services.CropToFile(Request("in.gif", "out.gif", {0, 0, 3, 1}, Encoder::Gif)));
  EXPECT_EQ(ReadPlainly(Path("out.gif")).At(1, 0, 0), 255);
  EXPECT_EQ(ReadPlainly(Path("out.gif")).At(1, 0, 1), 255);
}

TEST_F(FileServices, GifCutsMayLieUnderAPicture) {
  ToVips({4, 1, 1, {10, 20, 30, 40}}, VIPS_INTERPRETATION_B_W).gifsave(Path("in.gif").c_str());
  ToVips({3, 1, 4, {255, 0, 0, 255, 0, 255, 0, 0, 0, 0, 255, 255}}).pngsave(Path("over.png").c_str());
  const CropRequest request = Request("in.gif", "out.gif", {0, 0, 4, 1}, Encoder::Gif);
  ASSERT_TRUE(services.CropToGif(request, Overlay{Path("over.png"), 1, 0}));
  const Sheet out = ReadPlainly(Path("out.gif"));
  EXPECT_EQ(out.At(0, 0, 0), 10);
  EXPECT_EQ(out.Pixel(1, 0), (std::vector<int>{255, 0, 0, 255}));
  EXPECT_EQ(out.Pixel(2, 0), (std::vector<int>{30, 30, 30, 255}));  // transparent there
  EXPECT_EQ(out.Pixel(3, 0), (std::vector<int>{0, 0, 255, 255}));
  // Only the part that overlaps the crop is drawn.
  ASSERT_TRUE(services.CropToGif(request, Overlay{Path("over.png"), -2, 0}));
  EXPECT_EQ(ReadPlainly(Path("out.gif")).Pixel(0, 0), (std::vector<int>{0, 0, 255, 255}));
  ASSERT_TRUE(services.CropToGif(request, Overlay{Path("over.png"), 9, 0}));
  EXPECT_EQ(ReadPlainly(Path("out.gif")).At(3, 0, 0), 40);
  EXPECT_EQ(services.CropToGif(request, Overlay{Path("missing.png"), 0, 0}).GetProblem(), Problem::Missing);
  EXPECT_EQ(ReadPlainly(Path("out.gif")).At(3, 0, 0), 40);
}

// MediaInfo recognises none of these.
TEST_F(FileServices, ImageInfoMeasuresTheSmallestPictures) {
  for (const base::Size size : {base::Size{4, 1}, {1, 1}, {1, 4}, {2, 2}}) {
    const VImage made = ToVips(PhotoLike(size.width, size.height, 3));
    made.pngsave(Path("a.png").c_str());
    made.gifsave(Path("a.gif").c_str());
    made.jpegsave(Path("a.jpg").c_str());
    made.tiffsave(Path("a.tif").c_str());
    ASSERT_TRUE(services.SaveImageToBmpFile(Load(Path("a.png")), Path("a.bmp")));
    for (const char* name : {"a.png", "a.gif", "a.jpg", "a.tif", "a.bmp"}) {
      ImageFacts facts;
      const Status status = services.ImageInfo(Path(name), facts);
      EXPECT_TRUE(status) << name << status.Why();
      EXPECT_EQ((base::Size{facts.width, facts.height}), size) << name;
    }
  }
  world.folder.Write("text.png", "this is no picture");
  ImageFacts facts{1, 2, 3};
  EXPECT_EQ(services.ImageInfo(Path("text.png"), facts).GetProblem(), Problem::Unsupported);
  EXPECT_EQ(facts.width, 1);
}

TEST_F(FileServices, ImageInfoMeasuresEveryFormat) {
  WriteEverywhere(PhotoLike(61, 43, 3));
  ToVips(PhotoLike(61, 43, 3)).gifsave(Path("in.gif").c_str());
  world.folder.Write("in.jpg", MakeJpeg(TestPicture({61, 43}, Colours::YCbCr), {}));
  for (const char* name : {"in.png", "in.tif", "in.bmp", "in.psd", "in.gif", "in.jpg"}) {
    ImageFacts facts;
    const Status status = services.ImageInfo(Path(name), facts);
    ASSERT_TRUE(status) << name << status.Why();
    EXPECT_EQ(facts.width, 61) << name;
    EXPECT_EQ(facts.height, 43) << name;
  }
  ImageFacts facts{1, 2, 3};
  EXPECT_FALSE(services.ImageInfo(Path("missing.psd"), facts));
  EXPECT_EQ(facts.width, 1);
  EXPECT_EQ(facts.height, 2);
}

BorderRequest Border(const std::string& source, const std::string& destination) {
  BorderRequest request;
  request.source = source;
  request.destination = destination;
  return request;
}

TEST_F(FileServices, EverySaveFailsOfAFullDiskAndCanBeTriedAgain) {
  WriteEverywhere(PhotoLike(60, 40, 3));
  const Image image = Load(Path("in.png"));
  BorderRequest border = Border(Path("in.png"), Path("out.png"));
  border.total = {70, 50};
  border.drawn = {60, 40};
  const CropRequest crop = Request("in.png", "out.gif", {0, 0, 50, 30}, Encoder::Gif);
  CutSource opened;
  ASSERT_TRUE(services.OpenForCuts(crop.source, crop.encoder, opened));
  const std::function<Status()> saves[] = {
      [&] { return services.AddBoardToFile(border); },
      [&] { return services.ZoomPic(Path("in.png"), Path("zoom.png"), 30, 20); },
      [&] { return services.CropToGif(crop); },
      [&] { return services.CropToFile(opened, crop); },
      [&] { return services.SaveByEncoder(image, Path("out.bmp"), Encoder::Bmp, 80); },
  };
  for (const auto& save : saves) {
    world.boxes.Forget();
    world.boxes.Answer(kFullDisk, Reply::Retry, 1);
    world.faults.Clear();
    world.faults.Set({.call = DiskCall::Write, .nth = 1, .error = ENOSPC, .pathHolds = ""});
    EXPECT_TRUE(save().DiskFull());
    EXPECT_EQ(world.boxes.All().size(), 0u) << "asking is left to the caller";
    world.faults.Set({.call = DiskCall::Write, .nth = 1, .error = ENOSPC, .pathHolds = ""});
    const Status status = saver.Save("/out", save);
    EXPECT_TRUE(status) << status.Why();
    EXPECT_EQ(world.faults.Fired(), 2);
    EXPECT_EQ(world.boxes.Count(kFullDisk), 1);
  }
}

TEST_F(FileServices, ABorderedJpegHasTheQualityAskedFor) {
  WriteEverywhere(PhotoLike(60, 40, 3));
  BorderRequest border = Border(Path("in.png"), Path("low.jpg"));
  border.total = {70, 50};
  border.drawn = {60, 40};
  border.quality = 30;
  ASSERT_TRUE(services.AddBoardToFile(border));
  border.destination = Path("high.jpg");
  border.quality = 95;
  ASSERT_TRUE(services.AddBoardToFile(border));
  EXPECT_LT(std::filesystem::file_size(Path("low.jpg")), std::filesystem::file_size(Path("high.jpg")));
}

TEST_F(FileServices, BordersAreAdded) {
  const Sheet photo = Plain(4, 2, {10, 20, 30});
  ToVips(photo).pngsave(Path("in.png").c_str());
  BorderRequest request = Border(Path("in.png"), Path("out.png"));
  request.offsetX = 3;
  request.offsetY = 1;
  request.total = {10, 6};
  request.image = {4, 2};
  request.drawn = {4, 2};
  request.colour = base::Colour{0x0000FF};
  request.dpi = 254;
  const auto check = [&](base::Rect covered) {
    ASSERT_TRUE(services.AddBoardToFile(request));
    const Sheet out = ReadPlainly(Path("out.png"));
    ASSERT_EQ(out.width, 10);
    ASSERT_EQ(out.height, 6);
    for (int y = 0; y < 6; ++y) {
      for (int x = 0; x < 10; ++x) {
        const bool inside = x >= covered.left && x < covered.left + covered.width && y >= covered.top &&
                            y < covered.top + covered.height;
        ASSERT_EQ(out.Pixel(x, y), inside ? (std::vector<int>{10, 20, 30}) : (std::vector<int>{255, 0, 0}))
            << x << " " << y;
      }
    }
  };
  check({3, 1, 4, 2});
  EXPECT_EQ(services.GetImageResolution(Load(Path("out.png"))), 254);
  request.scale = 1.5;  // 6 x 3
  check({3, 1, 6, 3});
  request.scale = 1;
  request.drawn = {2, 4};
  check({3, 1, 2, 4});
  request.offsetX = -1;
  request.offsetY = 4;
  check({-1, 4, 2, 4});
  request.rotation = 90;
  request.drawn = {2, 4};
  check({-1, 4, 2, 4});
  request.total = {0, 5};
  EXPECT_FALSE(services.AddBoardToFile(request));
  request = Border(Path("missing.png"), Path("none.png"));
  request.total = {5, 5};
  request.drawn = {2, 2};
  EXPECT_EQ(services.AddBoardToFile(request).GetProblem(), Problem::Missing);
  EXPECT_FALSE(world.folder.Exists("none.png"));
}

TEST_F(FileServices, TheTypeOfABorderedFileIsItsExtension) {
  ToVips(PhotoLike(20, 20, 3)).pngsave(Path("in.png").c_str());
  for (const auto& [name, head] :
       {std::pair{"a.jpg", "\xFF\xD8"}, {"a.TIF", "II*"}, {"a.bmp", "BM"}, {"a.gif", "GIF8"}}) {
    BorderRequest request = Border(Path("in.png"), Path(name));
    request.total = {30, 30};
    request.drawn = {20, 20};
    ASSERT_TRUE(services.AddBoardToFile(request));
    EXPECT_TRUE(world.folder.Read(name).starts_with(head)) << name;
    EXPECT_EQ(services.GetImageWidth(Load(Path(name))), 30);
  }
  // Source and destination are the same file.
  BorderRequest request = Border(Path("in.png"), Path("in.png"));
  request.total = {33, 30};
  request.drawn = {20, 20};
  ASSERT_TRUE(services.AddBoardToFile(request));
  EXPECT_EQ(services.GetImageWidth(Load(Path("in.png"))), 33);
}

TEST_F(FileServices, AGreyPictureGetsItsColouredBorder) {
  ToVips(Plain(2, 2, {50}), VIPS_INTERPRETATION_B_W).pngsave(Path("in.png").c_str());
  BorderRequest request = Border(Path("in.png"), Path("out.png"));
  request.total = {3, 2};
  request.drawn = {2, 2};
  request.colour = base::Colour{0x00FF00};
  ASSERT_TRUE(services.AddBoardToFile(request));
  EXPECT_EQ(ReadPlainly(Path("out.png")),
            (Sheet{3, 2, 3, {50, 50, 50, 50, 50, 50, 0, 255, 0, 50, 50, 50, 50, 50, 50, 0, 255, 0}}));
}

TEST_F(FileServices, ZoomPicScalesEveryFormat) {
  WriteEverywhere(PhotoLike(64, 48, 3));
  world.folder.Write("in.jpg", MakeJpeg(TestPicture({64, 48}, Colours::YCbCr), {}));
  std::vector<std::string> sources = kLossless;
  sources.push_back("in.jpg");
  for (const std::string& source : sources) {
    for (const base::Size size : {base::Size{32, 24}, {7, 90}, {130, 100}, {64, 48}}) {
      for (const char* name : {"out.jpg", "out.png", "out.bmp"}) {
        SCOPED_TRACE(source + " " + name);
        const Status status = services.ZoomPic(Path(source), Path(name), size.width, size.height);
        ASSERT_TRUE(status) << status.Why();
        const Image image = Load(Path(name));
        EXPECT_EQ(services.GetImageWidth(image), size.width);
        EXPECT_EQ(services.GetImageHeight(image), size.height);
      }
    }
  }
  EXPECT_FALSE(services.ZoomPic(Path("in.png"), Path("no.png"), 0, 5));
  EXPECT_FALSE(services.ZoomPic(Path("missing"), Path("no.png"), 5, 5));
  EXPECT_FALSE(world.folder.Exists("no.png"));
}

TEST_F(FileServices, ZoomPicKeepsExifIfAsked) {
  Image tagged;
  ASSERT_TRUE(services.NewCanvas({40, 20}, base::kWhite, tagged));
  tagged.Data()->picture.tags.exif = ExifWithThumbnail(3);
  ASSERT_TRUE(services.SaveImageToJpgFile(tagged, Path("a.jpg"), 90, Exif::Keep));
  ASSERT_TRUE(services.ZoomPic(Path("a.jpg"), Path("b.jpg"), 20, 10, Exif::Keep));
  EXPECT_NE(world.folder.Read("b.jpg").find("Camera"), std::string::npos);
  ASSERT_TRUE(services.ZoomPic(Path("a.jpg"), Path("b.jpg"), 20, 10));
  EXPECT_EQ(world.folder.Read("b.jpg").find("Camera"), std::string::npos);
}

TEST_F(FileServices, PreviewsFitAndShowDisplayedColours) {
  WriteEverywhere(Plain(300, 200, {10, 20, 30}));
  for (const std::string& source : kLossless) {
    Services::Preview preview;
    const Status status = services.LoadPreview(Path(source), {100, 100}, preview);
    ASSERT_TRUE(status) << source << status.Why();
    EXPECT_EQ(preview.original, (base::Size{300, 200}));
    EXPECT_EQ(preview.size, (base::Size{100, 66}));
    ASSERT_EQ(preview.rgb.size(), 100u * 66 * 3);
    EXPECT_EQ(preview.rgb[3 * 5050], 10);
    EXPECT_EQ(preview.rgb[3 * 5050 + 2], 30);
    // The preview is never larger than the picture.
    ASSERT_TRUE(services.LoadPreview(Path(source), {9000, 9000}, preview));
    EXPECT_EQ(preview.size, (base::Size{300, 200}));
  }
  Services::Preview preview;
  ToVips(Plain(8, 8, {0, 0, 0, 0}), VIPS_INTERPRETATION_CMYK).tiffsave(Path("inks.tif").c_str());
  ASSERT_TRUE(services.LoadPreview(Path("inks.tif"), {8, 8}, preview));
  EXPECT_EQ(preview.rgb, std::vector<unsigned char>(192, 255));
  ToVips(Plain(8, 8, {7, 0}), VIPS_INTERPRETATION_B_W).pngsave(Path("clear.png").c_str());
  ASSERT_TRUE(services.LoadPreview(Path("clear.png"), {4, 8}, preview));
  EXPECT_EQ(preview.rgb, std::vector<unsigned char>(4 * 4 * 3, 255));
  ToVipsDeep(Plain(8, 8, {0, 65535, 257})).pngsave(Path("deep.png").c_str());
  ASSERT_TRUE(services.LoadPreview(Path("deep.png"), {1, 1}, preview));
  EXPECT_EQ(preview.rgb, (std::vector<unsigned char>{0, 255, 1}));
  EXPECT_FALSE(services.LoadPreview(Path("missing"), {4, 8}, preview));
}

TEST_F(FileServices, PreviewsOfJpegsAreTheReducedPicture) {
  ToVips(PhotoLike(801, 603, 3)).jpegsave(Path("in.jpg").c_str(), VImage::option()->set("Q", 95));
  const VImage whole = Load(Path("in.jpg")).Data()->picture.pixels;
  for (const base::Size limit : {base::Size{50, 50}, {99, 500}, {400, 400}, {801, 603}}) {
    Services::Preview preview;
    ASSERT_TRUE(services.LoadPreview(Path("in.jpg"), limit, preview));
    EXPECT_EQ(preview.original, (base::Size{801, 603}));
    EXPECT_LE(preview.size.width, limit.width);
    EXPECT_LE(preview.size.height, limit.height);
    const Sheet expected = FromVips(Scaled(whole, preview.size));
    int sum = 0;
    for (std::size_t i = 0; i < preview.rgb.size(); ++i) sum += std::abs(preview.rgb[i] - expected.values[i]);
    EXPECT_LT(sum / static_cast<double>(preview.rgb.size()), 3) << limit.width;
  }
}

}  // namespace
}  // namespace quillon::imaging
