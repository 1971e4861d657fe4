// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/huge_picture.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/path_text.h"
#include "imaging/jpeg_maker.h"
#include "imaging/pictures.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using host::Problem;
using vips::VImage;

class HugePicture : public ServicesTest {
 protected:
  Status Make(const HugeOrder& order, const Limits& limits = {}) {
    return MakeFromHuge(world.host.files, order, limits);
  }
  HugeOrder Order(const std::string& source, const std::string& target) {
    HugeOrder order;
    order.source = Path(source);
    order.target = Path(target);
    return order;
  }
  Sheet Cut(const std::string& source, base::Rect rect) {
    HugeOrder order = Order(source, "out.png");
    order.cut = rect;
    const Status status = Make(order);
    EXPECT_TRUE(status) << source << ": " << status.Why();
    return status ? ReadPlainly(Path("out.png")) : Sheet{};
  }

  // The same picture in every kind of TIFF that can be read in parts, and in some that cannot.
  std::vector<std::string> WriteTiffs(const Sheet& sheet) {
    const VImage made = ToVips(sheet);
    const auto with = [](const char* name, auto value) { return VImage::option()->set(name, value); };
    made.tiffsave(Path("strips.tif").c_str());
    made.tiffsave(Path("lzw.tif").c_str(), with("compression", VIPS_FOREIGN_TIFF_COMPRESSION_LZW)
                                               ->set("predictor", VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL));
    made.tiffsave(Path("tiles.tif").c_str(), with("tile", true)->set("tile_width", 64)->set("tile_height", 32));
    made.tiffsave(Path("deflate.tif").c_str(), with("tile", true)
                                                   ->set("tile_width", 16)
                                                   ->set("tile_height", 16)
                                                   ->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE));
    made.tiffsave(Path("big.tif").c_str(), with("bigtiff", true)->set("tile", true));
    return {"strips.tif", "lzw.tif", "tiles.tif", "deflate.tif", "big.tif"};
  }
};

const base::Rect kRects[] = {{0, 0, 211, 157}, {13, 41, 100, 90}, {210, 156, 1, 1}, {63, 31, 2, 2}, {0, 150, 211, 7}};

TEST_F(HugePicture, CutsAnyRegionOfTiffs) {
  const Sheet photo = PhotoLike(211, 157, 3);
  for (const std::string& name : WriteTiffs(photo)) {
    SCOPED_TRACE(name);
    for (const base::Rect& rect : kRects) EXPECT_EQ(Cut(name, rect), Part(photo, rect)) << rect.left;
  }
}

TEST_F(HugePicture, CutsTiffsOfEveryKind) {
  const Sheet grey = PhotoLike(70, 50, 1);
  ToVips(grey, VIPS_INTERPRETATION_B_W).tiffsave(Path("grey.tif").c_str());
  EXPECT_EQ(Cut("grey.tif", {3, 4, 50, 40}), Part(grey, {3, 4, 50, 40}));
  const Sheet clear = PhotoLike(70, 50, 4);
  ToVips(clear).tiffsave(Path("clear.tif").c_str(), VImage::option()->set("tile", true));
  EXPECT_EQ(Cut("clear.tif", {3, 4, 50, 40}), Part(clear, {3, 4, 50, 40}));
  const Sheet deep = PhotoLike(70, 50, 3, 65535);
  ToVipsDeep(deep).tiffsave(Path("deep.tif").c_str());
  EXPECT_EQ(Cut("deep.tif", {3, 4, 50, 40}), Part(deep, {3, 4, 50, 40}));
  // Kinds that libvips decodes: one bit with 0 as white, a palette, another sample format.
  Sheet dots = Plain(70, 50, {255});
  for (int i = 0; i < 3500; i += 3) dots.values[static_cast<std::size_t>(i)] = 0;
  ToVips(dots, VIPS_INTERPRETATION_B_W)
      .tiffsave(Path("fax.tif").c_str(),
                VImage::option()->set("bitdepth", 1)->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_CCITTFAX4));
  EXPECT_EQ(Cut("fax.tif", {3, 4, 50, 40}), Part(dots, {3, 4, 50, 40}));
  // CMYK stays CMYK.
  const Sheet ink = PhotoLike(70, 50, 4);
  ToVips(ink, VIPS_INTERPRETATION_CMYK).tiffsave(Path("ink.tif").c_str());
  HugeOrder order = Order("ink.tif", "out.tif");
  order.cut = {3, 4, 50, 40};
  ASSERT_TRUE(Make(order));
  EXPECT_EQ(ReadPlainly(Path("out.tif")), Part(ink, {3, 4, 50, 40}));
  EXPECT_EQ(LoadPlainly(Path("out.tif")).interpretation(), VIPS_INTERPRETATION_CMYK);
}

