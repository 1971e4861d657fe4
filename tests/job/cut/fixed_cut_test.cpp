// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed cut and the presets of its size, with all that they switch.
#include "job/collaborator_doubles.h"
#include "job/program_fixture.h"

namespace quillon::job {
namespace {

constexpr const char* kMissing = "本机缺失资源文件";

class FixedCutTest : public StartedTest {
 protected:
  IdleFrame manualFrame;
  IdleSheets sheets;

  void GiveCollaborators() {
    program.manualFrame = &manualFrame;
    program.sheets = &sheets;
  }
  void Select(int entry) { Put("CmbKeepCut", std::to_string(entry)); }
  std::string Board() const {
    std::string all;
    for (const controls::TextBox& side : options.TBoard) all += (all.empty() ? "" : " ") + side.Value();
    return all;
  }
};

TEST_F(FixedCutTest, SwitchingItOn) {
  form.ChAutoZoom.Set(true);
  Select(6);
  Put("ChFixCut", "1");
  EXPECT_EQ(Value("ChAutoZoom"), "0");
  EXPECT_EQ(Value("CmbKeepCut"), "0");
  EXPECT_EQ(Value("CmbDPI"), "15");
  EXPECT_EQ(form.CmbDPI.Text(), "300");
  EXPECT_EQ(flags.OutDpi, 300);
  EXPECT_EQ(program.fCutPre.preview.BorderStyle(), 15);
  EXPECT_EQ(Value("FBaseOpt.ChKeepCut"), "1");
  EXPECT_FALSE(Enabled("FBaseOpt.ChKeepCut"));
  EXPECT_TRUE(Enabled("TFixWH(0)"));
  EXPECT_TRUE(Enabled("TFixWH(1)"));
}

TEST_F(FixedCutTest, SwitchingItOff) {
  Put("ChFixCut", "1");
  Put("ChAutoCenter", "1");
  form.ChAutoZoom.Set(true);
  Select(7);
  Put("ChFixCut", "0");
  EXPECT_EQ(Value("ChAutoZoom"), "0");
  EXPECT_EQ(Value("ChAutoCenter"), "0");
  EXPECT_EQ(Value("FBaseOpt.ChAutoCenter"), "0");
  EXPECT_EQ(Value("CmbKeepCut"), "0");
  EXPECT_EQ(Value("CmbDPI"), "0");
  EXPECT_EQ(flags.OutDpi, 0);
  EXPECT_EQ(program.fCutPre.preview.BorderStyle(), 0);
  EXPECT_EQ(Value("FBaseOpt.ChKeepCut"), "0");
  EXPECT_TRUE(Enabled("FBaseOpt.ChKeepCut"));
  EXPECT_FALSE(Enabled("TFixWH(0)"));
  for (const char* name : {"ChMulCut", "ChCutAndZoom", "ChZoomAndCut", "ChSplit"}) {
    EXPECT_TRUE(Enabled(std::string("FBaseOpt.") + name)) << name;
  }
}

TEST_F(FixedCutTest, SwitchingItOffUnlocksWhatAStudioPresetLocked) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  Select(1);
  const auto locked = {"ChMulCut", "ChCutAndZoom", "ChZoomAndCut", "ChSplit"};
  for (const char* name : locked) EXPECT_FALSE(Enabled(std::string("FBaseOpt.") + name)) << name;
  Put("ChFixCut", "0");
  for (const char* name : locked) EXPECT_TRUE(Enabled(std::string("FBaseOpt.") + name)) << name;
  EXPECT_EQ(Value("CmbKeepCut"), "0");
}

TEST_F(FixedCutTest, CentringIsCopiedToTheOptionsAndBack) {
  options.Load();
  Put("ChAutoCenter", "1");
  EXPECT_EQ(Value("FBaseOpt.ChAutoCenter"), "1");
  Put("FBaseOpt.ChAutoCenter", "0");
  EXPECT_EQ(Value("ChAutoCenter"), "0");
  Put("FBaseOpt.ChAutoCenter", "1");
  EXPECT_EQ(Value("ChAutoCenter"), "1");
}

TEST_F(FixedCutTest, SwitchingItOffLeavesTheFrameOnlyBoxWithTheBorder) {
  Put("ChFixCut", "1");
  Put("ChFixCut", "0");
  EXPECT_FALSE(Enabled("FBaseOpt.ChFrmOnly"));
  Put("FBaseOpt.ChAddBoard", "1");
  EXPECT_TRUE(Enabled("FBaseOpt.ChFrmOnly"));
  Put("ChFixCut", "1");
  Put("ChFixCut", "0");
  EXPECT_TRUE(Enabled("FBaseOpt.ChFrmOnly"));
}

TEST_F(FixedCutTest, RestoringIsTickedOnlyInModeZeroWithARotation) {
  Put("FBaseOpt.ChRotateCut", "1");
  EXPECT_TRUE(Enabled("FBaseOpt.ChRecover"));
  EXPECT_EQ(Value("FBaseOpt.ChRecover"), "0");
  Put("ChFixCut", "1");
  EXPECT_EQ(Value("FBaseOpt.ChRecover"), "1");
  Put("ChFixCut", "0");
  EXPECT_EQ(Value("FBaseOpt.ChRecover"), "0");
  Put("CmbCutMode", "2");
  Put("ChFixCut", "1");
  EXPECT_EQ(Value("FBaseOpt.ChRecover"), "0");
  Put("ChFixCut", "0");
  Put("CmbCutMode", "0");
  Put("FBaseOpt.ChRotateCut", "0");
  Put("ChFixCut", "1");
  EXPECT_EQ(Value("FBaseOpt.ChRecover"), "0");
  EXPECT_FALSE(Enabled("FBaseOpt.ChRecover"));
}

TEST_F(FixedCutTest, SwitchingItOffPutsTheSheetsOff) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  Put("ChCutAndArray", "1");
  Put("ChFixCut", "0");
  EXPECT_EQ(Value("ChCutAndArray"), "0");
}

