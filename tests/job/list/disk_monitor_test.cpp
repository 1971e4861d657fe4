// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/disk_monitor.h"

#include <filesystem>

#include "host/disk_thread.h"
#include "host/testing/fakes.h"
#include "job/cut_fixture.h"
#include "job/list/dead_disk.h"

namespace quillon::job {
namespace {

using host::Problem;
using host::testing::DiskCall;

class DiskMonitorTest : public ProgramTest {
 protected:
  void SetUp() override {
    for (const char* name : {"a/1.jpg", "a/2.jpg", "a/deep/3.jpg", "b/4.jpg", "abc/5.jpg"}) File(name);
  }
  std::string Path(const std::string& name) const { return world.folder.Path("tree/" + name); }
  void File(const std::string& name) { world.folder.Write("tree/" + name, "x"); }
  // Each turn of the pump advances the clock by a second.
  void TimeGoesBy() {
    world.pump.EveryTurn([&] {
      if (host::testing::OtherThreadsWait()) world.clock.Advance(1);
    });
  }
  int Asked() const { return world.faults.Count(DiskCall::OpenRead); }

  DeadDisk dead;  // answers before the world ends
};

TEST_F(DiskMonitorTest, WhatIsThereAndWhatIsNotAnswers) {
  EXPECT_TRUE(program.disks.AskFile(Path("a/1.jpg")));
  EXPECT_TRUE(program.disks.AskFile(Path("nowhere/1.jpg")));
  EXPECT_TRUE(program.disks.AskFolder(Path("b")));
  EXPECT_TRUE(program.disks.AskFolder("未选择"));
  EXPECT_TRUE(program.disks.AskFolder(""));
}

TEST_F(DiskMonitorTest, ADiskOfThisMachineIsAskedEveryHalfSecondForEachFolder) {
  DiskMonitor& disks = program.disks;
  ASSERT_TRUE(disks.AskFile(Path("a/1.jpg")));
  const int once = Asked();
  EXPECT_TRUE(disks.AskFile(Path("a/2.jpg")));
  EXPECT_TRUE(disks.AskFolder(Path("a")));
  EXPECT_EQ(Asked(), once);
  EXPECT_TRUE(disks.AskFile(Path("b/4.jpg")));
  EXPECT_EQ(Asked(), once + 1);
  world.clock.Advance(0.4);
  EXPECT_TRUE(disks.AskFile(Path("a/2.jpg")));
  EXPECT_EQ(Asked(), once + 1);
  world.clock.Advance(0.2);
  EXPECT_TRUE(disks.AskFile(Path("a/2.jpg")));
  EXPECT_EQ(Asked(), once + 2);
}

TEST_F(DiskMonitorTest, ADiskOfTheNetworkIsAskedBeforeEveryFile) {
  world.faults.MakeRemote();
  ASSERT_TRUE(program.disks.AskFile(Path("a/1.jpg")));
  const int once = Asked();
  EXPECT_TRUE(program.disks.AskFile(Path("a/1.jpg")));
  EXPECT_TRUE(program.disks.AskFile(Path("a/2.jpg")));
  EXPECT_EQ(Asked(), once + 2);
}

TEST_F(DiskMonitorTest, ASilentDiskIsGivenUpAfterHalfAMinute) {
  dead.HangAt(world.faults, DiskCall::OpenRead, "1.jpg");
  TimeGoesBy();
  const double start = world.clock.Seconds();
  const host::Status answered = program.disks.AskFile(Path("a/1.jpg"));
  EXPECT_EQ(answered.GetProblem(), Problem::Other);
  EXPECT_EQ(answered.Why(), "磁盘没有响应，已跳过；请检查磁盘或网络连接后重新处理");
  EXPECT_GE(world.clock.Seconds() - start, 30);
  EXPECT_LE(world.clock.Seconds() - start, 32);
}

TEST_F(DiskMonitorTest, AllBelowTheSilentPlaceFailsAtOnceUntilItAnswers) {
  dead.HangAt(world.faults, DiskCall::Stat, "/tree/a");
  TimeGoesBy();
  EXPECT_FALSE(program.disks.AskFile(Path("a/deep/3.jpg")));
  const int turns = world.pump.Turns();
  const int stats = world.faults.Count(DiskCall::Stat);
  EXPECT_FALSE(program.disks.AskFile(Path("a/1.jpg")));
  EXPECT_EQ(program.disks.AskFolder(Path("a/deep")).Why(), "没有响应");
  EXPECT_TRUE(program.disks.Silent(Path("a/1.jpg")));
  EXPECT_FALSE(program.disks.Silent(Path("abc/5.jpg"))) << "another folder with the same beginning";
  EXPECT_EQ(world.pump.Turns(), turns);
  EXPECT_EQ(world.faults.Count(DiskCall::Stat), stats);
  EXPECT_TRUE(program.disks.AskFile(Path("b/4.jpg")));
  dead.Answer();
  EXPECT_FALSE(program.disks.Silent(Path("a/1.jpg")));
  EXPECT_TRUE(program.disks.AskFile(Path("a/1.jpg")));
}

TEST_F(DiskMonitorTest, AStopIsObeyedWhileTheDiskIsSilent) {
  dead.HangAt(world.faults, DiskCall::OpenRead, "1.jpg");
  world.pump.OnTurn(3, [&] { flags.StopRequested = true; });
  const host::Status answered = program.disks.AskFile(Path("a/1.jpg"));
  EXPECT_EQ(answered.GetProblem(), Problem::Stopped);
  EXPECT_LT(world.clock.Seconds(), 1);
}

TEST_F(DiskMonitorTest, AStopOfEarlierWorkDoesNotMatter) {
  flags.StopRequested = true;
  EXPECT_TRUE(program.disks.AskFile(Path("a/1.jpg")));
  dead.HangAt(world.faults, DiskCall::OpenRead, "4.jpg");
  TimeGoesBy();
  EXPECT_EQ(program.disks.AskFile(Path("b/4.jpg")).GetProblem(), Problem::Other);
}

TEST_F(DiskMonitorTest, TheOutputFolderIsAskedUnlessSourcesAreOverwritten) {
  world.folder.Write("out/x", "x");
  Put("LOutDir", world.folder.Path("out"));
  dead.HangAt(world.faults, DiskCall::Stat, "/out");
  TimeGoesBy();
  EXPECT_EQ(program.disks.AskForCut(Path("a/1.jpg")).Why(), "输出目录没有响应，已跳过；请检查磁盘或网络连接后重新处理");
  Put("ChOver", "1");
  EXPECT_TRUE(program.disks.AskForCut(Path("a/1.jpg")));
}

// --- Runs and lists.

class SilentRunTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    world.pump.EveryTurn([&] {
      if (host::testing::OtherThreadsWait()) world.clock.Advance(secondsOfATurn);
    });
  }
  // Some time before the cut, which asks the disk anew.
  void ListEarlier(const std::vector<std::string>& paths) {
    List(paths);
    world.clock.Advance(1);
  }
  std::vector<std::string> MakeThree() { return {Make("x/1.jpg"), Make("y/2.jpg"), Make("z/3.jpg")}; }
  // Makes the prefetch of the named file hang before the first file is done.
  void HangPrefetchOf(const std::string& name) {
    dead.HangAt(world.faults, DiskCall::Stat, name);
    recorder.onFileDone = [&](const FileResult& file) {
      if (file.source.ends_with("1.jpg")) dead.AwaitHanging();
    };
  }