TEST_F(HugePicture, CutsOtherFormats) {
  const Sheet photo = PhotoLike(211, 157, 3);
  ToVips(photo).pngsave(Path("a.png").c_str());
  ASSERT_TRUE(services.SaveImageToBmpFile(Load(Path("a.png")), Path("a.bmp")));
  ToVips(photo).jpegsave(Path("a.jpg").c_str());
  const Sheet decoded = ReadPlainly(Path("a.jpg"));
  for (const base::Rect& rect : kRects) {
    EXPECT_EQ(Cut("a.png", rect), Part(photo, rect));
    EXPECT_EQ(Cut("a.bmp", rect), Part(photo, rect));
    EXPECT_LE(Difference(Cut("a.jpg", rect), Part(decoded, rect)), 1);
  }
}

// A plain crop of a JPEG writes the same file as the normal cut.
TEST_F(HugePicture, AJpegIsCutAsTheNormalCutDoes) {
  world.folder.Write("a.jpg", MakeJpeg(TestPicture({200, 160}, Colours::YCbCr), {}));
  HugeOrder order = Order("a.jpg", "out.jpg");
  order.cut = {21, 33, 100, 77};
  order.quality = 91;
  ASSERT_TRUE(Make(order));
  ASSERT_TRUE(services.CropToFile(
      {.source = Path("a.jpg"), .destination = Path("b.jpg"), .rect = {21, 33, 100, 77}, .quality = 91}));
  EXPECT_TRUE(world.folder.Read("out.jpg") == world.folder.Read("b.jpg"));
}

// The row-by-row way and the pipeline write the same JPEG.
TEST_F(HugePicture, TiffPartsBecomeTheJpegOfTheNormalCut) {
  const base::Rect rect{13, 41, 100, 90};
  std::vector<std::string> names = WriteTiffs(PhotoLike(211, 157, 3));
  ToVips(PhotoLike(211, 157, 1), VIPS_INTERPRETATION_B_W).tiffsave(Path("grey.tif").c_str());
  ToVips(PhotoLike(211, 157, 4), VIPS_INTERPRETATION_CMYK).tiffsave(Path("ink.tif").c_str());
  ToVips(PhotoLike(211, 157, 4)).tiffsave(Path("clear.tif").c_str());
  ToVipsDeep(PhotoLike(211, 157, 3, 65535)).tiffsave(Path("deep.tif").c_str());
  names.insert(names.end(), {"grey.tif", "ink.tif", "clear.tif", "deep.tif"});
  for (const std::string& name : names) {
    HugeOrder order = Order(name, "out.jpg");
    order.cut = rect;
    ASSERT_TRUE(Make(order));
    ASSERT_TRUE(services.CropToFile(
        {.source = Path(name), .destination = Path("b.jpg"), .rect = rect, .encoder = Encoder::Jpeg, .quality = 98}));
    EXPECT_TRUE(world.folder.Read("out.jpg") == world.folder.Read("b.jpg")) << name;
  }
}

TEST_F(HugePicture, ACutPastTheEdgeIsClamped) {
  const Sheet photo = PhotoLike(60, 40, 3);
  ToVips(photo).tiffsave(Path("a.tif").c_str());
  ToVips(photo).pngsave(Path("a.png").c_str());
  world.folder.Write("a.jpg", MakeJpeg(TestPicture({60, 40}, Colours::YCbCr), {}));
  for (const char* name : {"a.tif", "a.png", "a.jpg"}) {
    SCOPED_TRACE(name);
    for (const char* target : {"out.png", "out.jpg"}) {
      HugeOrder order = Order(name, target);
      order.cut = {-5, -7, 20, 20};
      ASSERT_TRUE(Make(order));
      EXPECT_EQ(LoadPlainly(Path(target)).width(), 15);
      EXPECT_EQ(LoadPlainly(Path(target)).height(), 13);
      order.cut = {50, 30, 2000, 1000};
      ASSERT_TRUE(Make(order));
      EXPECT_EQ(LoadPlainly(Path(target)).width(), 10);
      EXPECT_EQ(LoadPlainly(Path(target)).height(), 10);
      order.cut = {60, 0, 5, 5};
      EXPECT_EQ(Make(order).GetProblem(), Problem::Other);
      EXPECT_FALSE(world.folder.Exists(target));
    }
  }
  EXPECT_EQ(Cut("a.tif", {-5, -7, 20, 20}), Part(photo, {0, 0, 15, 13}));
}

