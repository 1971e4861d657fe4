// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <tiffio.h>

#include <array>
#include <filesystem>
#include <vector>

#include "build_paths.h"
#include "helpers/helper_process.h"
#include "helpers/pdfs.h"
#include "helpers/pictures.h"
#include "helpers/until.h"
#include "imaging/metadata/exif_block.h"

namespace quillon::helpers {
namespace {

using namespace testing;

// The program's side of binding: it names a sheet and waits until the tool has read it, one after another.
class QxImgToolBind : public ::testing::Test {
 protected:
  struct Options {
    std::string back = "";
    std::string header = "";
    std::string tiff = "False";
    std::string dpi = "300";
    std::string cmyk = "False";
  };

  pid_t Start(const std::string& out, const Options& options) {
    app.Set("QxImgTool", "");
    return app.Start("QxImgTool", {"Quillon\t0\t" + out + "\tQxImgTool\tbindpdf\t" + options.back + "\t" +
                                   options.header + "\t" + options.tiff + "\t" + options.dpi + "\t" + options.cmyk});
  }

  // What the tool answers to a sheet.
  std::string Feed(const std::string& sheet) {
    app.Set("QxImgTool", sheet);
    EXPECT_TRUE(Until([&] { return app.Get("QxImgTool") != sheet; }));
    return app.Get("QxImgTool");
  }

  int End(pid_t tool) {
    app.Set("QxImgTool", "end");
    return app.Wait(tool).exit;
  }

  std::string Sheet(const std::string& name, int width = 300, int height = 200, int dpi = 0) {
    Save(app.Path(name), Waves(width, height), dpi);
    return app.Path(name);
  }

