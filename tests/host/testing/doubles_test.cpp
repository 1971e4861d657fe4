// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "host/testing/test_host.h"

namespace quillon::host::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ScriptedBoxes, AnswersByTextInTheGivenOrder) {
  ScriptedBoxes boxes;
  boxes.Answer("覆盖", Reply::Yes, 2);
  boxes.Answer("覆盖", Reply::No);
  const Box box{"要覆盖吗？", 4};
  EXPECT_EQ(boxes.Show(box), Reply::Yes);
  EXPECT_EQ(boxes.Show(box), Reply::Yes);
  EXPECT_EQ(boxes.Show(box), Reply::No);
  EXPECT_EQ(boxes.Show(box), Reply::No);
  EXPECT_EQ(boxes.Show({"完成", 0}), Reply::Ok);
  EXPECT_EQ(boxes.Show({"别的", 3 + 256}), Reply::No);
  EXPECT_EQ(boxes.Count("覆盖"), 4);
  EXPECT_EQ(boxes.All().size(), 6u);
  EXPECT_EQ(boxes.All()[0].reply, Reply::Yes);
  boxes.Beep();
  EXPECT_EQ(boxes.Beeps(), 1);
  boxes.Forget();
  EXPECT_TRUE(boxes.All().empty());
  EXPECT_EQ(boxes.Beeps(), 0);
}

TEST(ScriptedBoxes, RefusesAButtonThatIsNotThere) {
  ScriptedBoxes boxes;
  boxes.Answer("完成", Reply::Yes);
  EXPECT_THROW(boxes.Show({"完成", 0}), std::logic_error);
}

TEST(ScriptedDialogs, RemembersQuestionsAboutOneFile) {
  ScriptedDialogs dialogs;
  dialogs.ChooseFiles({"/list.clt"});
  EXPECT_EQ(dialogs.SaveFile({"保存", "列表|*.clt", "/app", "我的"}), "/list.clt");
  EXPECT_EQ(dialogs.OpenFile({"导入", "列表|*.clt", "/app", "我的"}), "");
  ASSERT_EQ(dialogs.Questions().size(), 2U);
  EXPECT_EQ(dialogs.Questions()[0].title, "保存");
  EXPECT_EQ(dialogs.Questions()[1].name, "我的");
}

TEST(ScriptedDialogs, ReturnsThePreparedAnswers) {
  ScriptedDialogs dialogs;
  dialogs.ChooseFiles({"/a", "/b"});
  dialogs.ChooseFiles({"/a", "/b"});
  dialogs.ChooseFolderNext("/out");
  EXPECT_THAT(dialogs.OpenFiles("打开", "图片|*.jpg", Choice::Many), ElementsAre("/a", "/b"));
  EXPECT_THAT(dialogs.OpenFiles("打开", "图片|*.jpg", Choice::One), ElementsAre("/a"));
  EXPECT_THAT(dialogs.OpenFiles("打开", "图片|*.jpg", Choice::One), IsEmpty());
  EXPECT_EQ(dialogs.ChooseFolder("选择", "/in"), "/out");
  EXPECT_EQ(dialogs.ChooseFolder("选择", "/in"), std::nullopt);
  ASSERT_EQ(dialogs.All().size(), 5u);
  EXPECT_EQ(dialogs.All()[3].filterOrInitial, "/in");
}

TEST(CountingPump, RunsActsOnTheirTurns) {
  CountingPump pump;
  std::string done;
  pump.OnTurn(2, [&] { done += "2"; });
  pump.OnTurn(1, [&] {
    done += "1";
    pump.OnTurn(2, [&] { done += "3"; });
  });
  pump.EveryTurn([&] { done += "."; });
  for (int i = 0; i < 4; ++i) pump.Turn();
  EXPECT_EQ(done, ".1.2.3.");
  EXPECT_EQ(pump.Turns(), 4);
}

TEST(FakeClock, PassesMidnight) {
  FakeClock clock;
  clock.SetSecondsOfDay(86399.5);
  clock.Sleep(1);
  EXPECT_DOUBLE_EQ(clock.SecondsOfDay(), 0.5);
  EXPECT_DOUBLE_EQ(clock.Seconds(), 1);
  EXPECT_DOUBLE_EQ(clock.Slept(), 1);
}

TEST(MemorySettings, KeepsValuesAndNotifiesOfThem) {
  MemorySettings settings;
  std::string seen;
  settings.OnSet([&](const std::string& key, const std::string& value) { seen += key + "=" + value + ";"; });
  EXPECT_EQ(settings.Get("Quillon", "Default", "A"), "");
  settings.Set("Quillon", "Default", "A", "1");
  EXPECT_EQ(settings.Get("Quillon", "Default", "A"), "1");
  EXPECT_EQ(settings.Get("PicsCut", "Default", "A"), "");
  EXPECT_EQ(seen, "A=1;");
}

