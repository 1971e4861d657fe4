// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What the menus start, the boxes they show, and the frame of a run.
#include "job/program_fixture.h"

namespace quillon::job {
namespace {

using host::Reply;

constexpr const char* kMissing =
    "本机缺失资源文件，请使用最新安装包覆盖安装之后再行使用本功能！\r\n要立即下载安装包吗？";

class MenusTest : public StartedTest {};

TEST_F(MenusTest, TheMissingResourceQuestion) {
  world.boxes.Answer(kMissing, Reply::Cancel, 1);
  program.AskMissingResource();
  ASSERT_EQ(world.boxes.All().size(), 1U);
  EXPECT_EQ(world.boxes.All()[0].box.text, kMissing);
  EXPECT_EQ(world.boxes.All()[0].box.type, 17);
  EXPECT_EQ(world.boxes.All()[0].box.title, "消息");
  EXPECT_TRUE(world.shell.Addresses().empty());
  world.boxes.Answer(kMissing, Reply::Ok);
  program.AskMissingResource();
  EXPECT_EQ(world.shell.Addresses(), (std::vector<std::string>{"https://quillon.example/download"}));
}

TEST_F(MenusTest, TheInstallerMayLieElsewhere) {
  program.SaveSetting("InstallerUrl", "https://mirror.example/quillon");
  program.AskMissingResource();
  EXPECT_EQ(world.shell.Addresses(), (std::vector<std::string>{"https://mirror.example/quillon"}));
}

TEST_F(MenusTest, SettingsStandUnderTheTitleOfTheProgram) {
  program.SaveSetting("LInDir", "/in");
  EXPECT_EQ(world.settings.Get("Quillon", "Default", "LInDir"), "/in");
  world.settings.Set("Quillon", "Default", "Other", "text");
  EXPECT_EQ(program.Setting("Other"), "text");
  EXPECT_EQ(program.Setting("Missing"), "");
}

TEST_F(MenusTest, PathsInTheProgramFolder) {
  EXPECT_EQ(program.AppPath("Tmp.jpg"), world.host.programFolder + "/Tmp.jpg");
}

TEST_F(MenusTest, TitlesHaveTheStatusInFront) {
  form.ShowStatus("  正在处理...3/7");
  EXPECT_EQ(form.Title(), "  正在处理...3/7Quillon");
  form.ShowStatus("");
  EXPECT_EQ(form.Title(), "Quillon");
}

TEST_F(MenusTest, ARunDisablesTheWindowAndFreesTheStop) {
  const char* disabled[] = {"Frame1", "MenuFiles", "MenuList", "MenuOtherOptions", "MenuCut", "MenuOther", "MenuHelp"};
  flags.StopRequested = true;
  form.BeginRun();
  EXPECT_FALSE(flags.StopRequested);
  for (const char* name : disabled) EXPECT_FALSE(Enabled(name)) << name;
  EXPECT_FALSE(Enabled("TCutValue(0)"));
  EXPECT_FALSE(Enabled("menuNormalCut"));
  EXPECT_TRUE(Enabled("MenuStop"));
  EXPECT_TRUE(Enabled("MSF"));
  form.ShowStatus("  正在处理...1/1");
  form.EndRun();
  for (const char* name : disabled) EXPECT_TRUE(Enabled(name)) << name;
  EXPECT_TRUE(Enabled("TCutValue(0)"));
  EXPECT_FALSE(Enabled("MenuStop"));
  EXPECT_EQ(form.Title(), "Quillon");
}

TEST_F(MenusTest, StoppingAsksFirst) {
  form.BeginRun();
  Click("MenuStop");
  ASSERT_EQ(world.boxes.All().size(), 1U);
  EXPECT_EQ(world.boxes.All()[0].box.text, "终止当前操作？");
  EXPECT_EQ(world.boxes.All()[0].box.type, 305);
  EXPECT_EQ(world.boxes.All()[0].reply, Reply::Cancel);
  EXPECT_FALSE(flags.StopRequested);
  EXPECT_TRUE(Enabled("MenuStop"));
  world.boxes.Answer("终止当前操作？", Reply::Ok);
  Click("MenuStop");
  EXPECT_TRUE(flags.StopRequested);
  EXPECT_FALSE(Enabled("MenuStop"));
}

TEST_F(MenusTest, WindowsThatAreNotThereAreAskedFor) {
  const char* menus[] = {"MenuGifCutOps", "MenuPngCutOps",    "MenuPdfOps",       "MenuPenHui",      "MenuTifCutOps",
                         "MenuColorCut",  "MenuChSizeFormat", "MenuExtentAndCut", "MenuUnitConvert", "MenuGifCut",
                         "MenuPngCut",    "MenuPdfCut",       "MenuPenHuiCut",    "MenuTiffCut"};
  for (const char* name : menus) {
    world.boxes.Forget();
    program.windows.Find(name)->SetEnabled(true);
    Click(name);
    EXPECT_EQ(world.boxes.Count(kMissing), 1) << name;
  }
}

TEST_F(MenusTest, WindowsThatAreThereAreShown) {
  const std::pair<const char*, const char*> menus[] = {
      {"MenuGifCutOps", "FGifCut"},      {"MenuPngCutOps", "FPngCut"},      {"MenuPdfOps", "FPdfOps"},
      {"MenuPenHui", "FCutPenH"},        {"MenuTifCutOps", "FTiffOps"},     {"MenuColorCut", "FCutEdges"},
      {"MenuChSizeFormat", "FZoomComp"}, {"MenuExtentAndCut", "FAddEdges"}, {"MenuUnitConvert", "FConverter"}};
  for (const auto& [menu, name] : menus) {
    controls::Window window(name, "");
    program.windows.Add(window);
    program.windows.Find(menu)->SetEnabled(true);
    Click(menu);
    EXPECT_TRUE(window.Visible()) << name;
  }
  EXPECT_TRUE(world.boxes.All().empty());
}

TEST_F(MenusTest, TheOutputFolderIsOpened) {
  Put("LOutDir", world.folder.Path());
  Click("MenuOpenOutDir");
  EXPECT_EQ(world.shell.Folders(), (std::vector<std::string>{world.folder.Path()}));
  Put("LOutDir", world.folder.Path("missing"));
  Click("MenuOpenOutDir");
  EXPECT_EQ(world.shell.Folders().size(), 1U);
  EXPECT_EQ(world.boxes.All().size(), 1U);
}

TEST_F(MenusTest, TheGuideIsOpened) {
  program.documents = world.folder.Path("documents");
  Click("MenuGuide");
  EXPECT_EQ(world.boxes.Count(kMissing), 1);
  const std::string installed = world.folder.Write("documents/用户手册.md", "x");
  Click("MenuGuide");
  ASSERT_FALSE(world.shell.Addresses().empty());
  EXPECT_EQ(world.shell.Addresses().back(), installed);
  const std::string guide = WriteApp("用户手册.md");
  Click("MenuGuide");
  EXPECT_EQ(world.shell.Addresses().back(), guide);
  EXPECT_EQ(world.boxes.Count(kMissing), 1);
}

TEST_F(MenusTest, AboutNamesTheProgramAndItsVersion) {
  Click("MenuAbout");
  ASSERT_EQ(world.boxes.All().size(), 1U);
  EXPECT_THAT(world.boxes.All()[0].box.text, ::testing::HasSubstr("Quillon " QUILLON_VERSION));
  EXPECT_EQ(world.boxes.All()[0].box.type, 64);
}

TEST_F(MenusTest, WithoutFilesTheCutAsksForThem) {
  Click("menuNormalCut");
  EXPECT_EQ(world.boxes.Count("请先添加文件列表！"), 1);
}

}  // namespace
}  // namespace quillon::job
