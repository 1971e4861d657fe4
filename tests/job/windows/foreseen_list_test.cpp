// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/foreseen_list.h"

#include "job/windows/options_fixture.h"

namespace quillon::job {
namespace {

class ForeseenListTest : public OpenOptionsTest {
 protected:
  // Pictures whose sides are 10, 20, 30 and so on; the files do not exist.
  void List(int rows) {
    for (int i = 1; i <= rows; ++i) {
      FileRow row;
      row.width = row.height = 10 * i;
      program.files.AppendPath("/in/" + std::to_string(i) + ".jpg", row);
    }
  }

  ForeseenList foreseen_{program};
};

TEST_F(ForeseenListTest, CountsTheRowsThatGiveNoFileInPortions) {
  List(7);
  Put("ChFixCut", "1");
  Put("TFixWH(0)", "40");
  Put("TFixWH(1)", "1");
  foreseen_.Restart();
  EXPECT_FALSE(foreseen_.CountMore(3));
  EXPECT_EQ(foreseen_.Counted(), 3U);
  EXPECT_TRUE(foreseen_.CountMore(100));
  EXPECT_EQ(foreseen_.Counted(), 7U);
  EXPECT_EQ(foreseen_.WithoutFile(), 4U);
  EXPECT_FALSE(foreseen_.Of(3)->why.empty());
  EXPECT_EQ(foreseen_.Of(6)->size, (base::Size{30, 69}));
  EXPECT_EQ(foreseen_.Of(7), std::nullopt);
}

TEST_F(ForeseenListTest, ReadsTheSettingsWhenItIsRestarted) {
  List(1);
  Put("ChCutA", "0");
  Put("TCutValue(0)", "0");
  foreseen_.Restart();
  const base::Size before = foreseen_.Of(0)->size;
  Put("TCutValue(0)", "50");
  EXPECT_EQ(foreseen_.Of(0)->size, before);
  foreseen_.Restart();
  EXPECT_EQ(foreseen_.Of(0)->size.width, 5);
}

TEST_F(ForeseenListTest, LeavesToOthersWhatTheyDecide) {
  List(2);
  Put("CmbCutMode", "4");
  foreseen_.Restart();
  EXPECT_EQ(foreseen_.DecidedBy(), ForeseenList::By::Others);
  EXPECT_EQ(foreseen_.Of(0), std::nullopt);
  EXPECT_TRUE(foreseen_.CountMore(10));
  EXPECT_EQ(foreseen_.WithoutFile(), 0U);
}

TEST_F(ForeseenListTest, KnowsTheRulesOfGifsAndPngs) {
  WriteApp("CutMedia.dll");
  List(4);
  Put("TCutValue(0)", "15");
  Put("TCutValue(3)", "0");
  Put("CmbCutMode", "1");
  foreseen_.Restart();
  EXPECT_EQ(foreseen_.DecidedBy(), ForeseenList::By::Settings);
  EXPECT_EQ(foreseen_.Of(0)->why.find("裁剪框的宽或高小于 1 像素"), 0U) << foreseen_.Of(0)->why;
  EXPECT_EQ(foreseen_.Of(1)->size, (base::Size{5, 20})) << "an odd side at the edge stays";
  EXPECT_TRUE(foreseen_.CountMore(10));
  EXPECT_EQ(foreseen_.WithoutFile(), 1U);
  Put("CmbCutMode", "2");
  foreseen_.Restart();
  EXPECT_EQ(foreseen_.Of(2)->size, (base::Size{15, 30}));
}

TEST_F(ForeseenListTest, SaysNothingOfTheListIfTheFolderIsCut) {
  List(2);
  Put("ChBig", "1");
  foreseen_.Restart();
  EXPECT_EQ(foreseen_.DecidedBy(), ForeseenList::By::Others);
}

TEST_F(ForeseenListTest, LeavesManualRunsToTheHand) {
  List(1);
  flags.ManualCutMode = true;
  foreseen_.Restart();
  EXPECT_EQ(foreseen_.DecidedBy(), ForeseenList::By::Hand);
  EXPECT_EQ(foreseen_.Of(0), std::nullopt);
}

}  // namespace
}  // namespace quillon::job