TEST_F(HugePicture, ScalesTurnsAndGreysInThisOrder) {
  ToVips(PhotoLike(400, 300, 3)).tiffsave(Path("a.tif").c_str());
  HugeOrder order = Order("a.tif", "out.png");
  order.cut = {100, 100, 200, 100};
  order.size = {100, 50};
  order.angle = 90;
  order.grey = true;
  ASSERT_TRUE(Make(order));
  Image image = Load(Path("a.tif"));
  ASSERT_TRUE(services.CutImage(image, *order.cut));
  ASSERT_TRUE(services.ResampleImage(image, 100, 50));
  ASSERT_TRUE(services.RotateImage(image, 90, base::kWhite));
  ASSERT_TRUE(services.ConvertImageToGrayMode(image));
  EXPECT_EQ(ReadPlainly(Path("out.png")), PixelsOf(image));
  // Above the memory limit the rotation uses a temporary file.
  Limits tight;
  tight.memory = 10000;
  HugeOrder second = order;
  second.target = Path("out2.png");
  ASSERT_TRUE(Make(second, tight));
  EXPECT_TRUE(world.folder.Read("out.png") == world.folder.Read("out2.png"));
}

TEST_F(HugePicture, ScalesOnlyIfAsked) {
  ToVips(PhotoLike(40, 30, 3)).pngsave(Path("a.png").c_str());
  struct Case {
    base::Size size;
    bool shrink;
    bool enlarge;
    base::Size expected;
  };
  for (const Case& c : {Case{{20, 15}, true, true, {20, 15}},
                        {{80, 60}, true, true, {80, 60}},
                        {{20, 15}, true, false, {20, 15}},
                        {{80, 60}, true, false, {40, 30}},
                        {{20, 15}, false, true, {40, 30}},
                        {{80, 60}, false, true, {80, 60}},
                        {{20, 60}, true, false, {40, 30}},
                        {{20, 60}, true, true, {20, 60}},
                        {{0, 0}, true, true, {40, 30}}}) {
    HugeOrder order = Order("a.png", "out.png");
    order.size = c.size;
    order.shrink = c.shrink;
    order.enlarge = c.enlarge;
    ASSERT_TRUE(Make(order));
    EXPECT_EQ(services.GetImageWidth(Load(Path("out.png"))), c.expected.width);
    EXPECT_EQ(services.GetImageHeight(Load(Path("out.png"))), c.expected.height);
  }
}

// A scaled JPEG shows the same picture for every reduction of its decoder.
TEST_F(HugePicture, JpegsAreScaledOnTheWay) {
  ToVips(PhotoLike(801, 603, 3)).jpegsave(Path("a.jpg").c_str(), VImage::option()->set("Q", 95));
  for (const base::Size size : {base::Size{700, 527}, {400, 301}, {133, 100}, {50, 38}}) {
    HugeOrder order = Order("a.jpg", "out.png");
    order.size = size;
    ASSERT_TRUE(Make(order));
    Image image = Load(Path("a.jpg"));
    ASSERT_TRUE(services.ResampleImage(image, size.width, size.height));
    const Sheet expected = PixelsOf(image);
    const Sheet made = ReadPlainly(Path("out.png"));
    ASSERT_EQ(made.values.size(), expected.values.size());
    double sum = 0;
    for (std::size_t i = 0; i < made.values.size(); ++i) sum += std::abs(made.values[i] - expected.values[i]);
    EXPECT_LT(sum / static_cast<double>(made.values.size()), 6) << size.width;
  }
}

