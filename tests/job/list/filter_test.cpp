// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The filter of small pictures in a run: pictures that were listed before it was ticked, and runs without a list.
#include "job/cut_fixture.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {
namespace {

using Names = std::vector<std::string>;

constexpr const char* kPassedOver = "宽或高不足 60x40 像素，按“过滤小图片”跳过";

class FilterTest : public CutTest {
 protected:
  void Filter(const std::string& width, const std::string& height) {
    Option("ChFilter", "1");
    Put("FBaseOpt.TSmalS(0)", width);
    Put("FBaseOpt.TSmalS(1)", height);
  }
  void TakeFolder() {
    Put("ChBig", "1");
    Put("ChSubFold", "1");
    Put("LInDir", world.folder.Path("in"));
  }
};

TEST(TooSmall, IsASideBelowItsThreshold) {
  EXPECT_FALSE(TooSmall({60, 40}, {60, 40}));
  EXPECT_TRUE(TooSmall({59, 40}, {60, 40}));
  EXPECT_TRUE(TooSmall({60, 39}, {60, 40}));
  EXPECT_FALSE(TooSmall({1, 1}, {0, 0}));
  EXPECT_TRUE(TooSmall({99999, 99999}, {100000, 0}));
  EXPECT_FALSE(TooSmall({0, 0}, {60, 40}));  // it could not be measured
}

TEST_F(FilterTest, PicturesThatAreListedAreMeasuredByItToo) {
  List({Make("narrow.jpg", 59, 90), Make("flat.jpg", 90, 39), Make("fits.jpg", 60, 40)});
  Filter("60", "40");
  Cut();
  EXPECT_EQ(OutNames(), Names{"fits.jpg"});
  EXPECT_EQ(Why(1), kPassedOver);
  EXPECT_EQ(Why(2), kPassedOver);
  EXPECT_EQ(Totals().skipped, 2u);
  EXPECT_EQ(Totals().written, 1u);
  Put("FBaseOpt.ChFilter", "0");
  Cut();
  EXPECT_EQ(OutNames(), (Names{"fits.jpg", "flat.jpg", "narrow.jpg"}));
}

TEST_F(FilterTest, ARunWithoutAListLeavesThemOut) {
  Make("small.jpg", 20, 20);
  Make("deep/large.jpg", 80, 60);
  Filter("60", "40");
  TakeFolder();
  Cut();
  EXPECT_EQ(OutNames(), Names{"large.jpg"});
  EXPECT_EQ(Totals().planned, 2u);
  EXPECT_EQ(Totals().skipped, 1u);
}

TEST_F(FilterTest, NothingMayFit) {
  Make("a.jpg", 80, 60);
  Filter("100000", "100000");
  TakeFolder();
  Cut();
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Totals().skipped, 1u);
  Filter("0", "0");
  Cut();
  EXPECT_EQ(OutNames(), Names{"a.jpg"});
}

// A folder is done with its first picture, which a small one must not be.
TEST_F(FilterTest, ASmallPictureDoesNotStandForItsFolder) {
  List({Make("1.jpg", 20, 20), Make("2.jpg", 80, 60), Make("3.jpg", 80, 60)});
  Filter("60", "40");
  Put("FBaseOpt.ChOmitFolds", "1");
  Cut();
  EXPECT_EQ(OutNames(), Names{"2.jpg"});
}

TEST_F(FilterTest, APictureThatCannotBeReadIsNoSmallOne) {
  const std::string path = Make("a.jpg", 80, 60);
  List({path});
  world.folder.Write("in/a.jpg", "no picture any more");
  Filter("60", "40");
  Cut();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_NE(Why(1), kPassedOver);
}

TEST_F(FilterTest, ItCountsOnlyWithTheWindowLoaded) {
  Put("FBaseOpt.ChFilter", "1");
  EXPECT_EQ(ReadCutSettings(program).smallest, base::Size{});
  options.Load();
  EXPECT_EQ(ReadCutSettings(program).smallest, (base::Size{100, 100}));
}

}  // namespace
}  // namespace quillon::job