TEST_F(FixedCutTest, EveryPresetSetsItsSize) {
  GiveCollaborators();
  flags.OutDpi = 300;
  const std::pair<int, std::pair<const char*, const char*>> sizes[] = {
      {1, {"1630", "1063"}},  {2, {"1748", "1181"}},  {3, {"1063", "1181"}}, {4, {"1181", "1063"}},
      {6, {"295", "413"}},    {7, {"390", "260"}},    {8, {"319", "449"}},   {9, {"413", "531"}},
      {10, {"413", "626"}},   {11, {"567", "390"}},   {12, {"472", "650"}},  {13, {"591", "413"}},
      {14, {"709", "472"}},   {15, {"827", "591"}},   {16, {"945", "709"}},  {17, {"1181", "945"}},
      {18, {"1417", "1181"}}, {19, {"1772", "1181"}}, {20, {"1011", "638"}}, {21, {"260", "378"}},
      {22, {"307", "378"}},   {23, {"1011", "638"}},  {24, {"1009", "638"}}, {25, {"1063", "1063"}},
      {26, {"1772", "1181"}}, {27, {"390", "567"}},   {28, {"390", "567"}},  {29, {"390", "567"}},
      {30, {"591", "591"}},   {31, {"531", "531"}},   {32, {"390", "567"}},  {33, {"248", "307"}},
      {34, {"260", "378"}},   {35, {"709", "1075"}},  {36, {"1004", "638"}},
  };
  for (const auto& [entry, size] : sizes) {
    Select(entry);
    EXPECT_EQ(Value("TFixWH(0)"), size.first) << entry;
    EXPECT_EQ(Value("TFixWH(1)"), size.second) << entry;
    EXPECT_EQ(std::to_string(flags.FixW), size.first) << entry;
    EXPECT_EQ(std::to_string(flags.FixH), size.second) << entry;
  }
}

TEST_F(FixedCutTest, WithoutAResolutionTheScreenGivesIt) {
  flags.OutDpi = 0;
  Select(6);
  EXPECT_EQ(Value("TFixWH(0)"), "94");   // 2.5 cm at 96 dpi
  EXPECT_EQ(Value("TFixWH(1)"), "132");  // 3.5 cm
}

