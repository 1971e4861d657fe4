// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The region list in its window: adding, removing, saving and reading.
#include "regions/regions_fixture.h"

namespace quillon::regions {
namespace {

using host::Reply;

class RegionListTest : public RegionsTest {
 protected:
  void SetUp() override {
    RegionsTest::SetUp();
    program.ShowWindow("FMultCut");
  }
  std::string Row(std::size_t row) const { return RowText(window.Editor().List().Fields(row)); }
  std::size_t Count() const { return window.MSFlexGrid1.RowCount(); }
  const std::string& Keys() const { return window.Editor().List().RegionKeys(); }

  FMultCut& window = regions.fMultCut;
};

TEST_F(RegionListTest, HeadersFollowTheUnit) {
  EXPECT_EQ(window.Title(), "多区域裁剪区域设置");
  EXPECT_EQ(window.MSFlexGrid1.Headers(),
            (std::vector<std::string>{"上边距/像素", "左边距/像素", "右边距/像素", "下边距/像素"}));
  form.ChCutA.Set(false);
  EXPECT_EQ(window.MSFlexGrid1.Headers(), (std::vector<std::string>{"上边距/%", "左边距/%", "右边距/%", "下边距/%"}));
  EXPECT_FALSE(window.CmdUpdate.Visible());
}

TEST_F(RegionListTest, OpeningSwitchesOffWhatDoesNotGoWithRegions) {
  Click("FMultCut.CmdCancel");
  EXPECT_FALSE(window.Loaded());
  form.ChOver.Set(true);
  form.ChKeepDir.Set(true);
  Click("MenuMulCut");
  EXPECT_TRUE(window.Visible());
  for (const controls::CheckBox* box : {&form.ChOver, &form.ChKeepDir}) {
    EXPECT_FALSE(box->On()) << box->Name();
    EXPECT_FALSE(box->Enabled()) << box->Name();
    EXPECT_EQ(box->WhyDisabled(), "多区域裁剪窗口打开时不能用") << box->Name();
  }
  Click("FMultCut.CmdCancel");
  EXPECT_FALSE(window.Loaded());
  EXPECT_FALSE(window.Visible());
  EXPECT_TRUE(form.ChOver.Enabled());
  EXPECT_TRUE(form.ChKeepDir.Enabled());
}

TEST_F(RegionListTest, TheOptionOpensTheWindowAndClosingPutsTheOptionBack) {
  window.Close();
  options.Load();
  Put("FBaseOpt.ChMulCut", "1");
  EXPECT_TRUE(window.Visible());
  EXPECT_FALSE(Enabled("menuNormalCut"));
  window.Close();
  EXPECT_FALSE(options.ChMulCut.On());
  EXPECT_TRUE(Enabled("menuNormalCut"));
}

TEST_F(RegionListTest, AddsTheMarginsInTheOrderOfARow) {
  EXPECT_EQ(window.List1.Value(), "区域列表：");
  EXPECT_FALSE(Enabled("FMultCut.CmdOut"));
  AddRegion(10, 20, 30, 40);
  EXPECT_EQ(Row(0), "10\t20\t30\t40");
  EXPECT_EQ(window.MSFlexGrid1.Cell(0, 0), "10");
  EXPECT_EQ(window.MSFlexGrid1.Cell(0, 3), "40");
  EXPECT_EQ(window.List1.Value(), "区域列表（共1个）：");
  EXPECT_TRUE(Enabled("FMultCut.CmdOut"));
  EXPECT_FALSE(Enabled("FMultCut.CmdOk"));
  AddRegion(0, 0, 100, 100);
  EXPECT_TRUE(Enabled("FMultCut.CmdOk"));
  EXPECT_EQ(window.List1.Value(), "区域列表（共2个）：");
  EXPECT_EQ(window.MSFlexGrid1.Selected(), 2u);
  EXPECT_EQ(Keys(), "10\t20\t30\t400\t0\t100\t100");
}

TEST_F(RegionListTest, ATextInsideTheKeysCountsAsKnown) {
  AddRegion(11, 2, 3, 44);
  AddRegion(1, 2, 3, 4);
  EXPECT_EQ(Count(), 1u);
  EXPECT_EQ(world.boxes.Beeps(), 1);
  AddRegion(11, 2, 3, 44);
  EXPECT_EQ(Count(), 1u);
  EXPECT_EQ(world.boxes.Beeps(), 2);
  AddRegion(1, 2, 3, 5);
  EXPECT_EQ(Count(), 2u);
}

TEST_F(RegionListTest, TheHundredAndFirstIsTheLast) {
  for (int i = 0; i < 101; ++i) AddRegion(200, i, 0, 0);
  EXPECT_EQ(Count(), 101u);
  EXPECT_EQ(world.boxes.Beeps(), 0);
  EXPECT_EQ(Boxes("裁剪区域个数超出上限100！"), 0);
  AddRegion(150, 0, 0, 0);
  EXPECT_EQ(Count(), 101u);
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_EQ(Boxes("裁剪区域个数超出上限100！"), 1);
}

TEST_F(RegionListTest, ADoubleClickRemovesTheRowAndItsKey) {
  AddRegion(10, 20, 30, 40);
  AddRegion(11, 21, 31, 41);
  AddRegion(12, 22, 32, 42);
  window.MSFlexGrid1.Select(2);
  window.MSFlexGrid1.DoubleClick();
  EXPECT_EQ(Count(), 2u);
  EXPECT_EQ(Row(1), "12\t22\t32\t42");
  EXPECT_EQ(Keys(), "10\t20\t30\t4012\t22\t32\t42");
  EXPECT_EQ(window.List1.Value(), "区域列表（共2个）：");
  window.MSFlexGrid1.DoubleClick();
  EXPECT_FALSE(Enabled("FMultCut.CmdOk"));
  window.MSFlexGrid1.DoubleClick();
  EXPECT_EQ(Count(), 0u);
  EXPECT_EQ(Keys(), "");
  EXPECT_EQ(window.List1.Value(), "区域列表：");
  EXPECT_FALSE(Enabled("FMultCut.CmdOut"));
  window.MSFlexGrid1.DoubleClick();
  EXPECT_EQ(Count(), 0u);
}

TEST_F(RegionListTest, RemovingRemovesEveryOccurrenceFromTheKeys) {
  Import(Clt("a.clt", "R\r\n1\t1\t1\t1\r\n21\t1\t1\t13\r\n"));
  ASSERT_EQ(Count(), 2u);
  window.MSFlexGrid1.Select(1);
  window.MSFlexGrid1.DoubleClick();
  EXPECT_EQ(Keys(), "23");
}

TEST_F(RegionListTest, ARightClickAsksBeforeItEmptiesTheList) {
  window.MSFlexGrid1.RightClick();
  EXPECT_TRUE(world.boxes.All().empty());
  AddRegion(10, 20, 30, 40);
  window.MSFlexGrid1.RightClick();
  ASSERT_EQ(world.boxes.All().size(), 1u);
  EXPECT_EQ(world.boxes.All()[0].box.text, "确实清空列表？");
  EXPECT_EQ(world.boxes.All()[0].box.type, 305);
  EXPECT_EQ(Count(), 1u);
  world.boxes.Answer("确实清空列表？", Reply::Ok);
  window.MSFlexGrid1.RightClick();
  EXPECT_EQ(Count(), 0u);
  EXPECT_EQ(Keys(), "");
  EXPECT_EQ(window.List1.Value(), "区域列表：");
}

TEST_F(RegionListTest, IsSavedByteForByte) {
  AddRegion(10, 20, 30, 40);
  AddRegion(0, 0, 100, 100);
  world.dialogs.ChooseFiles({world.folder.Path("list.clt")});
  Click("FMultCut.CmdOut");
  EXPECT_EQ(world.folder.Read("list.clt"), "R\r\n10\t20\t30\t40\r\n0\t0\t100\t100\r\n");
  EXPECT_EQ(Boxes("操作列表保存完毕！"), 1);
  const host::FileQuestion& asked = world.dialogs.Questions().at(0);
  EXPECT_EQ(asked.title, "保存裁剪区域操作列表");
  EXPECT_EQ(asked.filter, "多区域裁剪操作列表(*.clt)|*.clt");
  EXPECT_EQ(asked.folder, world.host.programFolder);
  EXPECT_EQ(asked.name, "我的多区域裁剪操作列表");
}

TEST_F(RegionListTest, SavingWithoutANameOrRegionsDoesNothing) {
  window.Editor().CmdOut_Click();
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_TRUE(world.dialogs.Questions().empty());
  AddRegion(10, 20, 30, 40);
  Click("FMultCut.CmdOut");
  EXPECT_TRUE(world.boxes.All().empty());
  EXPECT_EQ(world.boxes.Beeps(), 1);
}

TEST_F(RegionListTest, AFailedSaveIsReportedAndAFullDiskAskedAbout) {
  AddRegion(10, 20, 30, 40);
  world.dialogs.ChooseFiles({world.folder.Path("none/list.clt")});
  Click("FMultCut.CmdOut");
  EXPECT_EQ(Boxes("操作列表没有保存："), 1);
  world.faults.Set({.call = host::testing::DiskCall::Write, .error = ENOSPC});
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", Reply::Retry);
  world.dialogs.ChooseFiles({world.folder.Path("list.clt")});
  Click("FMultCut.CmdOut");
  EXPECT_EQ(Boxes("盘空间不足，请释放空间后重试保存！"), 1);
  EXPECT_EQ(Boxes("操作列表保存完毕！"), 1);
}

TEST_F(RegionListTest, ReadingReplacesTheListAndSetsTheUnit) {
  AddRegion(10, 20, 30, 40);
  form.ChCutA.Set(false);
  Import(Clt("a.clt", "R\r\n1\t2\t3\t4\r\n5\t6\t7\t8\r\n1\t2\t3\t4\r\n"));
  EXPECT_TRUE(form.ChCutA.On());
  EXPECT_EQ(Count(), 2u);
  EXPECT_EQ(Keys(), "1\t2\t3\t45\t6\t7\t8");
  EXPECT_EQ(window.List1.Value(), "区域列表（共2个）：");
  EXPECT_TRUE(Enabled("FMultCut.CmdOk"));
  EXPECT_EQ(Boxes("操作列表导入完毕！"), 1);
  EXPECT_EQ(world.dialogs.Questions().at(0).title, "导入裁剪区域操作列表");
  EXPECT_EQ(world.dialogs.Questions().at(0).name, "我的多区域裁剪操作列表");
  Import(Clt("b.clt", "r\r\n1\t2\t3\t4\r\n"));
  EXPECT_FALSE(form.ChCutA.On());
  EXPECT_EQ(window.MSFlexGrid1.Headers()[0], "上边距/%");
  EXPECT_FALSE(Enabled("FMultCut.CmdOk"));
}

TEST_F(RegionListTest, ReadingNothingBeeps) {
  AddRegion(10, 20, 30, 40);
  Click("FMultCut.CmdInput");
  EXPECT_EQ(world.boxes.Beeps(), 1);
  Import(world.folder.Path("none.clt"));
  EXPECT_EQ(world.boxes.Beeps(), 2);
  EXPECT_EQ(Count(), 1u);
  EXPECT_TRUE(world.boxes.All().empty());
}

TEST_F(RegionListTest, ReadingHasNoLimitOfRegions) {
  std::string text = "R\r\n";
  for (int i = 100; i < 600; ++i) text += std::to_string(i) + "\t1\t2\t3\r\n";
  Import(Clt("a.clt", text));
  EXPECT_EQ(Count(), 500u);
  EXPECT_EQ(window.List1.Value(), "区域列表（共500个）：");
  AddRegion(10, 20, 30, 40);
  EXPECT_EQ(Boxes("裁剪区域个数超出上限100！"), 1);
}

TEST_F(RegionListTest, MalformedLinesAreShownAsTheyStand) {
  const std::string longLine(1 << 20, '7');
  Import(Clt("a.clt", "R\n\xD7\xA2\xCA\xCD\n" + longLine + "\n\n1\t2\n"));
  ASSERT_EQ(Count(), 3u);
  EXPECT_EQ(window.MSFlexGrid1.Cell(0, 0), "\xD7\xA2\xCA\xCD");
  EXPECT_EQ(window.MSFlexGrid1.Cell(0, 1), "");
  EXPECT_EQ(window.MSFlexGrid1.Cell(1, 0).size(), 256u);
  EXPECT_EQ(window.MSFlexGrid1.Cell(2, 1), "2");
  world.dialogs.ChooseFiles({world.folder.Path("b.clt")});
  Click("FMultCut.CmdOut");
  EXPECT_EQ(world.folder.Read("b.clt"), "R\r\n\xD7\xA2\xCA\xCD\t\t\t\r\n" + longLine + "\t\t\t\r\n1\t2\t\t\r\n");
}

TEST_F(RegionListTest, AnUnreadableListIsReported) {
  AddRegion(10, 20, 30, 40);
  const std::string path = Clt("a.clt", "R\r\n");
  world.faults.Set({.call = host::testing::DiskCall::Read, .error = EIO, .pathHolds = "a.clt"});
  Import(path);
  EXPECT_EQ(Boxes("操作列表读不出来："), 1);
  EXPECT_EQ(Count(), 1u);
}

// --- Over the preview.

TEST_F(RegionListTest, RegionsArePickedAndMovedOverThePreview) {
  AddRegion(0, 0, 200, 100);    // 200 x 200 at 0,0
  AddRegion(50, 50, 250, 150);  // 100 x 100 at 50,50
  RegionEditor& editor = window.Editor();
  EXPECT_EQ(editor.Frames()[1], (job::PreviewFrame{50, 50, 100, 100}));
  editor.Select(0);
  EXPECT_EQ(window.MSFlexGrid1.Selected(), 1u);
  editor.Move(1, 20, -10);
  EXPECT_EQ(Row(1), "40\t70\t230\t160");
  editor.Move(1, 9999, 9999);
  EXPECT_EQ(Row(1), "200\t300\t0\t0");
  EXPECT_EQ(Keys(), "0\t0\t200\t100200\t300\t0\t0");
  form.ChCutA.Set(false);
  Import(Clt("p.clt", "D\r\n10\t10\t50\t50\r\n"));
  editor.Move(0, 40, 30);
  EXPECT_EQ(Row(0), "20\t20\t40\t40");
}

TEST_F(RegionListTest, AMovedRegionNotifiesThePreview) {
  AddRegion(0, 0, 200, 100);
  int notified = 0;
  program.fCutPre.preview.SetObserver([&] { ++notified; });
  window.Editor().Move(0, 5, 5);
  EXPECT_GT(notified, 0);
  program.fCutPre.preview.SetObserver({});
}

}  // namespace
}  // namespace quillon::regions
