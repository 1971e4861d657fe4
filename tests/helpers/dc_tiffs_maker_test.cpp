// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <tiffio.h>

#include "helpers/helper_process.h"
#include "helpers/pictures.h"

namespace quillon::helpers {
namespace {

using namespace testing;

// The values of an order, as the program writes them.
struct List {
  std::string application = "Quillon";
  std::string target;
  std::string compress = "0";
  std::string quality = "0";
  std::string colour = "1";
  std::string grey = "0";
  std::string resize = "0";
  std::string width = "";
  std::string height = "";
  std::string cut = "0";
  std::string left = "0";
  std::string right = "0";
  std::string top = "0";
  std::string bottom = "0";
  std::string cutByRule = "0";
  std::string cutRule = "";
  std::string matchCase = "0";
  std::string cutAll = "0";
  std::string headFirst = "0";
  std::string verify = "1";
  std::string headRule = "";
  std::string dpi = "96";
  std::string adjust = "0";
  std::string brightness = "0";
  std::string contrast = "0";
  std::string adjustHeads = "0";
  std::string sharpen = "0";
  std::vector<std::string> pictures;

  std::string Text() const {
    std::string text;
    for (const std::string& value :
         {application, target, compress, quality, colour, grey,       resize,   width,       height,
          cut,         left,   right,    top,     bottom, cutByRule,  cutRule,  matchCase,   cutAll,
          headFirst,   verify, headRule, dpi,     adjust, brightness, contrast, adjustHeads, sharpen}) {
      text += value + "\r\n";
    }
    for (const std::string& picture : pictures) text += picture + "\r\n";
    return text;
  }
};

class DCTiffsMaker : public ::testing::Test {
 protected:
  Ran Run(const List& list) {
    app.Write("OkList.txt", list.Text());
    app.Set("MakeTiffProg", "");
    return app.Run("DCTiffsMaker", {app.Path("OkList.txt")});
  }

  List Of(const std::vector<std::string>& names) {
    List list{.target = app.Path("out.tif")};
    for (const std::string& name : names) list.pictures.push_back(app.Path(name));
    return list;
  }

  void Picture(const std::string& name, const Pixels& pixels) { Save(app.Path(name), pixels); }

  Pixels Page(int page = 0) { return Load(app.Path("out.tif"), page); }

  HelperFolder app;
};

TEST_F(DCTiffsMaker, MakesAColourTiffAndSaysSo) {
  Picture("1.png", Waves(40, 30));
  Picture("2.png", Waves(20, 50));
  List list = Of({"1.png", "2.png"});
  list.dpi = "254";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(app.Get("MakeTiffProg"), "True");
  ASSERT_EQ(TiffPageCount(app.Path("out.tif")), 2);
  EXPECT_EQ(Page(0), Waves(40, 30));
  EXPECT_EQ(Page(1), Waves(20, 50));
  EXPECT_EQ(DpiOf(app.Path("out.tif")), 254);
  EXPECT_EQ(TiffTag(app.Path("out.tif"), 0, TIFFTAG_COMPRESSION), COMPRESSION_LZW);
}

TEST_F(DCTiffsMaker, KeepsColourOrGreyOrNeither) {
  Picture("1.png", Plain(8, 8, {200, 100, 50}));
  List list = Of({"1.png"});
  list.colour = "0";
  list.grey = "-1";
  ASSERT_EQ(Run(list).exit, 0);
  // 0.299 x 200 + 0.587 x 100 + 0.114 x 50 = 124.2
  EXPECT_EQ(Page(), Plain(8, 8, {124}));
  list.grey = "False";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page(), Plain(8, 8, {0}));
  EXPECT_EQ(TiffTag(app.Path("out.tif"), 0, TIFFTAG_BITSPERSAMPLE), 1);
}

TEST_F(DCTiffsMaker, CompressesByQuality) {
  Picture("1.png", Waves(300, 300));
  List list = Of({"1.png"});
  list.compress = "1";
  std::size_t last = SIZE_MAX;
  for (const char* quality : {"0", "1", "2"}) {
    list.quality = quality;
    ASSERT_EQ(Run(list).exit, 0);
    EXPECT_EQ(TiffTag(app.Path("out.tif"), 0, TIFFTAG_COMPRESSION), COMPRESSION_JPEG);
    const std::size_t size = app.Read("out.tif").size();
    EXPECT_LT(size, last);
    last = size;
  }
}

TEST_F(DCTiffsMaker, ResizesCutsAndAdjusts) {
  Picture("1.png", Waves(100, 80));
  List list = Of({"1.png"});
  list.resize = "1";
  list.width = "50";
  list.height = "20";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page().width, 50);
  EXPECT_EQ(Page().height, 20);

  list = Of({"1.png"});
  list.cut = "1";
  list.left = "10";
  list.right = "20";
  list.top = "5";
  list.bottom = "15";
  ASSERT_EQ(Run(list).exit, 0);
  ASSERT_EQ(Page().width, 70);
  ASSERT_EQ(Page().height, 60);
  EXPECT_EQ(Page().At(0, 0), Waves(100, 80).At(10, 5));
  list.left = "90";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page().width, 100);

  list = Of({"1.png"});
  list.adjust = "1";
  list.brightness = "100";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page(), Plain(100, 80, {255, 255, 255}));
  list.adjust = "0";
  list.sharpen = "1";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_NE(Page(), Waves(100, 80));
}

