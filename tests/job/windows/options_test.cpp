// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The couplings of the advanced options.
#include "job/windows/options_fixture.h"

namespace quillon::job {
namespace {

constexpr const char* kMissing = "本机缺失资源文件";
constexpr const char* kFrameOnlyNote = "仅边框模式，表示不做任何裁剪和处理，其他启用的功能自动失效！";

class OptionsTest : public OpenOptionsTest {
 protected:
  void PutOption(const std::string& name, std::string_view text) { Put("FBaseOpt." + name, text); }
  std::string Option(const std::string& name) const { return Value("FBaseOpt." + name); }
  bool OptionEnabled(const std::string& name) const { return Enabled("FBaseOpt." + name); }
  int Questions() const { return world.boxes.Count(kMissing); }
};

TEST_F(OptionsTest, FrameOnlyShowsItsNoteOnce) {
  PutOption("ChFrmOnly", "1");
  EXPECT_EQ(world.boxes.Count(kFrameOnlyNote), 1);
  EXPECT_EQ(options.ChFrmOnly.Tag(), "1");
  PutOption("ChFrmOnly", "0");
  PutOption("ChFrmOnly", "1");
  EXPECT_EQ(world.boxes.Count(kFrameOnlyNote), 1);
}

TEST_F(OptionsTest, FrameOnlyClearsAndLocksAllProcessing) {
  program.engines.edgeRemoval = true;
  controls::Window regions("FMultCut", "");
  program.windows.Add(regions);
  const char* boxes[] = {"ChKeepExif", "ChMamal", "ChMulCut",    "ChSplit",      "ChClsBlack",
                         "ChInvert",   "ChToWB",  "ChRotateCut", "ChCutAndZoom", "ChToCMYK"};
  WriteApp("ColorConfigs/Default.icm");
  for (const char* name : boxes) PutOption(name, "1");
  Put("ChFixCut", "1");
  ASSERT_EQ(Option("ChKeepCut"), "1");
  PutOption("ChFrmOnly", "1");
  EXPECT_EQ(Value("ChFixCut"), "0");
  EXPECT_FALSE(Enabled("ChFixCut"));
  const char* locked[] = {"ChKeepExif", "ChMamal", "ChMulCut",    "ChKeepCut",    "ChClsBlack",
                          "ChClsWhite", "ChSplit", "ChRotateCut", "ChZoomAndCut", "ChCutAndZoom",
                          "ChToGray",   "ChToWB",  "ChInvert",    "ChRecover",    "ChToCMYK"};
  for (const char* name : locked) {
    EXPECT_EQ(Option(name), "0") << name;
    EXPECT_FALSE(OptionEnabled(name)) << name;
  }
  EXPECT_FALSE(OptionEnabled("CmbRotate"));
  EXPECT_FALSE(flags.KeepExif || flags.ManualCutMode || flags.CutThenZoom || flags.ToBlackWhite || flags.ToCmyk);
  EXPECT_EQ(Option("ChFrmOnly"), "1");
  EXPECT_TRUE(OptionEnabled("ChFrmOnly"));
  PutOption("ChFrmOnly", "0");
  EXPECT_TRUE(Enabled("ChFixCut"));
  for (const char* name : locked) EXPECT_EQ(OptionEnabled(name), std::string(name) != "ChRecover") << name;
  EXPECT_TRUE(OptionEnabled("CmbRotate"));
}

TEST_F(OptionsTest, FrameOnlyPutsTheRotationOff) {
  PutOption("CmbRotate", "1");
  PutOption("ChFrmOnly", "1");
  EXPECT_EQ(Option("CmbRotate"), "0");
  EXPECT_EQ(Option("TAngle"), "0");
}

TEST_F(OptionsTest, ZoomsExcludeEachOtherAndEndAt100) {
  PutOption("CmbZoom", "50%");
  PutOption("ChZoomAndCut", "1");
  EXPECT_EQ(options.CmbZoom.Text(), "50%");
  EXPECT_FALSE(flags.CutThenZoom);
  PutOption("ChCutAndZoom", "1");
  EXPECT_EQ(Option("ChZoomAndCut"), "0");
  EXPECT_EQ(options.CmbZoom.Text(), "100%");
  EXPECT_TRUE(flags.CutThenZoom);
  PutOption("CmbZoom", "70%");
  PutOption("ChZoomAndCut", "1");
  EXPECT_EQ(Option("ChCutAndZoom"), "0");
  EXPECT_EQ(options.CmbZoom.Text(), "100%");
  EXPECT_FALSE(flags.CutThenZoom);
  PutOption("CmbZoom", "800,600");
  PutOption("ChZoomAndCut", "0");
  EXPECT_EQ(options.CmbZoom.Text(), "100%");
}

TEST_F(OptionsTest, GreyAndBlackWhiteExcludeEachOther) {
  PutOption("ChToGray", "1");
  PutOption("ChToWB", "1");
  EXPECT_EQ(Option("ChToGray"), "0");
  EXPECT_TRUE(flags.ToBlackWhite);
  PutOption("ChToGray", "1");
  EXPECT_EQ(Option("ChToWB"), "0");
  EXPECT_FALSE(flags.ToBlackWhite);
}

TEST_F(OptionsTest, EdgesExcludeEachOtherAndNeedTheirEngine) {
  PutOption("ChClsWhite", "1");
  PutOption("ChClsBlack", "1");
  EXPECT_EQ(Option("ChClsWhite"), "0");
  EXPECT_EQ(Option("ChClsBlack"), "0");
  EXPECT_EQ(Questions(), 2);
  program.engines.edgeRemoval = true;
  PutOption("ChClsWhite", "1");
  EXPECT_EQ(Option("ChClsWhite"), "1");
  PutOption("ChClsBlack", "1");
  EXPECT_EQ(Option("ChClsWhite"), "0");
  EXPECT_EQ(Option("ChClsBlack"), "1");
  PutOption("ChClsWhite", "1");
  EXPECT_EQ(Option("ChClsBlack"), "0");
  EXPECT_EQ(Questions(), 2);
}

TEST_F(OptionsTest, RulesSetTheAngle) {
  const std::pair<const char*, const char*> angles[] = {
      {"1", "90"}, {"2", "-90"}, {"3", "90"}, {"4", "-90"}, {"0", "0"}};
  for (const auto& [rule, angle] : angles) {
    PutOption("ChRotateCut", "1");
    PutOption("CmbRotate", rule);
    EXPECT_EQ(Option("TAngle"), angle) << rule;
    EXPECT_EQ(OptionEnabled("TAngle"), std::string(rule) == "0") << rule;
    EXPECT_EQ(Option("ChRotateCut"), std::string(rule) == "0" ? "1" : "0") << rule;
    EXPECT_TRUE(OptionEnabled("ChRecover")) << rule;
  }
}

TEST_F(OptionsTest, TheLastRuleFreesTheAngle) {
  PutOption("CmbRotate", "2");
  PutOption("CmbRotate", "5");
  EXPECT_TRUE(OptionEnabled("TAngle"));
  EXPECT_EQ(Option("TAngle"), "-90");
  PutOption("TAngle", "12.5");
  PutOption("CmbRotate", "0");
  EXPECT_EQ(Option("TAngle"), "0");
  EXPECT_FALSE(OptionEnabled("TAngle"));
  EXPECT_FALSE(OptionEnabled("ChRecover"));
}

TEST_F(OptionsTest, RotatingBeforeTheCutPutsTheRuleOff) {
  PutOption("CmbRotate", "1");
  PutOption("ChRotateCut", "1");
  EXPECT_EQ(Option("CmbRotate"), "0");
  EXPECT_EQ(Option("ChRotateCut"), "1");
  EXPECT_TRUE(OptionEnabled("TAngle"));
}

TEST_F(OptionsTest, TheAngleStaysWithinItsLimits) {
  PutOption("CmbRotate", "5");
  const std::pair<const char*, const char*> angles[] = {
      {"180", "180"}, {"-180", "-180"}, {"180.5", "180"}, {"-500", "-180"}};
  int beeps = 0;
  for (const auto& [put, kept] : angles) {
    PutOption("TAngle", put);
    EXPECT_EQ(Option("TAngle"), kept);
    beeps += std::string(put) != kept ? 1 : 0;
    EXPECT_EQ(world.boxes.Beeps(), beeps) << put;
  }
}

TEST_F(OptionsTest, TextsThatAreNoAngleAreRefused) {
  PutOption("CmbRotate", "5");
  PutOption("TAngle", "7.3");
  for (const char* text : {"", "-", "NaN", "inf", "7,300", "1e9", "abc"}) {
    const controls::EditResult result = options.TAngle.UserEdit(text);
    EXPECT_EQ(result.refusal, "只接受数字，例如 12.5") << text;
    EXPECT_EQ(Option("TAngle"), "7.3") << text;
  }
  PutOption("TAngle", "1000000000");
  EXPECT_EQ(Option("TAngle"), "180");
  PutOption("TAngle", "－４５．５");
  EXPECT_EQ(Option("TAngle"), "-45.5");
}

TEST_F(OptionsTest, TextsThatAreNoZoomArePutBack) {
  for (const char* text : {"%", ",", "10,", "", "abc", "NaN"}) {
    PutOption("CmbZoom", "50%");
    const int beeps = world.boxes.Beeps();
    PutOption("CmbZoom", text);
    EXPECT_EQ(options.CmbZoom.Text(), "100%") << text;
    EXPECT_EQ(world.boxes.Beeps(), beeps + 1) << text;
  }
  const int beeps = world.boxes.Beeps();
  for (const char* text : {"0%", "9%", "99999,99999", "８００，６００"}) {
    PutOption("CmbZoom", text);
    EXPECT_EQ(options.CmbZoom.Text(), text);
  }
  EXPECT_EQ(world.boxes.Beeps(), beeps);
}

TEST_F(OptionsTest, ThresholdsAndCountsStayWithinTheirLimits) {
  for (const char* name : {"TSmalS(0)", "TSmalS(1)"}) {
    for (const char* text : {"0", "100000"}) {
      PutOption(name, text);
      EXPECT_EQ(Option(name), text);
    }
    PutOption(name, "-1");
    EXPECT_EQ(Option(name), "100");
  }
  options.TSmalS[4].SetEnabled(true);
  options.TSmalS[5].SetEnabled(true);
  for (const char* name : {"TSmalS(4)", "TSmalS(5)"}) {
    PutOption(name, "1000");
    EXPECT_EQ(Option(name), "1000");
    for (const char* text : {"0", "-3", "1001"}) {
      PutOption(name, "3");
      PutOption(name, text);
      EXPECT_EQ(Option(name), "2") << text;
    }
  }
  EXPECT_EQ(world.boxes.Beeps(), 8);
}

TEST_F(OptionsTest, RegionsNeedTheirWindow) {
  PutOption("ChMulCut", "1");
  EXPECT_EQ(Option("ChMulCut"), "0");
  EXPECT_EQ(Questions(), 1);
  EXPECT_TRUE(Enabled("menuNormalCut"));
  controls::Window regions("FMultCut", "");
  program.windows.Add(regions);
  PutOption("ChMulCut", "1");
  EXPECT_EQ(Option("ChMulCut"), "1");
  EXPECT_TRUE(regions.Visible());
  EXPECT_FALSE(Enabled("menuNormalCut"));
  PutOption("ChMulCut", "0");
  EXPECT_TRUE(Enabled("menuNormalCut"));
}

TEST_F(OptionsTest, RegionsAndSplittingArePutBackInModesWithPages) {
  WriteApp("CutMedia.dll");
  WriteApp("Aspose.pdf.dll");
  controls::Window regions("FMultCut", "");
  program.windows.Add(regions);
  for (const int mode : {1, 3, 5}) {
    Put("CmbCutMode", std::to_string(mode));
    PutOption("ChMulCut", "1");
    PutOption("ChSplit", "1");
    EXPECT_EQ(Option("ChMulCut"), "0") << mode;
    EXPECT_EQ(Option("ChSplit"), "0") << mode;
    EXPECT_FALSE(regions.Visible()) << mode;
  }
  EXPECT_EQ(Questions(), 0);
}

TEST_F(OptionsTest, SplittingFreesItsCounts) {
  PutOption("ChSplit", "1");
  EXPECT_TRUE(OptionEnabled("TSmalS(4)"));
  EXPECT_TRUE(OptionEnabled("TSmalS(5)"));
  PutOption("ChSplit", "0");
  EXPECT_FALSE(OptionEnabled("TSmalS(4)"));
  EXPECT_FALSE(OptionEnabled("TSmalS(5)"));
}

TEST_F(OptionsTest, TheManualFrameNeedsItsWindow) {
  PutOption("ChMamal", "1");
  EXPECT_TRUE(flags.ManualCutMode);
  PutOption("ChMamal", "0");
  EXPECT_FALSE(flags.ManualCutMode);
  program.manualFrame = nullptr;
  PutOption("ChMamal", "1");
  EXPECT_EQ(Option("ChMamal"), "0");
  EXPECT_FALSE(flags.ManualCutMode);
  EXPECT_EQ(Questions(), 1);
}

TEST_F(OptionsTest, CmykNeedsToolsAndProfiles) {
  PutOption("ChToCMYK", "1");
  EXPECT_EQ(Option("ChToCMYK"), "0");
  EXPECT_FALSE(flags.ToCmyk);
  EXPECT_EQ(Questions(), 0);
  EXPECT_EQ(world.boxes.Count("找不到颜色配置文件夹 ColorConfigs，不能转CMYK！"), 1);
  WriteApp("ColorConfigs/Default.icm");
  PutOption("ChToCMYK", "1");
  EXPECT_EQ(Option("ChToCMYK"), "1");
  EXPECT_TRUE(flags.ToCmyk);
  PutOption("ChToCMYK", "0");
  EXPECT_FALSE(flags.ToCmyk);
  program.outputTools = nullptr;
  PutOption("ChToCMYK", "1");
  EXPECT_EQ(Option("ChToCMYK"), "0");
  EXPECT_FALSE(flags.ToCmyk);
  EXPECT_EQ(Questions(), 1);
}

TEST_F(OptionsTest, ExifIsKept) {
  PutOption("ChKeepExif", "1");
  EXPECT_TRUE(flags.KeepExif);
  PutOption("ChKeepExif", "0");
  EXPECT_FALSE(flags.KeepExif);
}

TEST_F(OptionsTest, ExifIsNotKeptFromGifToTif) {
  WriteApp("CutMedia.dll");
  Put("CmbCutMode", "1");
  form.CmbOutType.Select(3);
  options.ChKeepExif.Set(true);
  EXPECT_EQ(Option("ChKeepExif"), "0");
  EXPECT_FALSE(flags.KeepExif);
  form.CmbOutType.Select(2);
  options.ChKeepExif.Set(true);
  EXPECT_TRUE(flags.KeepExif);
}

TEST_F(OptionsTest, TheirResolutionIsStamped) {
  PutOption("CmbDPI", "254");
  EXPECT_EQ(flags.OutDpi, 254);
  PutOption("CmbDPI", "0");
  EXPECT_EQ(flags.OutDpi, 0);
  EXPECT_EQ(Value("CmbDPI"), "0");
}

TEST_F(OptionsTest, BordersAreNotNegative) {
  PutOption("TBoard(2)", "-1");
  EXPECT_EQ(Option("TBoard(2)"), "0");
  EXPECT_EQ(world.boxes.Beeps(), 1);
  PutOption("TBoard(2)", "2.5");
  EXPECT_EQ(Option("TBoard(2)"), "2.5");
}

TEST_F(OptionsTest, ClosingOnlyHides) {
  PutOption("ChInvert", "1");
  options.Close();
  EXPECT_FALSE(options.Visible());
  EXPECT_TRUE(options.Loaded());
  EXPECT_TRUE(flags.AdvancedOptionsLoaded);
  EXPECT_EQ(Option("ChInvert"), "1");
}

class UnloadedOptionsTest : public StartedTest {};

TEST_F(UnloadedOptionsTest, NothingCountsBeforeTheFirstOpening) {
  IdleFrame manualFrame;
  IdleTools tools;
  program.manualFrame = &manualFrame;
  program.outputTools = &tools;
  WriteApp("ColorConfigs/Default.icm");
  EXPECT_FALSE(flags.AdvancedOptionsLoaded);
  for (const char* name : {"ChMamal", "ChCutAndZoom", "ChToWB", "ChToCMYK", "ChKeepExif"}) {
    Put(std::string("FBaseOpt.") + name, "1");
  }
  Put("FBaseOpt.CmbDPI", "72");
  EXPECT_FALSE(flags.ManualCutMode || flags.CutThenZoom || flags.ToBlackWhite || flags.ToCmyk || flags.KeepExif);
  EXPECT_EQ(flags.OutDpi, 300);
  Click("MenuBaseOptions");
  EXPECT_TRUE(options.Visible());
  EXPECT_TRUE(flags.AdvancedOptionsLoaded);
  EXPECT_TRUE(flags.ManualCutMode && flags.CutThenZoom && flags.ToBlackWhite && flags.ToCmyk && flags.KeepExif);
  EXPECT_EQ(flags.OutDpi, 72);
}

TEST_F(UnloadedOptionsTest, WhatTheyShareWithTheMainWindowCountsFromTheFirstOpening) {
  Put("FBaseOpt.ChBig", "1");
  Put("FBaseOpt.ChAutoCenter", "1");
  EXPECT_FALSE(flags.LargeCapacityMode);
  EXPECT_EQ(Value("ChBig"), "0");
  EXPECT_EQ(Value("ChAutoCenter"), "0");
  Click("MenuBaseOptions");
  EXPECT_TRUE(flags.LargeCapacityMode);
  EXPECT_EQ(Value("ChBig"), "1");
  EXPECT_EQ(Value("ChAutoCenter"), "1");
}

TEST_F(UnloadedOptionsTest, OpeningThemKeepsWhatTheMainWindowSays) {
  Put("ChBig", "1");
  Put("ChAutoCenter", "1");
  Click("MenuBaseOptions");
  EXPECT_TRUE(flags.LargeCapacityMode);
  EXPECT_EQ(Value("FBaseOpt.ChBig"), "1");
  EXPECT_EQ(Value("FBaseOpt.ChAutoCenter"), "1");
}

TEST_F(UnloadedOptionsTest, OpeningThemLeavesTheResolutionIfTheyNameNone) {
  Put("CmbDPI", "600");
  options.Load();
  EXPECT_EQ(flags.OutDpi, 600);
}

}  // namespace
}  // namespace quillon::job
