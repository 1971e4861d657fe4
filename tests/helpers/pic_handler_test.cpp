// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <filesystem>

#include "build_paths.h"
#include "helpers/helper_process.h"
#include "helpers/pdf/pdf_render.h"
#include "helpers/pdfs.h"
#include "helpers/pictures.h"
#include "helpers/runtime/child.h"
#include "host/testing/test_host.h"
#include "imaging/services.h"

namespace quillon::helpers {
namespace {

using testing::Load;
using testing::Plain;
using testing::Save;
using testing::Waves;

class PicHandlerTest : public ::testing::Test {
 protected:
  PicHandlerTest() { std::filesystem::copy(QUILLON_BINARY_DIR "/bin/ColorConfigs", folder.Path("ColorConfigs")); }

  Ran ToCmyk(const std::string& file, const std::string& extension = ".jpg") {
    return folder.Run("PicHandler",
                      {"\"" + file + "\"  -profile \"" + folder.Path("ColorConfigs/sRGB.icc") + "\" -profile \"" +
                       folder.Path("ColorConfigs/Default.icm") + "\" \"" + folder.Path("Tmp" + extension) + "\""});
  }
  Ran ToPdf(const std::string& file, const std::string& base, const std::string& options) {
    return folder.Run("PicHandler", {"\"" + file + "\"  -interlace none -verbose -quality " + options +
                                     " -depth 24 -colorspace RGB \"" + base + ".pdf\""});
  }