// The direct way works in YCC. Its result differs from that of the pipeline only by the losses of JPEG.
TEST_F(HugePicture, AJpegBecomesASmallerJpegRowByRow) {
  struct Case {
    Colours colours;
    Scans scans = Scans::One;
  };
  for (const Case& c : {Case{Colours::YCbCr},
                        {Colours::YCbCr, Scans::Progressive},
                        {Colours::Grey},
                        {Colours::Rgb},
                        {Colours::AdobeCmyk},
                        {Colours::Ycck}}) {
    world.folder.Write(
        "a.jpg", MakeJpeg(TestPicture({803, 605}, c.colours),
                          {.colours = c.colours, .luma = {1, 1}, .scans = c.scans, .densityUnit = 1, .density = 254}));
    for (const base::Size size : {base::Size{803, 300}, {400, 301}, {201, 151}, {99, 74}, {50, 38}, {7, 5}}) {
      HugeOrder order = Order("a.jpg", "out.jpg");
      order.size = size;
      order.quality = 100;
      ASSERT_TRUE(Make(order));
      order.target = Path("out.tif");
      ASSERT_TRUE(Make(order));
      const Sheet expected = PixelsOf(Load(Path("out.tif")));
      const Sheet made = PixelsOf(Load(Path("out.jpg")));
      ASSERT_EQ(made.values.size(), expected.values.size()) << static_cast<int>(c.colours);
      double sum = 0;
      for (std::size_t i = 0; i < made.values.size(); ++i) sum += std::abs(made.values[i] - expected.values[i]);
      EXPECT_LT(sum / static_cast<double>(made.values.size()), 4) << static_cast<int>(c.colours) << " " << size.width;
      EXPECT_EQ(services.GetImageResolution(Load(Path("out.jpg"))), services.GetImageResolution(Load(Path("a.jpg"))));
    }
  }
}

TEST_F(HugePicture, ATornJpegMakesNoSmallerOne) {
  const std::string whole = MakeJpeg(TestPicture({800, 600}, Colours::YCbCr), {});
  for (const std::size_t size : {whole.size() - 3, whole.size() * 9 / 10, whole.size() / 2}) {
    world.folder.Write("a.jpg", whole.substr(0, size));
    HugeOrder order = Order("a.jpg", "out.jpg");
    order.size = {100, 75};
    EXPECT_EQ(Make(order).GetProblem(), Problem::Damaged) << size;
    EXPECT_FALSE(world.folder.Exists("out.jpg"));
  }
}

TEST_F(HugePicture, TagsGoAlong) {
  Image image = Load(Path((ToVips(PhotoLike(40, 30, 3)).pngsave(Path("a.png").c_str()), "a.png")));
  image.Data()->picture.tags = {.profile = ProfileFor("RGB "), .orientation = 6, .dpi = 254};
  for (const char* type : {"tif", "jpg"}) {
    Image copy;
    ASSERT_TRUE(services.CloneImage(image, copy));
    ASSERT_TRUE(services.SaveByType(copy, Path(std::string("t.") + type), type, {}));
    for (const char* target : {"out.tif", "out.png", "out.jpg"}) {
      for (const double angle : {0.0, 90.0}) {
        HugeOrder order = Order(std::string("t.") + type, target);
        order.cut = {1, 2, 20, 20};
        order.angle = angle;
        ASSERT_TRUE(Make(order));
        const PictureTags tags = Load(Path(target)).Data()->picture.tags;
        EXPECT_EQ(tags.profile, ProfileFor("RGB ")) << type << " " << target;
        EXPECT_EQ(tags.dpi, 254) << type << " " << target;
        EXPECT_EQ(tags.orientation, angle == 0 ? 6 : 1) << type << " " << target;
      }
    }
  }
}

// The row-by-row way writes the same pixels as the pipeline.
TEST_F(HugePicture, PartsOfEveryKindAreSavedAsTiffAndPng) {
  const base::Rect rect{13, 41, 50, 9};
  ToVips(PhotoLike(70, 60, 1), VIPS_INTERPRETATION_B_W).tiffsave(Path("grey.tif").c_str());
  ToVips(PhotoLike(70, 60, 3)).tiffsave(Path("rgb.tif").c_str());
  ToVips(PhotoLike(70, 60, 4)).tiffsave(Path("clear.tif").c_str(), VImage::option()->set("tile", true));
  ToVips(PhotoLike(70, 60, 4), VIPS_INTERPRETATION_CMYK).tiffsave(Path("ink.tif").c_str());
  ToVipsDeep(PhotoLike(70, 60, 3, 65535)).tiffsave(Path("deep.tif").c_str());
  ToVips(PhotoLike(70, 60, 4)).pngsave(Path("clear.png").c_str());
  ToVipsDeep(PhotoLike(70, 60, 3, 65535)).pngsave(Path("deep.png").c_str());
  for (const char* name : {"grey.tif", "rgb.tif", "clear.tif", "ink.tif", "deep.tif", "clear.png", "deep.png"}) {
    for (const char* target : {"out.tif", "out.png"}) {
      HugeOrder order = Order(name, target);
      order.cut = rect;
      ASSERT_TRUE(Make(order)) << name;
      Image image = Load(Path(name));
      ASSERT_TRUE(services.CutImage(image, rect));
      ASSERT_TRUE(services.SaveByType(image, Path(std::string("b") + target), base::SplitPath(target).extension, {}));
      const VImage made = LoadPlainly(Path(target));
      const VImage expected = LoadPlainly(Path(std::string("b") + target));
      EXPECT_EQ(FromVips(made), FromVips(expected)) << name << " " << target;
      EXPECT_EQ(made.interpretation(), expected.interpretation()) << name << " " << target;
      EXPECT_EQ(made.format(), expected.format()) << name << " " << target;
    }
  }
}