TEST_F(FixedCutTest, EntriesWithoutASizeLeaveIt) {
  GiveCollaborators();
  Select(6);
  const std::string width = Value("TFixWH(0)");
  Select(5);
  EXPECT_EQ(Value("TFixWH(0)"), width);
  Select(0);
  EXPECT_EQ(Value("TFixWH(0)"), width);
}

TEST_F(FixedCutTest, AnyEntry) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  for (int entry = 36; entry >= 0; --entry) {
    Select(entry);
    EXPECT_EQ(Enabled("MenuUnitConvert"), entry == 0) << entry;
    EXPECT_EQ(form.ChAddToSize.On(), entry == 5) << entry;
    EXPECT_EQ(Enabled("ChAddToSize"), entry == 5) << entry;
    EXPECT_EQ(Enabled("TFixWH(0)"), entry == 0 || entry == 5) << entry;
    EXPECT_EQ(Enabled("TFixWH(1)"), entry == 0 || entry == 5) << entry;
  }
}

TEST_F(FixedCutTest, WithoutAFixedCutTheSizeCannotBeEdited) {
  GiveCollaborators();
  for (const int entry : {1, 5, 6, 0}) {
    Select(entry);
    EXPECT_FALSE(Enabled("TFixWH(0)")) << entry;
  }
}

TEST_F(FixedCutTest, WithoutPaddingTheFifthEntryDoesNotLetTheSizeBeEdited) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  Select(5);
  Put("ChAddToSize", "0");
  EXPECT_FALSE(Enabled("TFixWH(0)"));
}

TEST_F(FixedCutTest, TheUnitConverterIsShownOnTheFifthAndHiddenOnOtherEntries) {
  GiveCollaborators();
  controls::Window converter("FConverter", "像素英寸厘米转换器");
  program.windows.Add(converter);
  Select(5);
  EXPECT_TRUE(converter.Visible());
  Select(6);
  EXPECT_FALSE(converter.Visible());
  converter.Show();
  Select(0);
  EXPECT_TRUE(converter.Visible());
  Select(1);
  EXPECT_FALSE(converter.Visible());
  EXPECT_EQ(world.boxes.Count(kMissing), 0);
}

TEST_F(FixedCutTest, WithoutTheUnitConverterTheFifthEntryAsks) {
  GiveCollaborators();
  Select(5);
  EXPECT_EQ(world.boxes.Count(kMissing), 1);
  EXPECT_EQ(Value("CmbKeepCut"), "5");
  EXPECT_EQ(Value("ChAddToSize"), "1");
}

class StudioPresetTest : public FixedCutTest, public ::testing::WithParamInterface<int> {};

TEST_P(StudioPresetTest, SwitchesTheWholeJob) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  options.Load();
  controls::Window regions("FMultCut", "");
  program.windows.Add(regions);
  for (const char* name : {"ChCutAndZoom", "ChToWB", "ChKeepExif", "ChSplit", "ChMulCut"}) {
    Put(std::string("FBaseOpt.") + name, "1");
  }
  options.ChAutoCenter.SetEnabled(false);
  options.Hide();
  Select(GetParam());
  EXPECT_EQ(Value("ChAutoZoom"), "1");
  EXPECT_FALSE(Enabled("ChAutoZoom"));
  EXPECT_EQ(Value("ChOver"), "1");
  EXPECT_EQ(Value("FBaseOpt.ChMamal"), "1");
  EXPECT_FALSE(Enabled("FBaseOpt.ChMamal"));
  EXPECT_TRUE(flags.ManualCutMode);
  EXPECT_TRUE(options.Visible());
  EXPECT_TRUE(flags.AdvancedOptionsLoaded);
  EXPECT_EQ(Value("TQuality"), "98");
  for (const char* name : {"ChMulCut", "ChCutAndZoom", "ChZoomAndCut", "ChSplit", "ChToWB", "ChKeepExif"}) {
    EXPECT_EQ(Value(std::string("FBaseOpt.") + name), "0") << name;
    EXPECT_FALSE(Enabled(std::string("FBaseOpt.") + name)) << name;
  }
  EXPECT_FALSE(flags.CutThenZoom || flags.ToBlackWhite || flags.KeepExif);
  EXPECT_EQ(Value("ChFull"), "1");
  EXPECT_EQ(Value("ChCutAndArray"), "1");
  EXPECT_EQ(Enabled("ChAutoCenter"), GetParam() != 5);
  EXPECT_EQ(Enabled("FBaseOpt.ChAutoCenter"), GetParam() != 5);
}

