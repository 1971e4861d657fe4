// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <tiffio.h>

#include <csignal>

#include "helpers/helper_process.h"
#include "helpers/pictures.h"
#include "helpers/until.h"

namespace quillon::helpers {
namespace {

using namespace testing;

class QxImgToolTiff : public ::testing::Test {
 protected:
  Ran Count(const std::string& tiff, const std::string& last = "1") {
    return app.Run("QxImgTool",
                   {"Quillon\t" + tiff + "\t" + app.Path() + "\tGetTiffPages\tgettiffpages\tlzw\t0\t" + last});
  }

  // The program's order for so many pages in "Images".
  std::string Order(const std::string& out, const std::string& compression, int pages) {
    return "Quillon\t" + app.Path("Images") + "\t" + out + "\tMakeTiff\tmaketiff\t" + compression + "\t4\t" +
           std::to_string(pages);
  }

  std::string Page(int number, const Pixels& pixels, int dpi = 0) {
    app.Write("Images/.keep", "");
    std::string digits = std::to_string(number);
    digits.insert(0, 4 - std::min<std::size_t>(4, digits.size()), '0');
    const std::string path = app.Path("Images/" + digits + ".jpg");
    Save(path, pixels, dpi);
    return path;
  }

  // Whether a draft of a result stands in the folder.
  bool Writing() {
    for (const std::string& name : app.Names()) {
      if (name.starts_with(".") && app.Read(name).size() > 100) return true;
    }
    return false;
  }

  HelperFolder app;
};

TEST_F(QxImgToolTiff, CountsPagesAndLeavesTheFirst) {
  Page(1, Waves(60, 40), 200);
  Page(2, Waves(30, 90));
  app.Set("MakeTiff", "2");
  ASSERT_EQ(app.Run("QxImgTool", {Order(app.Path("a.tif"), "lzw", 2)}).exit, 0);
  for (const char* last : {"1", "0", "17"}) {
    ASSERT_EQ(Count(app.Path("a.tif"), last).exit, 0);
    EXPECT_EQ(app.Get("GetTiffPages"), "2");
  }
  const Pixels first = Load(app.Path("Tmp.jpg"));
  EXPECT_LT(Difference(first, Waves(60, 40)), 30);
  EXPECT_EQ(DpiOf(app.Path("Tmp.jpg")), 200);
}

TEST_F(QxImgToolTiff, ReportsWhatIsWrongInsteadOfACount) {
  app.Set("GetTiffPages", "9");
  app.Write("text.tif", "no TIFF");
  app.Write("empty.tif", "");
  app.Write("torn.tif", std::string("II*\0\xF0\xFF\0\0", 8));
  for (const char* name : {"none.tif", "text.tif", "empty.tif", "torn.tif"}) {
    EXPECT_EQ(Count(app.Path(name)).exit, 1) << name;
    EXPECT_NE(app.Get("GetTiffPages"), "") << name;
    EXPECT_EQ(app.Get("GetTiffPages").find_first_of("0123456789"), std::string::npos) << name;
  }
  EXPECT_FALSE(app.Exists("Tmp.jpg"));
}

TEST_F(QxImgToolTiff, AssemblesWithEveryCompression) {
  Page(1, Waves(61, 43), 300);
  Page(2, Waves(20, 200));
  app.Set("MakeTiff", "2");
  const std::pair<const char*, int> kinds[] = {{"lzw", COMPRESSION_LZW},
                                               {"ccitt3", COMPRESSION_CCITTFAX3},
                                               {"ccitt4", COMPRESSION_CCITTFAX4},
                                               {"rle", COMPRESSION_PACKBITS},
                                               {"noe", COMPRESSION_NONE}};
  for (const auto& [word, tag] : kinds) {
    const std::string out = app.Path(std::string(word) + ".tif");
    ASSERT_EQ(app.Run("QxImgTool", {Order(out, word, 2)}).exit, 0) << word;
    ASSERT_EQ(TiffPageCount(out), 2) << word;
    const bool fax = word[0] == 'c';
    for (int page = 0; page < 2; ++page) {
      EXPECT_EQ(TiffTag(out, page, TIFFTAG_COMPRESSION), tag) << word;
      EXPECT_EQ(TiffTag(out, page, TIFFTAG_BITSPERSAMPLE), fax ? 1 : 8) << word;
    }
    if (!fax) {
      EXPECT_EQ(Load(out, 0), Load(app.Path("Images/0001.jpg"))) << word;
    }
    EXPECT_EQ(Load(out, 1).height, 200) << word;
    EXPECT_EQ(DpiOf(out, 0), 300) << word;
    EXPECT_EQ(DpiOf(out, 1), 96) << word;
  }
}

TEST_F(QxImgToolTiff, FollowsTheProgramPageByPage) {
  Page(1, Plain(8, 8, {10, 10, 10}));
  app.Set("MakeTiff", "1");
  const pid_t tool = app.Start("QxImgTool", {Order(app.Path("out.tif"), "noe", 3)});
  ASSERT_TRUE(Until([&] { return Writing(); }));
  EXPECT_FALSE(app.Exists("out.tif"));
  Page(2, Plain(8, 8, {20, 20, 20}));
  Page(3, Plain(8, 8, {30, 30, 30}));
  app.Set("MakeTiff", "3");
  ASSERT_EQ(app.Wait(tool).exit, 0);
  ASSERT_EQ(TiffPageCount(app.Path("out.tif")), 3);
  for (int page = 0; page < 3; ++page) {
    EXPECT_NEAR(Load(app.Path("out.tif"), page).At(4, 4)[0], 10 * (page + 1), 2);
  }
  EXPECT_EQ(app.Get("MakeTiff"), "3");
}

TEST_F(QxImgToolTiff, KeepsThePagesOfARunThatWasStopped) {
  Page(1, Waves(8, 8));
  app.Set("MakeTiff", "1");
  const pid_t tool = app.Start("QxImgTool", {Order(app.Path("out.tif"), "lzw", 3)});
  ASSERT_TRUE(Until([&] { return Writing(); }));
  app.Set("MakeTiff", "end");
  ASSERT_EQ(app.Wait(tool).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("out.tif")), 1);
}

TEST_F(QxImgToolTiff, NeverReplacesAFileByAPartOfIt) {
  const std::string first = Page(1, Waves(8, 8));
  Page(3, Waves(8, 8));
  app.Write("old.tif", "what stood there");
  app.Set("MakeTiff", "3");
  EXPECT_EQ(app.Run("QxImgTool", {Order(app.Path("old.tif"), "lzw", 3)}).exit, 1);
  EXPECT_EQ(app.Read("old.tif"), "what stood there");
  EXPECT_EQ(app.Run("QxImgTool", {Order(app.Path("new.tif"), "lzw", 3)}).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("new.tif")), 2);
  Page(2, Waves(8, 8));
  EXPECT_EQ(app.Run("QxImgTool", {Order(app.Path("old.tif"), "lzw", 3)}).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("old.tif")), 3);
}

