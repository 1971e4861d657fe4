// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The lists and switches of the main window that choose what is cut, how, and into what.
#include <map>
#include <set>

#include "job/collaborator_doubles.h"
#include "job/program_fixture.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {
namespace {

constexpr const char* kMissing = "本机缺失资源文件";

class ModesTest : public StartedTest {
 protected:
  IdleFrame manualFrame;
  IdleSheets sheets;
  IdleTools tools;

  void GiveResources() {
    WriteApp("CutMedia.dll");
    WriteApp("Aspose.pdf.dll");
    WriteApp("PicCirleCut.dll");
  }
  int Questions() const { return world.boxes.Count(kMissing); }
};

TEST_F(ModesTest, EachModeEnablesItsOwnMenus) {
  GiveResources();
  const std::map<int, std::set<std::string>> menus = {
      {0, {"menuNormalCut", "MenuChSizeFormat", "MenuExtentAndCut", "MenuBaseOptions"}},
      {1, {"MenuGifCut", "MenuGifCutOps"}},
      {2, {"MenuPngCut", "MenuPngCutOps"}},
      {3, {"MenuPdfCut", "MenuPdfOps", "MenuBaseOptions"}},
      {4, {"MenuPenHui", "MenuPenHuiCut"}},
      {5, {"MenuTiffCut", "MenuTifCutOps", "MenuBaseOptions"}},
  };
  const char* all[] = {"menuNormalCut", "MenuGifCut",   "MenuGifCutOps",    "MenuPngCut",       "MenuPngCutOps",
                       "MenuPdfCut",    "MenuPdfOps",   "MenuPenHui",       "MenuPenHuiCut",    "MenuTiffCut",
                       "MenuTifCutOps", "MenuColorCut", "MenuChSizeFormat", "MenuExtentAndCut", "MenuBaseOptions"};
  for (const int mode : {5, 4, 3, 2, 1, 0}) {
    Put("CmbCutMode", std::to_string(mode));
    ASSERT_EQ(Value("CmbCutMode"), std::to_string(mode));
    for (const char* name : all) EXPECT_EQ(Enabled(name), menus.at(mode).contains(name)) << mode << " " << name;
  }
  EXPECT_EQ(Questions(), 0);
}

TEST_F(ModesTest, TheLastThreeModesFallBackWithABeep) {
  for (const int mode : {6, 7, 8}) {
    Put("CmbCutMode", "2");
    world.boxes.Forget();
    const int beeps = world.boxes.Beeps();
    Put("CmbCutMode", std::to_string(mode));
    EXPECT_EQ(Value("CmbCutMode"), "0") << mode;
    EXPECT_EQ(world.boxes.Beeps(), beeps + 1) << mode;
    EXPECT_TRUE(world.boxes.All().empty()) << mode;
    EXPECT_TRUE(Enabled("menuNormalCut")) << mode;
  }
}

TEST_F(ModesTest, ModesWithoutTheirResourceAskAndAreLeft) {
  for (const int mode : {1, 3, 5}) {
    world.boxes.Forget();
    Put("CmbCutMode", std::to_string(mode));
    EXPECT_EQ(Value("CmbCutMode"), "0") << mode;
    EXPECT_EQ(Questions(), 1) << mode;
    EXPECT_TRUE(Enabled("menuNormalCut")) << mode;
    EXPECT_TRUE(Enabled("CmbOutType")) << mode;
  }
}

TEST_F(ModesTest, TheModeIsLeftAfterTheQuestion) {
  std::string asked;
  world.boxes.OnShow([&](const host::Box&) { asked = Value("CmbCutMode"); });
  Put("CmbCutMode", "3");
  EXPECT_EQ(asked, "3");
  EXPECT_EQ(Value("CmbCutMode"), "0");
  world.boxes.OnShow([&](const host::Box&) { asked = Value("CmbCutStyle"); });
  Put("CmbCutStyle", "2");
  EXPECT_EQ(asked, "2");
  EXPECT_EQ(Value("CmbCutStyle"), "0");
}

TEST_F(ModesTest, ChoosingAModeFreesTheUnit) {
  form.ChCutA.SetEnabled(false);
  Put("CmbCutMode", "2");
  EXPECT_TRUE(Enabled("ChCutA"));
}

TEST_F(ModesTest, EachModeLooksForItsOwnResource) {
  WriteApp("CutMedia.dll");
  Put("CmbCutMode", "1");
  EXPECT_EQ(Value("CmbCutMode"), "1");
  Put("CmbCutMode", "3");
  EXPECT_EQ(Value("CmbCutMode"), "0");
  WriteApp("Aspose.pdf.dll");
  Put("CmbCutMode", "3");
  EXPECT_EQ(Value("CmbCutMode"), "3");
  Put("CmbCutMode", "5");
  EXPECT_EQ(Value("CmbCutMode"), "5");
}

TEST_F(ModesTest, AModeWithoutItsDriverCannotBeChosen) {
  GiveResources();
  program.modes = {CutMode::Normal, CutMode::Gif};
  Put("CmbCutMode", "1");
  EXPECT_EQ(Value("CmbCutMode"), "1");
  for (const int mode : {2, 3, 4, 5}) {
    world.boxes.Forget();
    Put("CmbCutMode", std::to_string(mode));
    EXPECT_EQ(Value("CmbCutMode"), "0") << mode;
    EXPECT_EQ(Questions(), 1) << mode;
  }
}

TEST_F(ModesTest, TheListNamesWhatTheModeCounts) {
  GiveResources();
  const char* expected[] = {"新大小/kb", "Gif帧数", "新大小/kb", "页数", "新大小/kb", "页数"};
  for (int mode = 0; mode <= 5; ++mode) {
    Put("CmbCutMode", std::to_string(mode));
    EXPECT_EQ(form.MSF.Headers().at(6), expected[mode]) << mode;
  }
}

TEST_F(ModesTest, AWindowIsHiddenWhenItsModeIsLeft) {
  GiveResources();
  controls::Window gif("FGifCut", "");
  program.windows.Add(gif);
  Put("CmbCutMode", "1");
  gif.Show();
  Put("CmbCutMode", "2");
  EXPECT_FALSE(gif.Visible());
}

TEST_F(ModesTest, FramesAreNotScaledToAnExactSize) {
  GiveResources();
  Put("ChFixCut", "1");
  Put("ChExact", "1");
  EXPECT_TRUE(ReadCutGeometry(program).ChExact);
  for (const char* mode : {"1", "2"}) {
    Put("CmbCutMode", mode);
    EXPECT_FALSE(Enabled("ChExact")) << mode;
    EXPECT_FALSE(ReadCutGeometry(program).ChExact) << mode;
  }
  Put("CmbCutMode", "0");
  EXPECT_TRUE(Enabled("ChExact"));
}

TEST_F(ModesTest, ModesForceTheOutputType) {
  GiveResources();
  const std::pair<int, int> types[] = {{1, 2}, {2, 1}, {3, 5}, {4, 0}};
  for (const auto& [mode, type] : types) {
    Put("CmbCutMode", "0");
    Put("CmbOutType", "3");
    Put("CmbCutMode", std::to_string(mode));
    EXPECT_EQ(Value("CmbOutType"), std::to_string(type)) << mode;
    EXPECT_FALSE(Enabled("CmbOutType")) << mode;
  }
  for (const int mode : {0, 5}) {
    Put("CmbCutMode", "2");
    Put("CmbCutMode", std::to_string(mode));
    EXPECT_TRUE(Enabled("CmbOutType")) << mode;
    EXPECT_EQ(Value("CmbOutType"), "1") << mode;
  }
  EXPECT_EQ(Questions(), 0);
}

TEST_F(ModesTest, PdfGoesWithItsModeIfNothingElseMakesIt) {
  GiveResources();
  Put("CmbCutMode", "3");
  Put("CmbCutMode", "0");
  EXPECT_EQ(Value("CmbOutType"), "0");
  EXPECT_EQ(Questions(), 0);
  program.outputTools = &tools;
  Put("CmbCutMode", "3");
  Put("CmbCutMode", "0");
  EXPECT_EQ(Value("CmbOutType"), "5");
}

TEST_F(ModesTest, ScannedPdfsAreNamedTheFirstTime) {
  GiveResources();
  Put("CmbCutMode", "3");
  Put("CmbCutMode", "0");
  Put("CmbCutMode", "3");
  EXPECT_EQ(world.boxes.Count("本功能只针对扫描型Pdf进行裁剪，不建议处理非扫描型的Pdf。"), 1);
}

TEST_F(ModesTest, ModesPutTheShapeBack) {
  GiveResources();
  for (const int mode : {1, 2, 3, 4, 5}) {
    Put("CmbCutMode", "0");
    Put("CmbCutStyle", "1");
    Put("CmbCutMode", std::to_string(mode));
    EXPECT_EQ(Value("CmbCutStyle"), mode == 5 ? "1" : "0") << mode;
    EXPECT_EQ(Enabled("CmbCutStyle"), mode != 4) << mode;
    EXPECT_TRUE(Enabled("ChCutA")) << mode;
  }
}

TEST_F(ModesTest, ModesPutSheetsAndLargeCapacityOff) {
  GiveResources();
  program.sheets = &sheets;
  Put("ChFixCut", "1");
  for (const int mode : {1, 2, 3, 4, 5}) {
    Put("CmbCutMode", "0");
    form.ChBig.Set(false);
    Put("ChCutAndArray", "1");
    Put("CmbCutMode", std::to_string(mode));
    EXPECT_EQ(Value("ChCutAndArray"), "0") << mode;
    Put("CmbCutMode", "0");
    Put("ChBig", "1");
    Put("CmbCutMode", std::to_string(mode));
    const bool kept = mode == 3 || mode == 5;
    EXPECT_EQ(form.ChBig.On(), kept) << mode;
    EXPECT_EQ(flags.LargeCapacityMode, kept) << mode;
  }
}

TEST_F(ModesTest, ModesWithPagesPutRegionsAndSplittingOff) {
  GiveResources();
  controls::Window regions("FMultCut", "");
  program.windows.Add(regions);
  for (const int mode : {1, 2, 3, 4, 5}) {
    Put("CmbCutMode", "0");
    Put("FBaseOpt.ChSplit", "1");
    Put("FBaseOpt.ChMulCut", "1");
    Put("CmbCutMode", std::to_string(mode));
    const bool kept = mode == 2 || mode == 4;
    EXPECT_EQ(options.ChSplit.On(), kept) << mode;
    EXPECT_EQ(options.ChMulCut.On(), kept) << mode;
  }
}

TEST_F(ModesTest, RoundedShapesFallBackWithABeep) {
  for (const int shape : {4, 5}) {
    Put("CmbCutStyle", "1");
    const int beeps = world.boxes.Beeps();
    Put("CmbCutStyle", std::to_string(shape));
    EXPECT_EQ(Value("CmbCutStyle"), "0") << shape;
    EXPECT_EQ(world.boxes.Beeps(), beeps + 1) << shape;
    EXPECT_EQ(program.fCutPre.preview.Shape(), 0) << shape;
  }
  EXPECT_EQ(Questions(), 0);
}

TEST_F(ModesTest, RoundShapesNeedTheirHelper) {
  for (const int shape : {2, 3}) {
    world.boxes.Forget();
    Put("CmbCutStyle", std::to_string(shape));
    EXPECT_EQ(Value("CmbCutStyle"), "0") << shape;
    EXPECT_EQ(Questions(), 1) << shape;
  }
}

TEST_F(ModesTest, RoundShapesNeedTheirWindow) {
  WriteApp("PicCirleCut.dll");
  Put("CmbCutStyle", "2");
  EXPECT_EQ(Value("CmbCutStyle"), "0");
  EXPECT_EQ(Questions(), 1);
}

TEST_F(ModesTest, RoundShapesOpenTheirWindowAndOthersHideIt) {
  WriteApp("PicCirleCut.dll");
  controls::Window circles("FCircleCut", "");
  program.windows.Add(circles);
  Put("CmbCutStyle", "3");
  EXPECT_EQ(Value("CmbCutStyle"), "3");
  EXPECT_TRUE(circles.Visible());
  EXPECT_TRUE(AppHas("PicCirleCut.exe"));
  EXPECT_EQ(program.fCutPre.preview.Shape(), 3);
  Put("CmbCutStyle", "1");
  EXPECT_FALSE(circles.Visible());
  EXPECT_EQ(program.fCutPre.preview.Shape(), 1);
  EXPECT_EQ(Questions(), 0);
}

TEST_F(ModesTest, TheFrameFollowsTheShapeOnlyWhileThePreviewIsVisible) {
  program.fCutPre.Hide();
  Put("CmbCutStyle", "1");
  EXPECT_EQ(program.fCutPre.preview.Shape(), 0);
}

TEST_F(ModesTest, PdfAsOutputNeedsTheTools) {
  Put("CmbOutType", "pdf");
  EXPECT_EQ(Value("CmbOutType"), "0");
  EXPECT_EQ(Questions(), 1);
  program.outputTools = &tools;
  Put("CmbOutType", "pdf");
  EXPECT_EQ(Value("CmbOutType"), "5");
  EXPECT_EQ(Questions(), 1);
}

TEST_F(ModesTest, OtherOutputTypesNeedNothing) {
  for (const int type : {1, 2, 3, 4, 0}) {
    Put("CmbOutType", std::to_string(type));
    EXPECT_EQ(Value("CmbOutType"), std::to_string(type));
  }
  EXPECT_EQ(Questions(), 0);
}

TEST_F(ModesTest, TheResolutionIsStamped) {
  const std::pair<const char*, int> entries[] = {{"72", 72},   {"78", 78},     {"82", 82},   {"84", 84},   {"86", 86},
                                                 {"92", 92},   {"94", 94},     {"96", 96},   {"120", 120}, {"124", 124},
                                                 {"156", 156}, {"184", 184},   {"192", 192}, {"254", 254}, {"300", 300},
                                                 {"600", 600}, {"1200", 1200}, {"0", 0}};
  for (const auto& [entry, dpi] : entries) {
    Put("CmbDPI", entry);
    EXPECT_EQ(flags.OutDpi, dpi);
  }
}

TEST_F(ModesTest, TheQualityStaysWithinItsLimits) {
  EXPECT_FALSE(Enabled("TQuality"));
  Put("ChJpgComp", "1");
  EXPECT_TRUE(Enabled("TQuality"));
  const std::pair<const char*, const char*> values[] = {{"30", "30"},  {"99", "99"}, {"29", "30"},
                                                        {"100", "99"}, {"-5", "30"}, {"85", "85"}};
  int beeps = 0;
  for (const auto& [put, kept] : values) {
    Put("TQuality", put);
    EXPECT_EQ(Value("TQuality"), kept);
    beeps += std::string(put) != kept ? 1 : 0;
    EXPECT_EQ(world.boxes.Beeps(), beeps) << put;
  }
  Put("ChJpgComp", "0");
  EXPECT_FALSE(Enabled("TQuality"));
}

TEST_F(ModesTest, SheetsNeedTheirEngine) {
  Put("ChFixCut", "1");
  Put("ChCutAndArray", "1");
  EXPECT_EQ(Value("ChCutAndArray"), "0");
  EXPECT_EQ(Questions(), 1);
  program.sheets = &sheets;
  Put("ChCutAndArray", "1");
  EXPECT_EQ(Value("ChCutAndArray"), "1");
}

TEST_F(ModesTest, LargeCapacityIsMirroredInBothWindows) {
  options.Load();
  Put("ChBig", "1");
  EXPECT_EQ(Value("FBaseOpt.ChBig"), "1");
  EXPECT_TRUE(flags.LargeCapacityMode);
  EXPECT_FALSE(Enabled("MenuReadFiles"));
  Put("FBaseOpt.ChBig", "0");
  EXPECT_EQ(Value("ChBig"), "0");
  EXPECT_FALSE(flags.LargeCapacityMode);
  EXPECT_TRUE(Enabled("MenuReadFiles"));
  Put("FBaseOpt.ChBig", "1");
  EXPECT_EQ(Value("ChBig"), "1");
  EXPECT_TRUE(flags.LargeCapacityMode);
}

TEST_F(ModesTest, LargeCapacityAndSheetsExcludeEachOther) {
  program.sheets = &sheets;
  options.Load();
  Put("ChFixCut", "1");
  Put("ChCutAndArray", "1");
  for (const char* name : {"ChBig", "FBaseOpt.ChBig"}) {
    const int beeps = world.boxes.Beeps();
    Put(name, "1");
    EXPECT_EQ(Value("ChBig"), "0");
    EXPECT_EQ(Value("FBaseOpt.ChBig"), "0");
    EXPECT_FALSE(flags.LargeCapacityMode);
    EXPECT_EQ(world.boxes.Beeps(), beeps + 1);
  }
  Put("ChCutAndArray", "0");
  Put("ChBig", "1");
  const int beeps = world.boxes.Beeps();
  Put("ChCutAndArray", "1");
  EXPECT_EQ(Value("ChCutAndArray"), "0");
  EXPECT_EQ(Value("ChBig"), "1");
  EXPECT_EQ(world.boxes.Beeps(), beeps + 1);
  EXPECT_EQ(Questions(), 0);
}

TEST_F(ModesTest, HugePicturesNeedTheirHelper) {
  Put("ChLarge", "1");
  EXPECT_EQ(Value("ChLarge"), "0");
  EXPECT_EQ(Questions(), 1);
  world.folder.Write("app/PicCutConverter.dll", "");
  Put("ChLarge", "1");
  EXPECT_EQ(Value("ChLarge"), "1");
}

TEST_F(ModesTest, TheOutputFolderLosesATrailingSeparator) {
  const std::pair<const char*, const char*> folders[] = {
      {"/a/b/", "/a/b"}, {"/a/b//", "/a/b"}, {"/", "/"}, {"/a b", "/a b"}};
  for (const auto& [put, kept] : folders) {
    Put("LOutDir", put);
    EXPECT_EQ(Value("LOutDir"), kept);
  }
}

}  // namespace
}  // namespace quillon::job