TEST_F(DCTiffsMaker, PutsHeadsFirstAndMayAdjustThemAlone) {
  for (const char* name : {"a_2.png", "b_1.png", "c_3.png", "d_0.png"}) Picture(name, Plain(4, 4, {100, 100, 100}));
  Picture("b_1.png", Plain(4, 4, {50, 50, 50}));
  List list = Of({"a_2.png", "b_1.png", "c_3.png", "d_0.png"});
  list.headFirst = "1";
  list.headRule = "^._(0|1)$";
  list.adjust = "1";
  list.adjustHeads = "1";
  list.brightness = "20";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page(0).At(0, 0)[0], 101);
  EXPECT_EQ(Page(1).At(0, 0)[0], 151);
  EXPECT_EQ(Page(2).At(0, 0)[0], 100);
  EXPECT_EQ(Page(3).At(0, 0)[0], 100);
}

TEST_F(DCTiffsMaker, CutsByTheRuleWithOrWithoutCase) {
  Picture("Scan_1.png", Waves(40, 40));
  Picture("other.png", Waves(40, 40));
  List list = Of({"Scan_1.png", "other.png"});
  list.cut = "1";
  list.left = "10";
  list.cutByRule = "1";
  list.cutRule = "^scan";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page(0).width, 30);
  EXPECT_EQ(Page(1).width, 40);
  list.matchCase = "1";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page(0).width, 40);
  list.cutAll = "1";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page(0).width, 30);
  EXPECT_EQ(Page(1).width, 30);
  // No expression, but part of a name.
  list.cutAll = "0";
  list.cutRule = "(er";
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(Page(1).width, 40);
}

TEST_F(DCTiffsMaker, IncludesEveryPageOfATiff) {
  Picture("1.png", Waves(10, 10));
  ASSERT_EQ(Run(Of({"1.png", "1.png"})).exit, 0);
  List list = Of({"out.tif", "1.png"});
  list.target = app.Path("second.tif");
  ASSERT_EQ(Run(list).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("second.tif")), 3);
}

TEST_F(DCTiffsMaker, ReportsWhatItFailedWith) {
  app.Write("text.png", "no picture");
  EXPECT_EQ(Run(Of({"text.png"})).exit, 1);
  EXPECT_NE(app.Get("MakeTiffProg"), "");
  EXPECT_NE(app.Get("MakeTiffProg"), "True");
  EXPECT_FALSE(app.Exists("out.tif"));
  Picture("1.png", Waves(10, 10));
  app.Write("out.tif", "what stood there");
  EXPECT_EQ(Run(Of({"1.png", "text.png"})).exit, 1);
  EXPECT_EQ(app.Read("out.tif"), "what stood there");
}

TEST_F(DCTiffsMaker, SaysThatTheDiskIsFull) {
  Picture("1.png", Waves(500, 500));
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  // Room for the settings, not for the result.
  const rlimit tight{100 << 10, before.rlim_max};
  app.Write("OkList.txt", Of({"1.png"}).Text());
  setrlimit(RLIMIT_FSIZE, &tight);
  const pid_t maker = app.Start("DCTiffsMaker", {app.Path("OkList.txt")});
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(app.Wait(maker).exit, 1);
  EXPECT_EQ(app.Get("MakeTiffProg"), "FullDisk");
  EXPECT_EQ(app.Names(), (std::vector<std::string>{"1.png", "OkList.txt"}));
}

TEST_F(DCTiffsMaker, RefusesOrdersThatAreNone) {
  Picture("1.png", Waves(10, 10));
  List relative = Of({"1.png"});
  relative.target = "out.tif";
  List up = Of({"1.png"});
  up.target = app.Path("x/../out.tif");
  List odd = Of({"1.png"});
  odd.pictures.push_back("../1.png");
  for (const List& list : {relative, up, odd, Of({})}) EXPECT_EQ(Run(list).exit, 1);
  const std::string whole = Of({"1.png"}).Text();
  for (const std::string& text : {std::string(), whole.substr(0, 40), std::string(10 << 20, 'x')}) {
    app.Write("OkList.txt", text);
    EXPECT_EQ(app.Run("DCTiffsMaker", {app.Path("OkList.txt")}).exit, 1);
  }
  EXPECT_EQ(app.Names(), (std::vector<std::string>{"1.png", "OkList.txt"}));
}

// The run reports a picture that it had to omit.
TEST_F(DCTiffsMaker, NamesThePicturesThatItLeavesOut) {
  Picture("1.png", Waves(10, 10));
  app.Write("2.png", "no picture");
  const Ran ran = Run(Of({"1.png", "2.png"}));
  EXPECT_EQ(ran.exit, 0);
  EXPECT_EQ(ran.err.rfind("DCTiffsMaker: 2.png：", 0), 0U) << ran.err;
  EXPECT_EQ(app.Get("MakeTiffProg"), "True");
  EXPECT_EQ(TiffPageCount(app.Path("out.tif")), 1);
}

}  // namespace
}  // namespace quillon::helpers