TEST_F(QxImgToolTiff, PagesAbove9999HaveFiveDigits) {
  app.Write("Images/.keep", "");
  Save(app.Path("Images/10000.jpg"), Waves(8, 8));
  app.Set("MakeTiff", "10000");
  EXPECT_EQ(app.Run("QxImgTool", {Order(app.Path("out.tif"), "lzw", 10000)}).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("out.tif")), 1);
}

TEST_F(QxImgToolTiff, RefusesOrdersThatMakeNoSense) {
  Page(1, Waves(8, 8));
  app.Set("MakeTiff", "1");
  EXPECT_EQ(app.Run("QxImgTool", {Order(app.Path("out.tif"), "zip", 1)}).exit, 1);
  EXPECT_EQ(app.Run("QxImgTool", {Order(app.Path("out.tif"), "lzw", 0)}).exit, 1);
  EXPECT_EQ(app.Run("QxImgTool", {Order(app.Path("out.tif"), "lzw", -4)}).exit, 1);
  EXPECT_EQ(app.Run("QxImgTool", {Order(app.Path("no/folder/out.tif"), "lzw", 1)}).exit, 1);
  EXPECT_FALSE(app.Exists("out.tif"));
}

TEST_F(QxImgToolTiff, KilledItLeavesNothingUnderTheName) {
  Page(1, Waves(8, 8));
  app.Set("MakeTiff", "1");
  const pid_t tool = app.Start("QxImgTool", {Order(app.Path("out.tif"), "lzw", 2)});
  ASSERT_TRUE(Until([&] { return Writing(); }));
  kill(tool, SIGKILL);
  EXPECT_EQ(app.Wait(tool).signal, SIGKILL);
  EXPECT_FALSE(app.Exists("out.tif"));
}

}  // namespace
}  // namespace quillon::helpers