  HelperFolder folder;
};

TEST_F(PicHandlerTest, WhiteIsNoInkAndBlackIsDark) {
  testing::Pixels page = Plain(64, 64, {255, 255, 255});
  for (int i = 0; i < 64 * 32 * 3; ++i) page.values[static_cast<std::size_t>(i)] = 0;
  Save(folder.Path("a b.jpg"), page, 254);
  const Ran ran = ToCmyk(folder.Path("a b.jpg"));
  ASSERT_EQ(ran.exit, 0) << ran.err;
  const testing::Pixels made = Load(folder.Path("Tmp.jpg"));
  ASSERT_EQ(made.bands, 4);
  EXPECT_EQ(made.width, 64);
  EXPECT_EQ(testing::DpiOf(folder.Path("Tmp.jpg")), 254);
  for (const int ink : made.At(32, 60)) EXPECT_LE(ink, 2);
  const std::vector<int> black = made.At(32, 4);
  EXPECT_GE(black[0] + black[1] + black[2] + black[3], 2 * 255);
  EXPECT_NE(folder.Read("Tmp.jpg").find("ICC_PROFILE"), std::string::npos);
}

TEST_F(PicHandlerTest, ColoursAreThoseOfImageMagick) {
  for (const std::vector<int>& colour :
       std::vector<std::vector<int>>{{255, 0, 0}, {0, 128, 0}, {30, 60, 200}, {128, 128, 128}}) {
    Save(folder.Path("a.jpg"), Plain(32, 32, colour));
    ASSERT_EQ(ToCmyk(folder.Path("a.jpg")).exit, 0);
    ASSERT_TRUE(RunProgram({"convert", folder.Path("a.jpg"), "-sampling-factor", "1x1", "-profile",
                            folder.Path("ColorConfigs/sRGB.icc"), "-profile", folder.Path("ColorConfigs/Default.icm"),
                            folder.Path("b.jpg")}));
    const std::vector<int> ours = Load(folder.Path("Tmp.jpg")).At(16, 16);
    const std::vector<int> theirs = Load(folder.Path("b.jpg")).At(16, 16);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(ours[i], theirs[i], 2) << colour[0] << " ink " << i;
  }
}

TEST_F(PicHandlerTest, TiffAndGreyAreConvertedToo) {
  Save(folder.Path("a.tif"), Waves(40, 30), 300);
  ASSERT_EQ(ToCmyk(folder.Path("a.tif"), ".tif").exit, 0);
  EXPECT_EQ(Load(folder.Path("Tmp.tif")).bands, 4);
  Save(folder.Path("g.jpg"), Waves(40, 30, 1));
  ASSERT_EQ(ToCmyk(folder.Path("g.jpg")).exit, 0);
  EXPECT_EQ(Load(folder.Path("Tmp.jpg")).bands, 4);
}

TEST_F(PicHandlerTest, PicturesBeyondTheLimitsOfImageMagickAreConverted) {
  Save(folder.Path("a.jpg"), Plain(17000, 8, {200, 100, 50}));
  const Ran ran = ToCmyk(folder.Path("a.jpg"));
  ASSERT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(Load(folder.Path("Tmp.jpg")).width, 17000);
}

TEST_F(PicHandlerTest, AJpegGoesIntoThePdfByteForByte) {
  Save(folder.Path("a b.jpg"), Waves(900, 600), 96);
  const Ran ran = ToPdf(folder.Path("a b.jpg"), folder.Path("a b"), "100 -units pixelsperinch -density 300x300");
  ASSERT_EQ(ran.exit, 0) << ran.err;
  ASSERT_EQ(testing::PagesOf(folder.Path("a b.pdf")), 1);
  const testing::Seen seen = testing::SeenSize(folder.Path("a b.pdf"), 0);
  EXPECT_DOUBLE_EQ(seen.width, 216);
  EXPECT_DOUBLE_EQ(seen.height, 144);
  EXPECT_NE(folder.Read("a b.pdf").find(folder.Read("a b.jpg")), std::string::npos);
}

TEST_F(PicHandlerTest, WithoutADensityThePageFollowsThePicture) {
  Save(folder.Path("a.jpg"), Waves(300, 150), 150);
  ASSERT_EQ(ToPdf(folder.Path("a.jpg"), folder.Path("a"), " 85  -units pixelsperinch ").exit, 0);
  EXPECT_DOUBLE_EQ(testing::SeenSize(folder.Path("a.pdf"), 0).width, 144);
}

TEST_F(PicHandlerTest, OtherPicturesBecomeJpegsInThePdf) {
  Save(folder.Path("a.png"), Waves(300, 150), 150);
  const Ran ran = ToPdf(folder.Path("a.png"), folder.Path("a"), "85 -units pixelsperinch -density 72x72");
  ASSERT_EQ(ran.exit, 0) << ran.err;
  EXPECT_DOUBLE_EQ(testing::SeenSize(folder.Path("a.pdf"), 0).width, 300);
  EXPECT_FALSE(folder.Exists("PicHandler.jpg"));
}

// --- The page as it is seen

class PicHandlerPage : public PicHandlerTest {
 protected:
  // Upper half black, lower half white.
  static testing::Pixels Halves(int bands) {
    testing::Pixels page = Plain(64, 64, std::vector<int>(static_cast<std::size_t>(bands), 255));
    for (int i = 0; i < 64 * 32 * bands; ++i) {
      if (bands < 4 || i % 4 != 3) page.values[static_cast<std::size_t>(i)] = 0;
    }
    return page;
  }
  void ExpectHalves(const std::string& pdf) {
    PdfRenderer renderer;
    imaging::Image page;
    ASSERT_TRUE(renderer.Open(pdf));
    ASSERT_TRUE(renderer.Render(0, 72, 1, page));
    ASSERT_TRUE(images.SaveByEncoder(page, folder.Path("seen.png"), imaging::Encoder::Png, 90));
    const testing::Pixels seen = Load(folder.Path("seen.png"));
    ASSERT_EQ(seen.width, 64);
    for (const int sample : seen.At(32, 8)) EXPECT_LE(sample, 60);
    for (const int sample : seen.At(32, 56)) EXPECT_GE(sample, 250);
  }