TEST(ScriptedProcesses, LiveAsLongAsScripted) {
  ScriptedProcesses processes;
  processes.Add({.id = 7, .name = "A.exe", .folder = "/app", .own = true}, 2);
  processes.Add({.id = 8, .name = "B.exe", .folder = "/app", .own = true});
  processes.Add({.id = 9, .name = "C.exe", .folder = "/app", .own = false});
  EXPECT_EQ(processes.Running().size(), 3u);
  EXPECT_EQ(processes.Running().size(), 3u);
  EXPECT_EQ(processes.Running().size(), 2u);
  EXPECT_FALSE(processes.End(7));
  EXPECT_TRUE(processes.End(8));
  EXPECT_FALSE(processes.End(8));
  EXPECT_FALSE(processes.End(9));
  EXPECT_THAT(processes.Ended(), ElementsAre(8));
  EXPECT_EQ(processes.Running().size(), 1u);
  EXPECT_EQ(processes.Scans(), 4);
}

TEST(RecordingShell, ReturnsResultsAndActsForPrograms) {
  RecordingShell shell;
  shell.SetResult("Missing", kStartMissing);
  int runs = 0;
  shell.OnStart([&](const RecordingShell::Started& started) { runs += started.arguments.size() == 1; });
  EXPECT_EQ(shell.Start("A.exe", {"x"}, "/app"), kStarted);
  EXPECT_EQ(shell.Start("Missing.exe", {"x"}, "/app"), kStartMissing);
  EXPECT_EQ(runs, 1);
  ASSERT_EQ(shell.Starts().size(), 2u);
  EXPECT_EQ(shell.Starts()[0].folder, "/app");
}

TEST(FaultyDisk, FiresOnceOrForEver) {
  TempFolder folder;
  posix::PosixDisk disk(folder.Path("data"));
  FaultyDisk faults(disk);
  DiskFacts facts;
  faults.Set({.call = DiskCall::Stat, .nth = 2, .error = EIO});
  EXPECT_EQ(faults.Stat(folder.Path(), facts), 0);
  EXPECT_EQ(faults.Stat(folder.Path(), facts), -EIO);
  EXPECT_EQ(faults.Stat(folder.Path(), facts), 0);
  EXPECT_EQ(faults.Fired(), 1);
  EXPECT_EQ(faults.Count(DiskCall::Stat), 3);
  faults.Clear();
  faults.Set({.call = DiskCall::Stat, .nth = 2, .error = EIO, .length = Fault::Length::ForEver, .pathHolds = "here"});
  EXPECT_EQ(faults.Stat(folder.Path("here"), facts), -ENOENT);
  EXPECT_EQ(faults.Stat(folder.Path(), facts), 0);
  EXPECT_EQ(faults.Stat(folder.Path("here"), facts), -EIO);
  EXPECT_EQ(faults.Stat(folder.Path("here"), facts), -EIO);
  EXPECT_EQ(faults.Fired(), 2);
}

TEST(FaultyDisk, FillsUpLikeADisk) {
  TempFolder folder;
  posix::PosixDisk disk(folder.Path("data"));
  FaultyDisk faults(disk);
  faults.Set(
      {.call = DiskCall::Write, .error = ENOSPC, .length = Fault::Length::ForEver, .kind = Fault::Kind::HalfError});
  const int handle = faults.OpenNew(folder.Path("a"), 0600);
  EXPECT_EQ(faults.OpenHandles(), 1);
  EXPECT_EQ(faults.Write(handle, "12345678", 8), 4);
  EXPECT_EQ(faults.Write(handle, "5678", 4), -ENOSPC);
  EXPECT_EQ(faults.Write(handle, "5678", 4), -ENOSPC);
  EXPECT_EQ(faults.Close(handle), 0);
  EXPECT_EQ(faults.OpenHandles(), 0);
  EXPECT_EQ(folder.Read("a"), "1234");
  EXPECT_EQ(faults.Fired(), 3);
}

TEST(TempFolder, IsItsOwnAndGoes) {
  std::string path;
  {
    TempFolder one;
    TempFolder other;
    path = one.Path();
    EXPECT_NE(one.Path(), other.Path());
    one.Write("a/b/c.txt", "x");
    EXPECT_EQ(one.Read("a/b/c.txt"), "x");
    EXPECT_THAT(one.Names(), ElementsAre("a"));
    std::filesystem::permissions(one.Path("a/b"), std::filesystem::perms(0555));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(TestHost, IsAWholeWorld) {
  TestHost world;
  EXPECT_EQ(world.host.programFolder, world.folder.Path("app"));
  EXPECT_TRUE(world.files.IsFolder(world.host.programFolder));
  const double before = world.clock.SecondsOfDay();
  world.host.pump.Turn();
  EXPECT_GT(world.clock.SecondsOfDay(), before);
  EXPECT_TRUE(world.host.instance.Claim());
  EXPECT_EQ(world.host.screen.DesktopSize(), (base::Size{1920, 1080}));
}

}  // namespace
}  // namespace quillon::host::testing