  double secondsOfATurn = 1;
  DeadDisk dead;
};

TEST_F(SilentRunTest, AListGoesOnAfterAFileThatDoesNotAnswer) {
  ListEarlier(MakeThree());
  dead.HangAt(world.faults, DiskCall::OpenRead, "/in/y/2.jpg");
  program.recovering = true;  // so that nobody else reads
  Cut();
  EXPECT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(Why(2), host::kDiskUnresponsive);
  EXPECT_EQ(program.files.Row(1).result, Result::None);
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"1.jpg", "3.jpg"}));
  EXPECT_EQ(recorder.done.size(), 3u);
}

// Its folder is one that an earlier source lies in, and that did not answer then.
TEST_F(SilentRunTest, AnOlderResultOnADiskThatFellSilentIsLeftAlone) {
  Put("ChKeepDir", "1");
  Option("CmbRotate", "1");  // reads the source before the output is named
  const std::string folder = "out" + world.folder.Path("in/x");
  const std::string older = world.folder.Write(folder + "/1.jpg", "older");
  const std::string beside = Make("0.jpg");
  std::filesystem::copy_file(beside, world.folder.Path(folder + "/0.jpg"));
  ListEarlier({world.folder.Path(folder + "/0.jpg"), Make("x/1.png")});
  world.folder.Write("in/x/1.png", world.folder.Read("in/x/1.png").substr(0, 100));
  program.recovering = true;
  dead.HangAt(world.faults, DiskCall::OpenRead, folder + "/0.jpg");
  Cut();
  EXPECT_EQ(Totals().none, 2u) << Whys();
  EXPECT_EQ(Why(1), host::kDiskUnresponsive);
  EXPECT_TRUE(program.disks.Silent(older));
  EXPECT_EQ(world.folder.Read(folder + "/1.jpg"), "older");
}