  host::testing::TestHost world;
  imaging::Services images{world.files, world.host.programFolder};
};

TEST_F(PicHandlerPage, BlackAndWhiteStay) {
  const std::string density = "98 -units pixelsperinch -density 72x72";
  for (const int bands : {1, 3, 4}) {
    const std::string picture = folder.Path("a" + std::to_string(bands) + ".png");
    Save(picture, Halves(bands));
    ASSERT_EQ(ToPdf(picture, folder.Path("a"), density).exit, 0) << bands;
    ExpectHalves(folder.Path("a.pdf"));
  }
  ASSERT_EQ(ToCmyk(folder.Path("a3.png")).exit, 0);
  ASSERT_EQ(ToPdf(folder.Path("Tmp.jpg"), folder.Path("a"), density).exit, 0);
  ExpectHalves(folder.Path("a.pdf"));
}

TEST_F(PicHandlerPage, SidesBeyondTheLimitsOfImageMagickAreBound) {
  for (const char* name : {"a.jpg", "a.png"}) {
    Save(folder.Path(name), Plain(17000, 8, {200, 100, 50}));
    const Ran ran = ToPdf(folder.Path(name), folder.Path("a"), "90 -units pixelsperinch -density 170x170");
    ASSERT_EQ(ran.exit, 0) << ran.err;
    EXPECT_DOUBLE_EQ(testing::SeenSize(folder.Path("a.pdf"), 0).width, 7200) << name;
  }
}

// Options of ImageMagick could read and write any file.
TEST_F(PicHandlerTest, OtherOptionsAreRefused) {
  const std::string source = folder.Path("a.png");
  Save(source, Waves(40, 30));
  const auto run = [&](const std::string& options, const std::string& target) {
    return folder.Run("PicHandler", {"\"" + source + "\" " + options + " \"" + folder.Path(target) + "\""});
  };
  const std::string profile = "-profile \"" + folder.Path("ColorConfigs/sRGB.icc") + "\" ";
  for (const std::string& options : {"-write " + folder.Path("b.png"), std::string("-rotate 90"), std::string(),
                                     profile, profile + "-quality", std::string("-clip-mask x")}) {
    for (const char* target : {"out.png", "out.jpg"}) EXPECT_EQ(run(options, target).exit, 1) << options;
  }
  EXPECT_EQ(run("-write " + folder.Path("b.png"), "out.pdf").exit, 1);
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"ColorConfigs", "a.png"}));
}

TEST_F(PicHandlerTest, ProfilesComeFromTheirFolderOnly) {
  Save(folder.Path("a.jpg"), Waves(40, 30));
  std::filesystem::copy(folder.Path("ColorConfigs/Default.icm"), folder.Path("Elsewhere.icm"));
  const auto run = [&](const std::string& second) {
    return folder.Run("PicHandler",
                      {"\"" + folder.Path("a.jpg") + "\" -profile \"" + folder.Path("ColorConfigs/sRGB.icc") +
                       "\" -profile \"" + folder.Path(second) + "\" \"" + folder.Path("Tmp.jpg") + "\""});
  };
  for (const char* second : {"Elsewhere.icm", "ColorConfigs/../Elsewhere.icm", "ColorConfigs/..", "ColorConfigs/"}) {
    const Ran ran = run(second);
    EXPECT_EQ(ran.exit, 1) << second;
    EXPECT_NE(ran.err.find("配置文件不在 ColorConfigs 文件夹里"), std::string::npos) << ran.err;
  }
  EXPECT_EQ(run("ColorConfigs/Default.icm").exit, 0);
}

TEST_F(PicHandlerTest, AFailureLeavesWhatStoodThere) {
  folder.Write("bad.jpg", "no picture");
  folder.Write("Tmp.jpg", "old");
  folder.Write("a.pdf", "old");
  Save(folder.Path("good.jpg"), Waves(40, 30));
  folder.Write("torn.jpg", folder.Read("good.jpg").substr(0, folder.Read("good.jpg").size() / 2));
  for (const char* name : {"bad.jpg", "torn.jpg", "none.jpg", "ColorConfigs"}) {
    EXPECT_EQ(ToCmyk(folder.Path(name)).exit, 1) << name;
    EXPECT_EQ(ToPdf(folder.Path(name), folder.Path("a"), "100").exit, 1) << name;
  }
  folder.Write("ColorConfigs/Default.icm", "no profile");
  EXPECT_EQ(ToCmyk(folder.Path("good.jpg")).exit, 1);
  std::filesystem::remove(folder.Path("ColorConfigs/Default.icm"));
  EXPECT_EQ(ToCmyk(folder.Path("good.jpg")).exit, 1);
  EXPECT_EQ(folder.Run("PicHandler", {}).exit, 1);
  EXPECT_EQ(folder.Run("PicHandler", {"\"" + folder.Path("good.jpg") + "\""}).exit, 1);
  EXPECT_EQ(folder.Read("Tmp.jpg"), "old");
  EXPECT_EQ(folder.Read("a.pdf"), "old");
}

}  // namespace
}  // namespace quillon::helpers