TEST_P(StudioPresetTest, SwitchesTheZoomBeforeTheCutOff) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  options.Load();
  Put("FBaseOpt.ChZoomAndCut", "1");
  Select(GetParam());
  EXPECT_EQ(Value("FBaseOpt.ChZoomAndCut"), "0");
}

TEST_P(StudioPresetTest, WithoutTheirEnginesFrameAndSheetsStayOffAfterOneQuestion) {
  Put("ChFixCut", "1");
  Select(GetParam());
  EXPECT_EQ(world.boxes.Count(kMissing), 1);
  EXPECT_EQ(Value("FBaseOpt.ChMamal"), "0");
  EXPECT_FALSE(flags.ManualCutMode);
  EXPECT_EQ(Value("ChCutAndArray"), "0");
  EXPECT_EQ(Value("ChAutoZoom"), "1");
  EXPECT_EQ(Value("ChOver"), "1");
  EXPECT_EQ(Value("ChFull"), "1");
  EXPECT_EQ(Value("TQuality"), "98");
  EXPECT_EQ(Value("CmbKeepCut"), std::to_string(GetParam()));
}

TEST_P(StudioPresetTest, AnotherEntryUnlocksAgain) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  Select(GetParam());
  Select(6);
  for (const char* name : {"ChAutoZoom", "ChAutoCenter", "FBaseOpt.ChMamal", "FBaseOpt.ChMulCut",
                           "FBaseOpt.ChCutAndZoom", "FBaseOpt.ChZoomAndCut", "FBaseOpt.ChSplit", "FBaseOpt.ChToWB",
                           "FBaseOpt.ChKeepExif", "FBaseOpt.ChAddBoard", "FBaseOpt.ChAutoCenter"}) {
    EXPECT_TRUE(Enabled(name)) << name;
  }
  EXPECT_EQ(Value("ChOver"), "0");
  EXPECT_EQ(Value("ChCutAndArray"), "0");
  EXPECT_EQ(Value("FBaseOpt.ChFrmOnly"), "0");
}

INSTANTIATE_TEST_SUITE_P(OneToFive, StudioPresetTest, ::testing::Range(1, 6));

TEST_F(FixedCutTest, OtherEntriesPutOverwritingAndSheetsOff) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  for (const int entry : {6, 20, 36}) {
    Put("ChOver", "1");
    Put("ChCutAndArray", "1");
    Select(entry);
    EXPECT_EQ(Value("ChOver"), "0") << entry;
    EXPECT_EQ(Value("ChCutAndArray"), "0") << entry;
  }
}

TEST_F(FixedCutTest, EntryOneSetsTheBorderTheFirstTimeOnly) {
  GiveCollaborators();
  Select(1);
  EXPECT_EQ(Value("FBaseOpt.ChAddBoard"), "1");
  EXPECT_FALSE(Enabled("FBaseOpt.ChAddBoard"));
  EXPECT_EQ(Value("FBaseOpt.ChFrmOnly"), "0");
  EXPECT_FALSE(Enabled("FBaseOpt.ChFrmOnly"));
  EXPECT_EQ(Board(), "5 5 5 5");
  Put("FBaseOpt.TBoard(1)", "7");
  Select(6);
  Select(1);
  EXPECT_EQ(Board(), "5 7 5 5");
}