// A full disk leaves no partial file.
TEST_F(HugePicture, AFullDiskIsReported) {
  ToVips(PhotoLike(200, 200, 3)).tiffsave(Path("a.tif").c_str());
  for (const char* target : {"out.tif", "out.png", "out.jpg"}) {
    world.faults.Set({.call = host::testing::DiskCall::Write, .nth = 1, .error = ENOSPC, .pathHolds = target});
    HugeOrder order = Order("a.tif", target);
    order.cut = {0, 0, 150, 150};
    EXPECT_TRUE(Make(order).DiskFull()) << target;
    EXPECT_FALSE(world.folder.Exists(target));
    world.faults.Clear();
  }
}

TEST_F(HugePicture, WhatIsNotMeantIsRefused) {
  ToVips(PhotoLike(40, 30, 3)).tiffsave(Path("a.tif").c_str());
  HugeOrder order = Order("a.tif", "out.png");
  order.minimum = {40, 31};
  EXPECT_EQ(Make(order).GetProblem(), Problem::Unsupported);
  order.minimum = {40, 30};
  EXPECT_TRUE(Make(order));
  EXPECT_EQ(Make(Order("missing.tif", "out2.png")).GetProblem(), Problem::Missing);
  world.folder.Write("text.tif", "no picture");
  EXPECT_EQ(Make(Order("text.tif", "out2.png")).GetProblem(), Problem::Unsupported);
  EXPECT_FALSE(world.folder.Exists("out2.png"));
}

TEST_F(HugePicture, AnOlderTargetGoesToTheTrashWhateverFails) {
  ToVips(PhotoLike(40, 30, 3)).tiffsave(Path("a.tif").c_str());
  world.folder.Write("text.tif", "no picture");
  for (const char* source : {"a.tif", "missing.tif", "text.tif"}) {
    HugeOrder order = Order(source, "out.png");
    order.minimum = {40, 31};
    world.folder.Write("out.png", source);
    EXPECT_FALSE(Make(order));
    EXPECT_FALSE(world.folder.Exists("out.png")) << source;
  }
  EXPECT_EQ(world.folder.Names("data/Trash/files").size(), 3u);
}

// A read-only target is refused before the work begins.
TEST_F(HugePicture, ATargetThatMustNotBeReplacedStays) {
  world.folder.Write("out.png", "kept");
  std::filesystem::permissions(Path("out.png"), std::filesystem::perms::owner_read);
  EXPECT_EQ(Make(Order("missing.tif", "out.png")).GetProblem(), Problem::Denied);
  EXPECT_EQ(world.folder.Read("out.png"), "kept");
}

// A truncated or corrupt TIFF fails without a result and without a crash.
TEST_F(HugePicture, DamagedTiffsNeverCrash) {
  for (const std::string& name : WriteTiffs(PhotoLike(211, 157, 3))) {
    const std::string bytes = world.folder.Read(name);
    unsigned seed = 7;
    for (int round = 0; round < 60; ++round) {
      seed = seed * 1664525u + 1013904223u;
      std::string odd = bytes;
      if (round % 3 == 0) odd.resize((seed >> 4) % odd.size());
      const std::size_t span = std::min<std::size_t>(odd.size(), 500);
      if (span > 0) {
        const std::size_t at = round % 2 ? odd.size() - 1 - (seed >> 8) % span : (seed >> 8) % span;
        odd[at] = static_cast<char>(odd[at] ^ (1 << (seed >> 3 & 7)));
      }
      world.folder.Write("odd.tif", odd);
      HugeOrder order = Order("odd.tif", "out.png");
      order.cut = {50, 120, 100, 30};
      const Status status = Make(order);
      EXPECT_EQ(world.folder.Exists("out.png"), static_cast<bool>(status));
      EXPECT_EQ(status.Why().empty(), static_cast<bool>(status));
      (void)world.host.files.RemoveOwn(Path("out.png"));
    }
  }
}

}  // namespace
}  // namespace quillon::imaging