TEST_F(SilentRunTest, AStopEndsTheWait) {
  ListEarlier(MakeThree());
  program.recovering = true;
  dead.HangAt(world.faults, DiskCall::OpenRead, "/in/y/2.jpg");
  world.pump.EveryTurn([&] { flags.StopRequested |= dead.Hangs(); });
  Cut();
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Totals().skipped, 2u);
  EXPECT_EQ(Why(2), "已停止，未处理");
  EXPECT_LT(world.clock.Seconds(), 30);
}

TEST_F(SilentRunTest, APrefetchedCutThatHangsFailsOnlyItsFile) {
  ListEarlier(MakeThree());
  HangPrefetchOf("/in/y/2.jpg");
  Cut();
  EXPECT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(Why(2), host::kDiskUnresponsive);
}

TEST_F(SilentRunTest, AFolderRunGoesOnAndCanBeContinued) {
  Make("1.bmp", 20, 20);
  Make("x/2.bmp", 20, 20);
  Make("y/3.bmp", 20, 20);
  program.recovering = true;
  Put("ChBig", "1");
  Put("ChSubFold", "1");
  Put("LInDir", world.folder.Path("in"));
  dead.HangAt(world.faults, DiskCall::OpenRead, "2.bmp");
  Cut();
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"1.jpg", "3.jpg"}));
  EXPECT_EQ(Totals().none, 1u);
  ASSERT_EQ(recorder.done.size(), 3u);
  for (const FileResult& file : recorder.done) {
    EXPECT_EQ(file.why, file.source.ends_with("2.bmp") ? host::kDiskUnresponsive : "");
  }
  EXPECT_TRUE(world.boxes.All().empty()) << "it is no picture without a size";
}

TEST_F(SilentRunTest, AStopEndsAFolderRun) {
  Make("1.bmp", 20, 20);
  Make("x/2.bmp", 20, 20);
  program.recovering = true;
  Put("ChBig", "1");
  Put("ChSubFold", "1");
  Put("LInDir", world.folder.Path("in"));
  dead.HangAt(world.faults, DiskCall::OpenRead, "2.bmp");
  world.pump.EveryTurn([&] { flags.StopRequested |= dead.Hangs(); });
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"1.jpg"});
  EXPECT_EQ(recorder.done.size(), 1u);
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(SilentRunTest, APrefetchedMeasurementThatHangsDoesNotEndAFolderRun) {
  Make("1.jpg");
  Make("x/2.jpg");
  Make("y/3.jpg");
  Put("ChBig", "1");
  Put("ChSubFold", "1");
  Put("LInDir", world.folder.Path("in"));
  HangPrefetchOf("2.jpg");
  Cut();
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"1.jpg", "3.jpg"}));
  EXPECT_TRUE(world.boxes.All().empty());
}

TEST_F(SilentRunTest, FoldersThatDoNotAnswerAreReported) {
  Make("1.jpg");
  struct Case {
    const char* label;
    const char* text;
  };
  Put("ChBig", "1");
  for (const Case& c : {Case{"LInDir", "输入目录没有响应："}, Case{"LOutDir", "输出目录没有响应："}}) {
    DeadDisk silent;
    const std::string folder = world.folder.Path(std::string("dead-") + c.label);
    ASSERT_TRUE(world.files.MakeFolders(folder));
    Put("LInDir", world.folder.Path("in"));
    Put("LOutDir", outFolder);
    Put(c.label, folder);
    silent.HangAt(world.faults, DiskCall::Stat, folder);
    world.boxes.Forget();
    Cut();
    ASSERT_EQ(world.boxes.All().size(), 1u) << c.label;
    EXPECT_EQ(world.boxes.All()[0].box.text, c.text + folder);
    EXPECT_EQ(world.boxes.All()[0].box.type, 16);
    EXPECT_TRUE(recorder.started.empty());
  }
}

TEST_F(SilentRunTest, NamedFilesThatDoNotAnswerAreNotListed) {
  const std::vector<std::string> three{Make("x/1.jpg"), Make("x/2.jpg"), Make("z/3.jpg")};
  dead.HangAt(world.faults, DiskCall::OpenRead, "1.jpg");
  List(three);
  ASSERT_EQ(recorder.notListed.size(), 2u) << Whys();
  EXPECT_EQ(recorder.notListed[0], (std::pair<std::string, std::string>(three[0], host::kDiskUnresponsive)));
  EXPECT_EQ(recorder.notListed[1].first, three[1]) << "in the same folder";
  EXPECT_EQ(program.files.RowCount(), 1u);
}

// --- Disks that fall silent in the middle, in work that nobody has prefetched.

TEST_F(SilentRunTest, ASourceThatHangsAfterItWasOpenedFailsAlone) {
  ListEarlier(MakeThree());
  dead.HangAt(world.faults, DiskCall::Stat, "/in/y/2.jpg");
  program.recovering = true;
  Cut();
  EXPECT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(Why(2), host::kDiskUnresponsive);
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"1.jpg", "3.jpg"}));
}

