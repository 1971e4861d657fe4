// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <tiffio.h>

#include "base/utf8.h"
#include "helpers/helper_process.h"
#include "helpers/orders/order_text.h"
#include "helpers/pictures.h"

namespace quillon::helpers {
namespace {

using namespace testing;

class SavePicsToTiff : public ::testing::Test {
 protected:
  Ran Run(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    app.Write("Ops.txt", base::Utf16WithMark(text));
    return app.Run("SavePicsToTiff", {""});
  }

  std::string Picture(const std::string& name, const Pixels& pixels) {
    app.Write(name, "");
    Save(app.Path(name), pixels);
    return app.Path(name);
  }

  HelperFolder app;
};

TEST_F(SavePicsToTiff, MakesABlackAndWhiteTiffInOrder) {
  const std::string dark = Picture("1.png", Plain(10, 20, {20, 20, 20}));
  const std::string light = Picture("2.jpg", Plain(30, 20, {230, 230, 230}));
  ASSERT_EQ(Run({app.Path("Tiff~1.tif"), "SaveNew", dark, light}).exit, 0);
  const std::string out = app.Path("Tiff~1.tif");
  ASSERT_EQ(TiffPageCount(out), 2);
  EXPECT_EQ(Load(out, 0), Plain(10, 20, {0}));
  EXPECT_EQ(Load(out, 1), Plain(30, 20, {255}));
  EXPECT_EQ(TiffTag(out, 0, TIFFTAG_BITSPERSAMPLE), 1);
  EXPECT_EQ(TiffTag(out, 0, TIFFTAG_COMPRESSION), COMPRESSION_CCITTFAX4);
}

TEST_F(SavePicsToTiff, KeepsTheColoursOfPagesThatGoBackIntoATiff) {
  const std::string page = Picture("Tmp/1.jpg", Plain(16, 16, {200, 30, 30}));
  ASSERT_EQ(Run({app.Path("a.tif"), "SaveNew", page}).exit, 0);
  EXPECT_EQ(Load(app.Path("a.tif")), Load(page));
}

TEST_F(SavePicsToTiff, IncludesEveryPageOfATiff) {
  const std::string page = Picture("1.png", Plain(10, 20, {20, 20, 20}));
  ASSERT_EQ(Run({app.Path("a.tif"), "SaveNew", page, page}).exit, 0);
  ASSERT_EQ(Run({app.Path("b.tif"), "SaveNew", app.Path("a.tif"), page}).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("b.tif")), 3);
}

TEST_F(SavePicsToTiff, PutsThePageCountIntoTheFirstLine) {
  const std::string page = Picture("1.png", Plain(10, 20, {20, 20, 20}));
  ASSERT_EQ(Run({app.Path("a.tif"), "SaveNew", page, page, page}).exit, 0);
  EXPECT_EQ(Run({app.Path("a.tif"), "1"}).exit, 0);
  EXPECT_EQ(LinesOf(*DecodeOrder(app.Read("Ops.txt"))).front(), "3");
  EXPECT_EQ(Run({app.Path("none.tif"), "1"}).exit, 1);
  EXPECT_EQ(LinesOf(*DecodeOrder(app.Read("Ops.txt"))).front(), "0");
}

TEST_F(SavePicsToTiff, StartedWithoutAnOrderDoesNothing) {
  EXPECT_EQ(app.Run("SavePicsToTiff", {}).exit, 0);
  EXPECT_TRUE(app.Names().empty());
}

TEST_F(SavePicsToTiff, LeavesOutWhatIsNoPictureButReplacesNothingThen) {
  const std::string page = Picture("1.png", Plain(10, 20, {20, 20, 20}));
  app.Write("text.jpg", "no picture");
  app.Write("old.tif", "what stood there");
  EXPECT_EQ(Run({app.Path("new.tif"), "SaveNew", app.Path("text.jpg"), page, app.Path("none.png")}).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("new.tif")), 1);
  EXPECT_EQ(Run({app.Path("old.tif"), "SaveNew", page, app.Path("text.jpg")}).exit, 1);
  EXPECT_EQ(app.Read("old.tif"), "what stood there");
  EXPECT_EQ(Run({app.Path("empty.tif"), "SaveNew"}).exit, 1);
  EXPECT_EQ(Run({app.Path("empty.tif"), "SaveNew", app.Path("text.jpg")}).exit, 1);
  EXPECT_FALSE(app.Exists("empty.tif"));
}

TEST_F(SavePicsToTiff, RefusesOrdersThatAreNone) {
  const std::string page = Picture("1.png", Plain(10, 20, {20, 20, 20}));
  const std::vector<std::vector<std::string>> orders = {
      {},
      {app.Path("a.tif")},
      {app.Path("a.tif"), "Delete", page},
      {"a.tif", "SaveNew", page},
      {app.Path("x/../a.tif"), "SaveNew", page},
      {app.Path("a.tif"), "SaveNew", app.Path("x/../1.png")},
      {app.Path("no/folder/a.tif"), "SaveNew", page},
  };
  for (const auto& order : orders) EXPECT_EQ(Run(order).exit, 1);
  const std::string torn = base::Utf16WithMark(app.Path("a.tif") + "\r\nSaveNew\r\n" + page);
  for (const std::string& bytes : {torn.substr(0, torn.size() - 1), std::string(), std::string("\0\0\0\0", 4)}) {
    app.Write("Ops.txt", bytes);
    EXPECT_EQ(app.Run("SavePicsToTiff", {""}).exit, 1);
  }
  EXPECT_EQ(app.Names(), (std::vector<std::string>{"1.png", "Ops.txt"}));
}

TEST_F(SavePicsToTiff, ReadsAnOrderOfTenMegabytes) {
  std::vector<std::string> lines = {app.Path("a.tif"), "SaveNew", Picture("1.png", Plain(10, 20, {20, 20, 20}))};
  const std::string missing = app.Path(std::string(200, 'x') + ".png");
  while (lines.size() * missing.size() < 5'500'000) lines.push_back(missing);
  EXPECT_EQ(Run(lines).exit, 0);
  EXPECT_EQ(TiffPageCount(app.Path("a.tif")), 1);
}

}  // namespace
}  // namespace quillon::helpers