  HelperFolder app;
};

TEST_F(QxImgToolBind, PutsJpegsIntoAPdfByteForByte) {
  const pid_t tool = Start(app.Path("out.pdf"), {});
  const std::string first = Sheet("1.jpg");
  const std::string second = Sheet("2.jpg", 600, 300);
  EXPECT_EQ(Feed(first), "");
  EXPECT_EQ(Feed(second), "");
  EXPECT_FALSE(app.Exists("out.pdf"));
  ASSERT_EQ(End(tool), 0);
  const std::string out = app.Path("out.pdf");
  ASSERT_EQ(PagesOf(out), 2);
  EXPECT_EQ(StoredPicture(out, 0), app.Read("1.jpg"));
  EXPECT_EQ(StoredPicture(out, 1), app.Read("2.jpg"));
  EXPECT_EQ(PictureEntry(out, 0, "/ColorSpace"), "/DeviceRGB");
  EXPECT_EQ(Entry(out, 0, "/MediaBox"), "[ 0 0 72 48 ]");
  EXPECT_EQ(Entry(out, 1, "/MediaBox"), "[ 0 0 144 72 ]");
}

// Returns the JPEG with an EXIF block that holds the orientation.
std::string WithOrientation(std::string jpeg, int orientation) {
  const std::string block = imaging::MinimalExif(orientation, 0);
  if (block.empty()) return jpeg;
  const std::string head{'\xFF', '\xE1', '\0', static_cast<char>(block.size() + 8)};
  return jpeg.insert(2, head + std::string("Exif\0\0", 6) + block);
}

// Viewers of PDF do not read the tag inside an embedded picture.
TEST_F(QxImgToolBind, ShowsTurnedPhotographsUpright) {
  constexpr int kRed = 0xC81414;
  constexpr int kGreen = 0x14C814;
  constexpr int kBlue = 0x1414C8;
  constexpr int kYellow = 0xDCDC14;
  // The colours of the corners: upper left, upper right, lower left, lower right.
  const std::vector<std::array<int, 4>> shown = {{kRed, kGreen, kBlue, kYellow}, {kGreen, kRed, kYellow, kBlue},
                                                 {kYellow, kBlue, kGreen, kRed}, {kBlue, kYellow, kRed, kGreen},
                                                 {kRed, kBlue, kGreen, kYellow}, {kBlue, kRed, kYellow, kGreen},
                                                 {kYellow, kGreen, kBlue, kRed}, {kGreen, kYellow, kRed, kBlue}};
  Pixels stored{96, 64, 3, {}};
  for (int y = 0; y < stored.height; ++y) {
    for (int x = 0; x < stored.width; ++x) {
      const int colour = shown[0][static_cast<std::size_t>((y < 32 ? 0 : 2) + (x < 48 ? 0 : 1))];
      stored.values.insert(stored.values.end(), {colour >> 16, colour >> 8 & 255, colour & 255});
    }
  }
  Save(app.Path("1.jpg"), stored);
  const std::string jpeg = app.Read("1.jpg");
  for (int orientation = 1; orientation <= 8; ++orientation) {
    SCOPED_TRACE(orientation);
    app.Write("1.jpg", WithOrientation(jpeg, orientation));
    const pid_t tool = Start(app.Path("out.pdf"), {.dpi = "72"});
    ASSERT_EQ(Feed(app.Path("1.jpg")), "");
    ASSERT_EQ(End(tool), 0);
    EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/MediaBox"), orientation < 5 ? "[ 0 0 96 64 ]" : "[ 0 0 64 96 ]");
    const Pixels page = Load(app.Path("out.pdf"));
    const auto& corners = shown[static_cast<std::size_t>(orientation) - 1];
    for (std::size_t i = 0; i < corners.size(); ++i) {
      const std::vector<int> seen = page.At(i % 2 == 0 ? 8 : page.width - 9, i < 2 ? 8 : page.height - 9);
      EXPECT_NEAR(seen[0], corners[i] >> 16, 12) << i;
      EXPECT_NEAR(seen[1], corners[i] >> 8 & 255, 12) << i;
      EXPECT_NEAR(seen[2], corners[i] & 255, 12) << i;
    }
  }
}

TEST_F(QxImgToolBind, NeedsNothingOfASheetThatItHasRead) {
  const pid_t tool = Start(app.Path("out.pdf"), {});
  const std::string sheet = Sheet("1.jpg");
  const std::string bytes = app.Read("1.jpg");
  ASSERT_EQ(Feed(sheet), "");
  std::filesystem::remove(sheet);
  ASSERT_EQ(End(tool), 0);
  EXPECT_EQ(StoredPicture(app.Path("out.pdf"), 0), bytes);
}

TEST_F(QxImgToolBind, NamesTheResultByItsKind) {
  struct Case {
    const char* name;
    const char* tiff;
    const char* made;
  };
  const Case cases[] = {{"a", "False", "a.pdf"},      {"v1.5", "0", "v1.5.pdf"},   {"b.PDF", "0", "b.PDF"},
                        {"c.pdf", "True", "c.tiff"},  {"d.tif", "1", "d.tif"},     {"e", "-1", "e.tiff"},
                        {"f.tiff", "False", "f.pdf"}, {"g+10张", "", "g+10张.pdf"}};
  const std::string sheet = Sheet("1.jpg");
  for (const Case& one : cases) {
    const pid_t tool = Start(app.Path(one.name), {.tiff = one.tiff});
    EXPECT_EQ(Feed(sheet), "");
    EXPECT_EQ(End(tool), 0);
    EXPECT_TRUE(app.Exists(one.made)) << one.made;
  }
}

TEST_F(QxImgToolBind, UsesTheResolutionOfTheSheetIfNoneIsGiven) {
  const std::pair<int, const char*> cases[] = {{150, "[ 0 0 144 96 ]"}, {0, "[ 0 0 72 48 ]"}};
  for (const auto& [dpi, box] : cases) {
    const pid_t tool = Start(app.Path("out.pdf"), {.dpi = "0"});
    EXPECT_EQ(Feed(Sheet("1.jpg", 300, 200, dpi)), "");
    EXPECT_EQ(End(tool), 0);
    EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/MediaBox"), box);
  }
}

TEST_F(QxImgToolBind, LargeSheetsGetLargerUnits) {
  const pid_t tool = Start(app.Path("out.pdf"), {.dpi = "1"});
  EXPECT_EQ(Feed(Sheet("1.jpg", 300, 200)), "");
  EXPECT_EQ(End(tool), 0);
  // 300 x 72 = 21600 is above 14400.
  EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/UserUnit"), "2");
  EXPECT_EQ(Entry(app.Path("out.pdf"), 0, "/MediaBox"), "[ 0 0 10800 7200 ]");
}

TEST_F(QxImgToolBind, AddsTheBackAfterEverySheet) {
  Save(app.Path("Back.jpg"), Plain(100, 100, {200, 100, 50}));
  const pid_t tool = Start(app.Path("out.pdf"), {.back = app.Path("Back.jpg")});
  EXPECT_EQ(Feed(Sheet("1.jpg")), "");
  EXPECT_EQ(Feed(Sheet("2.jpg", 100, 90)), "");
  ASSERT_EQ(End(tool), 0);
  const std::string out = app.Path("out.pdf");
  ASSERT_EQ(PagesOf(out), 4);
  EXPECT_EQ(StoredPicture(out, 1), app.Read("Back.jpg"));
  EXPECT_EQ(StoredPicture(out, 2), app.Read("2.jpg"));
  EXPECT_EQ(StoredPicture(out, 3), app.Read("Back.jpg"));
}

TEST_F(QxImgToolBind, DrawsTheHeaderOverTheSheetInRed) {
  const pid_t tool = Start(app.Path("out.pdf"), {.header = "客户名+正面"});
  EXPECT_EQ(Feed(Sheet("1.jpg", 900, 900)), "");
  ASSERT_EQ(End(tool), 0);
  const std::string out = app.Path("out.pdf");
  EXPECT_EQ(StoredPicture(out, 0), app.Read("1.jpg"));
  EXPECT_EQ(PictureEntry(out, 0, "/ImageMask", "/S"), "true");
  EXPECT_FALSE(StoredPicture(out, 0, "/S").empty());

  const pid_t second = Start(app.Path("out.tif"), {.header = "客户名+正面", .tiff = "True"});
  Save(app.Path("white.png"), Plain(900, 900, {255, 255, 255}));
  EXPECT_EQ(Feed(app.Path("white.png")), "");
  ASSERT_EQ(End(second), 0);
  const Pixels page = Load(app.Path("out.tif"));
  int red = 0;
  for (int y = 0; y < page.height; ++y) {
    for (int x = 0; x < page.width; ++x) {
      if (page.At(x, y) != std::vector<int>{255, 0, 0}) continue;
      ++red;
      EXPECT_GE(y, 20);
      EXPECT_LT(y, 150);
    }
  }
  EXPECT_GT(red, 100);
}

TEST_F(QxImgToolBind, MakesATiffOfManyPages) {
  const pid_t tool = Start(app.Path("out.tif"), {.back = Sheet("Back.jpg", 40, 30), .tiff = "True", .dpi = "254"});
  EXPECT_EQ(Feed(Sheet("1.jpg")), "");
  EXPECT_EQ(Feed(Sheet("2.jpg", 50, 60)), "");
  ASSERT_EQ(End(tool), 0);
  const std::string out = app.Path("out.tif");
  ASSERT_EQ(TiffPageCount(out), 4);
  EXPECT_EQ(Load(out, 0), Load(app.Path("1.jpg")));
  EXPECT_EQ(Load(out, 1), Load(app.Path("Back.jpg")));
  EXPECT_EQ(Load(out, 2), Load(app.Path("2.jpg")));
  EXPECT_EQ(DpiOf(out, 0), 254);
}

TEST_F(QxImgToolBind, TurnsColoursToCmykIfAsked) {
  std::filesystem::copy(QUILLON_BINARY_DIR "/bin/ColorConfigs", app.Path("ColorConfigs"));
  const pid_t tool = Start(app.Path("out.pdf"), {.cmyk = "True"});
  EXPECT_EQ(Feed(Sheet("1.jpg")), "");
  ASSERT_EQ(End(tool), 0);
  EXPECT_TRUE(PictureEntry(app.Path("out.pdf"), 0, "/ColorSpace").starts_with("[ /ICCBased"));
  EXPECT_EQ(PictureEntry(app.Path("out.pdf"), 0, "/Decode"), "[ 1 0 1 0 1 0 1 0 ]");
  const pid_t second = Start(app.Path("out.tif"), {.tiff = "True", .cmyk = "True"});
  EXPECT_EQ(Feed(app.Path("1.jpg")), "");
  ASSERT_EQ(End(second), 0);
  EXPECT_EQ(TiffTag(app.Path("out.tif"), 0, TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_SEPARATED);
  EXPECT_FALSE(app.Exists("QxImgTool.jpg"));
}

TEST_F(QxImgToolBind, AcceptsNoSheetForCmykWithoutItsProfile) {
  const pid_t tool = Start(app.Path("out.pdf"), {.cmyk = "True"});
  EXPECT_EQ(Feed(Sheet("1.jpg")), "配置文件不能使用：sRGB.icc");
  EXPECT_NE(End(tool), 0);
  EXPECT_FALSE(app.Exists("out.pdf"));
}

TEST_F(QxImgToolBind, CopiesCmykAndGreyJpegsAsTheyAre) {
  Save(app.Path("cmyk.jpg"), Waves(60, 40, 4));
  Save(app.Path("grey.jpg"), Waves(60, 40, 1));
  const pid_t tool = Start(app.Path("out.pdf"), {});
  EXPECT_EQ(Feed(app.Path("cmyk.jpg")), "");
  EXPECT_EQ(Feed(app.Path("grey.jpg")), "");
  ASSERT_EQ(End(tool), 0);
  EXPECT_EQ(StoredPicture(app.Path("out.pdf"), 0), app.Read("cmyk.jpg"));
  EXPECT_EQ(StoredPicture(app.Path("out.pdf"), 1), app.Read("grey.jpg"));
  EXPECT_EQ(PictureEntry(app.Path("out.pdf"), 1, "/ColorSpace"), "/DeviceGray");
}

TEST_F(QxImgToolBind, AcceptsSheetsOfOtherKinds) {
  Save(app.Path("1.png"), Waves(60, 40));
  const pid_t tool = Start(app.Path("out.pdf"), {});
  EXPECT_EQ(Feed(app.Path("1.png")), "");
  ASSERT_EQ(End(tool), 0);
  EXPECT_EQ(PagesOf(app.Path("out.pdf")), 1);
  EXPECT_EQ(app.Names(), (std::vector<std::string>{"1.png", "out.pdf"}));
}

TEST_F(QxImgToolBind, ReportsWhatItCannotReadAndContinues) {
  const std::string good = Sheet("1.jpg");
  app.Write("torn.jpg", app.Read("1.jpg").substr(0, 2000));
  app.Write("text.jpg", "no picture");
  const pid_t tool = Start(app.Path("out.pdf"), {});
  EXPECT_EQ(Feed(app.Path("none.jpg")), "找不到排版好的图片");
  EXPECT_EQ(Feed(app.Path("torn.jpg")), "图片数据损坏或不完整");
  EXPECT_NE(Feed(app.Path("text.jpg")), "");
  EXPECT_EQ(Feed(good), "");
  EXPECT_EQ(End(tool), 0);
  EXPECT_EQ(PagesOf(app.Path("out.pdf")), 1);
}

TEST_F(QxImgToolBind, ReplacesNoFileIfASheetIsMissing) {
  app.Write("old.pdf", "what stood there");
  pid_t tool = Start(app.Path("old.pdf"), {});
  EXPECT_EQ(Feed(Sheet("1.jpg")), "");
  app.Write("torn.jpg", app.Read("1.jpg").substr(0, 2000));
  EXPECT_NE(Feed(app.Path("torn.jpg")), "");
  EXPECT_EQ(End(tool), 1);
  EXPECT_EQ(app.Read("old.pdf"), "what stood there");
  tool = Start(app.Path("old.pdf"), {});
  EXPECT_EQ(Feed(app.Path("1.jpg")), "");
  EXPECT_EQ(End(tool), 0);
  EXPECT_EQ(PagesOf(app.Path("old.pdf")), 1);
}

TEST_F(QxImgToolBind, ContinuesToAnswerIfTheResultCannotBeWritten) {
  const pid_t tool = Start(app.Path("no/folder/out.pdf"), {});
  const std::string sheet = Sheet("1.jpg");
  EXPECT_NE(Feed(sheet), "");
  EXPECT_NE(Feed(sheet), "");
  EXPECT_EQ(End(tool), 1);
}

TEST_F(QxImgToolBind, WithoutSheetsMakesNothing) {
  EXPECT_EQ(End(Start(app.Path("out.pdf"), {})), 1);
  EXPECT_TRUE(app.Names().empty());
}

}  // namespace
}  // namespace quillon::helpers
