// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>

#include "host/testing/test_host.h"
#include "tools/processes.h"
#include "tools/tools.h"
#include "tools/twins.h"

namespace quillon::tools {
namespace {

using host::testing::TestHost;

class ToolsTest : public ::testing::Test {
 protected:
  TestHost world;

  void Write(const std::string& name, const std::string& content) { world.folder.Write("app/" + name, content); }
  std::string Read(const std::string& name) { return world.folder.Read("app/" + name); }
  bool Has(const std::string& name) { return world.folder.Exists("app/" + name); }
  void Run(int id, const std::string& name, const std::string& folder = "", bool own = true) {
    world.processes.Add({id, name, folder.empty() ? world.host.programFolder : folder, own});
  }
};

TEST_F(ToolsTest, EveryHelperIsCopiedAndRemovedAtItsTime) {
  const std::map<std::string, std::pair<Copied, Removed>> expected = {
      {"QxImgTool", {Copied::AtStart, Removed::AtExit}},
      {"QxBackImg", {Copied::Never, Removed::Never}},
      {"PicHandler", {Copied::AtStart, Removed::AtExit}},
      {"TessaExifHandler", {Copied::AtStart, Removed::AtExit}},
      {"SavePicsToTiff", {Copied::AtStart, Removed::AfterRunAndAtExit}},
      {"PicCutConverter", {Copied::AtStart, Removed::AtExit}},
      {"CutMedia", {Copied::WhenMissing, Removed::Never}},
      {"PicCirleCut", {Copied::WhenMissing, Removed::Never}},
      {"QxBackOCRer", {Copied::WhenMissing, Removed::Never}},
      {"DCTiffsMaker", {Copied::Never, Removed::AtExit}},
      {"DrawTranspText", {Copied::WhenMissing, Removed::Never}},
      {"PicsToAniGif", {Copied::WhenMissing, Removed::Never}},
  };
  ASSERT_EQ(Helpers().size(), expected.size());
  for (const Helper& helper : Helpers()) {
    ASSERT_TRUE(expected.contains(helper.name)) << helper.name;
    EXPECT_EQ(helper.copied, expected.at(helper.name).first) << helper.name;
    EXPECT_EQ(helper.removed, expected.at(helper.name).second) << helper.name;
  }
}

TEST_F(ToolsTest, ProgramsGoAtExitInTheirOrder) {
  std::vector<std::string> order;
  for (const Helper& helper : Helpers()) {
    if (helper.removed != Removed::Never) order.emplace_back(helper.name);
  }
  EXPECT_EQ(order, (std::vector<std::string>{"PicHandler", "TessaExifHandler", "SavePicsToTiff", "QxImgTool",
                                             "DCTiffsMaker", "PicCutConverter"}));
  for (const Helper& helper : Helpers()) {
    Write(std::string(helper.name) + ".exe", "x");
    Write(std::string(helper.name) + ".dll", "x");
  }
  RemoveProgramsAtExit(world.host);
  for (const Helper& helper : Helpers()) {
    EXPECT_EQ(Has(std::string(helper.name) + ".exe"), helper.removed == Removed::Never) << helper.name;
    EXPECT_TRUE(Has(std::string(helper.name) + ".dll")) << helper.name;
  }
}

TEST_F(ToolsTest, ATwinIsCopiedOntoTheProgramAndStaysRunnable) {
  Write("X.dll", "new");
  ASSERT_EQ(chmod(TwinPath(world.host, "X").c_str(), 0755), 0);
  ASSERT_TRUE(CopyTwin(world.host, "X"));
  EXPECT_EQ(Read("X.exe"), "new");
  struct stat facts {};
  ASSERT_EQ(stat(ProgramPath(world.host, "X").c_str(), &facts), 0);
  EXPECT_NE(facts.st_mode & S_IXUSR, 0U);
  Write("X.dll", "newer");
  ASSERT_TRUE(CopyTwin(world.host, "X"));
  EXPECT_EQ(Read("X.exe"), "newer");
}

TEST_F(ToolsTest, AMissingTwinFailsAndLeavesTheProgram) {
  Write("X.exe", "old");
  EXPECT_FALSE(CopyTwin(world.host, "X"));
  EXPECT_EQ(Read("X.exe"), "old");
}

TEST_F(ToolsTest, AProgramIsPutThereWhenItIsMissing) {
  Write("X.dll", "twin");
  Write("Y.dll", "twin");
  Write("Y.exe", "mine");
  EXPECT_TRUE(EnsureProgram(world.host, "X"));
  EXPECT_TRUE(EnsureProgram(world.host, "Y"));
  EXPECT_FALSE(EnsureProgram(world.host, "Z"));
  EXPECT_EQ(Read("X.exe"), "twin");
  EXPECT_EQ(Read("Y.exe"), "mine");
}

TEST_F(ToolsTest, ProcessesAreFoundByTheBeginningOfTheirName) {
  Run(1, "qximgtool.EXE", "/elsewhere", false);
  EXPECT_TRUE(ProcessExists(world.host, "QxImgTool.exe"));
  EXPECT_TRUE(ProcessExists(world.host, "QxImg"));
  EXPECT_FALSE(ProcessExists(world.host, "ImgTool"));
  EXPECT_FALSE(ProcessExists(world.host, "QxImgTool.exe.old"));
}

TEST_F(ToolsTest, ASecondProcessCanBeAskedFor) {
  EXPECT_FALSE(ProcessExists(world.host, "A", Want::Second));
  Run(1, "A.exe");
  EXPECT_FALSE(ProcessExists(world.host, "A", Want::Second));
  Run(2, "AB.exe");
  EXPECT_TRUE(ProcessExists(world.host, "A", Want::Second));
}

TEST_F(ToolsTest, ARunningProcessIsFoundByItsWholeName) {
  Run(1, "QxImgTool.exe", "/elsewhere", false);
  EXPECT_TRUE(IsProcessRunning(world.host, "qximgtool.exe"));
  EXPECT_FALSE(IsProcessRunning(world.host, "QxImgTool"));
}

TEST_F(ToolsTest, OnlyTheFirstOfOurProcessesIsEnded) {
  Run(1, "CutMedia.exe", "/elsewhere");
  Run(2, "CutMedia.exe", "", false);
  Run(3, "cutmedia.exe.1");
  Run(4, "CutMedia.exe");
  EXPECT_EQ(EndProcess(world.host, "CutMedia.exe"), 1);
  EXPECT_EQ(world.processes.Ended(), (std::vector{3}));
  EXPECT_EQ(EndProcess(world.host, "CutMedia.exe"), 1);
  EXPECT_EQ(world.processes.Ended(), (std::vector{3, 4}));
  EXPECT_EQ(EndProcess(world.host, "CutMedia.exe"), 0);
  EXPECT_EQ(EndProcess(world.host, "Other.exe"), 0);
}

TEST_F(ToolsTest, AllOfOurProcessesOfANameAreKilled) {
  Run(1, "QxImgTool.exe");
  Run(2, "QXIMGTOOL.EXE", world.host.programFolder + "/");
  Run(3, "QxImgTool.exe2");
  Run(4, "QxImgTool.exe", "/elsewhere");
  Run(5, "QxImgTool.exe", "", false);
  KillProcessByName(world.host, "QxImgTool.exe");
  EXPECT_EQ(world.processes.Ended(), (std::vector{1, 2}));
}

TEST_F(ToolsTest, KillingWhatIsNotRunningDoesNothing) {
  KillProcessByName(world.host, "QxImgTool.exe");
  EXPECT_TRUE(world.processes.Ended().empty());
  EXPECT_EQ(world.pump.Turns(), 0);
}

TEST_F(ToolsTest, APausePumpsUntilItsTimeIsOver) {
  const double before = world.clock.Seconds();
  PauseSeconds(world.host, 0.5F);
  EXPECT_GE(world.clock.Seconds() - before, 0.49);
  EXPECT_LT(world.clock.Seconds() - before, 0.6);
  EXPECT_GT(world.pump.Turns(), 10);
}

TEST_F(ToolsTest, APauseOfNothingGivesOneTurn) {
  PauseSeconds(world.host, 0);
  EXPECT_EQ(world.pump.Turns(), 1);
}

TEST_F(ToolsTest, APauseEndsAtMidnight) {
  world.clock.SetSecondsOfDay(86399.9);
  const double before = world.clock.Seconds();
  PauseSeconds(world.host, 2);
  EXPECT_LT(world.clock.Seconds() - before, 0.2);
}

TEST_F(ToolsTest, APauseDoesNotSpin) {
  PauseSeconds(world.host, 2);
  EXPECT_GT(world.clock.Slept(), 0.1);
}

}  // namespace
}  // namespace quillon::tools