TEST_F(SilentRunTest, APictureThatIsLoadedForItsEffectsFailsAlone) {
  Option("ChToGray", "1");
  ListEarlier(MakeThree());
  dead.HangAt(world.faults, DiskCall::Stat, "/in/y/2.jpg", 2);
  program.recovering = true;
  Cut();
  EXPECT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(Why(2), host::kDiskUnresponsive);
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"1.jpg", "3.jpg"}));
}

TEST_F(SilentRunTest, AnOutputThatHangsFailsItsFileAlone) {
  world.faults.MakeRemote();
  for (const DiskCall call : {DiskCall::OpenNew, DiskCall::Write, DiskCall::RenameNew}) {
    DeadDisk silent;
    program.Intake().Clear();
    recorder.done.clear();
    std::filesystem::remove_all(outFolder);
    ASSERT_TRUE(world.files.MakeFolders(outFolder));
    ListEarlier(MakeThree());
    silent.HangAt(world.faults, call, "/out/.2.jpg");
    Cut();
    EXPECT_EQ(Totals().written, 2u) << NameOf(call) << ": " << Whys();
    EXPECT_EQ(Why(2), host::kDiskUnresponsive) << NameOf(call);
    EXPECT_FALSE(world.folder.Exists("out/2.jpg")) << NameOf(call);
    world.faults.Clear();
  }
}

// The source stays as it was, also after the disk answers again.
TEST_F(SilentRunTest, ASourceWhoseReplacementHangsStays) {
  Put("ChOver", "1");
  Margins(10, 0, 0, 0);
  ListEarlier(MakeThree());
  const std::string before = world.folder.Read("in/y/2.jpg");
  secondsOfATurn = 10;
  dead.HangAt(world.faults, DiskCall::Sync, "/in/y/.2.jpg");
  Cut();
  EXPECT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(Why(2), host::kDiskUnresponsive);
  dead.Answer();
  EXPECT_EQ(world.folder.Read("in/y/2.jpg"), before);
}

TEST_F(SilentRunTest, AStopEndsTheWaitForAnOutput) {
  world.faults.MakeRemote();
  ListEarlier(MakeThree());
  dead.HangAt(world.faults, DiskCall::Write, "/out/.2.jpg");
  world.pump.EveryTurn([&] { flags.StopRequested |= dead.Hangs(); });
  Cut();
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Why(2), "已停止");
  EXPECT_LT(world.clock.Seconds(), 30);
}

TEST_F(SilentRunTest, OutputsThatDoNotReachTheDiskCountAsLost) {
  const std::vector<std::string> three = MakeThree();
  ListEarlier(three);
  dead.HangAt(world.faults, DiskCall::Sync, "/out/.3.jpg");
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.source == three[2]) dead.HangAt(world.faults, DiskCall::Stat, "/out");
  };
  Cut();
  EXPECT_EQ(Why(3), "输出文件没有写到磁盘上：磁盘没有响应") << Whys();
  EXPECT_EQ(Totals().written + Totals().none, 3u);
  EXPECT_FALSE(recorder.lost.empty());
}

TEST_F(SilentRunTest, OutputsOnASlowDiskAreWaitedFor) {
  ListEarlier(MakeThree());
  dead.HangAt(world.faults, DiskCall::Sync, "/out/.3.jpg");
  const double start = world.clock.Seconds();
  secondsOfATurn = 10;
  world.pump.EveryTurn([&] {
    if (world.clock.Seconds() > start + 600) dead.LetGo();
  });
  Cut();
  EXPECT_EQ(Totals().written, 3u) << Whys();
}

// --- A folder whose files go while it is walked.

TEST_F(SilentRunTest, FilesThatVanishBeforeTheirCutEndTheRunWithTheBox) {
  Make("1.bmp", 20, 20);
  Make("x/2.bmp", 20, 20);
  Make("x/3.bmp", 20, 20);
  Put("ChBig", "1");
  Put("ChSubFold", "1");
  Put("LInDir", world.folder.Path("in"));
  recorder.onFileDone = [&](const FileResult&) { std::filesystem::remove_all(world.folder.Path("in/x")); };
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"1.jpg"});
  EXPECT_EQ(world.boxes.Count("获取图片的尺寸数据为0"), 1);
  ASSERT_EQ(recorder.done.size(), 2u);
  EXPECT_EQ(recorder.done[1].result, Result::None);
  EXPECT_EQ(recorder.done[1].why, "找不到图片文件");
  EXPECT_TRUE(flags.StopRequested);
}

}  // namespace
}  // namespace quillon::job