TEST_F(FixedCutTest, EntryTwoHasNoBorder) {
  GiveCollaborators();
  Select(1);
  Select(2);
  EXPECT_EQ(Value("FBaseOpt.ChAddBoard"), "0");
  EXPECT_FALSE(Enabled("FBaseOpt.ChAddBoard"));
  EXPECT_EQ(Board(), "0 0 0 0");
}

TEST_F(FixedCutTest, EntryTwoHasNoBorderThatCouldStandAlone) {
  GiveCollaborators();
  Put("FBaseOpt.ChFrmOnly", "1");
  Select(2);
  EXPECT_EQ(Value("FBaseOpt.ChFrmOnly"), "0");
  EXPECT_FALSE(Enabled("FBaseOpt.ChFrmOnly"));
}

TEST_F(FixedCutTest, LeavingTheStudioFreesTheFrameOnlyBoxIfThereIsABorder) {
  GiveCollaborators();
  Select(1);
  Select(6);
  EXPECT_TRUE(Enabled("FBaseOpt.ChFrmOnly"));
  Select(2);
  Select(6);
  EXPECT_FALSE(Enabled("FBaseOpt.ChFrmOnly"));
  EXPECT_EQ(options.ChFrmOnly.WhyDisabled(), "请先启用“裁剪后加边框”");
}

TEST_F(FixedCutTest, EntryThreeIsWideBelow) {
  GiveCollaborators();
  Select(3);
  EXPECT_EQ(Value("FBaseOpt.ChAddBoard"), "1");
  EXPECT_FALSE(Enabled("FBaseOpt.ChAddBoard"));
  EXPECT_EQ(Value("FBaseOpt.ChFrmOnly"), "0");
  EXPECT_FALSE(Enabled("FBaseOpt.ChFrmOnly"));
  EXPECT_EQ(Board(), "5 5 5 43");
}

TEST_F(FixedCutTest, EntryFourIsWideOnTheRight) {
  GiveCollaborators();
  Select(3);
  Select(4);
  EXPECT_EQ(Board(), "5 5 43 5");
  EXPECT_EQ(Value("FBaseOpt.ChAddBoard"), "1");
  EXPECT_EQ(Value("FBaseOpt.ChFrmOnly"), "0");
}

TEST_F(FixedCutTest, EntryFiveOnlyFrames) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  Put("ChAutoCenter", "1");
  Select(5);
  EXPECT_EQ(Value("FBaseOpt.ChAddBoard"), "1");
  EXPECT_FALSE(Enabled("FBaseOpt.ChAddBoard"));
  EXPECT_EQ(Value("FBaseOpt.ChFrmOnly"), "1");
  EXPECT_EQ(options.ChFrmOnly.Tag(), "1");
  EXPECT_FALSE(Enabled("FBaseOpt.ChFrmOnly"));
  EXPECT_EQ(Value("ChAutoCenter"), "0");
  EXPECT_EQ(Value("FBaseOpt.ChAutoCenter"), "0");
  EXPECT_EQ(Board(), "5 5 5 5");
  EXPECT_EQ(Value("ChFixCut"), "1");
  EXPECT_TRUE(Enabled("ChFixCut"));
  EXPECT_EQ(Value("CmbKeepCut"), "5");
  EXPECT_EQ(world.boxes.Count("仅边框模式"), 0);
}

TEST_F(FixedCutTest, LeavingEntryFiveCutsAgain) {
  GiveCollaborators();
  Put("ChFixCut", "1");
  for (const int entry : {0, 2, 6}) {
    Select(5);
    Select(entry);
    EXPECT_EQ(Value("FBaseOpt.ChFrmOnly"), "0") << entry;
    EXPECT_TRUE(Enabled("ChFixCut")) << entry;
  }
}

TEST_F(FixedCutTest, AFreshPresetReachesTheOptionsAtOnce) {
  GiveCollaborators();
  flags.OutDpi = 300;
  Select(2);
  EXPECT_EQ(Value("FBaseOpt.TSmalS(3)"), "1748");
  EXPECT_EQ(Value("FBaseOpt.TSmalS(2)"), "1181");
}

}  // namespace
}  // namespace quillon::job
