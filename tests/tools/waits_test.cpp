// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/tools_fixture.h"

#include <algorithm>

namespace quillon::tools {
namespace {

class WaitsTest : public ToolsFixture {};

TEST_F(WaitsTest, AHelperIsStartedHiddenInTheProgramFolder) {
  EXPECT_EQ(tools.Start("X", "a\tb"), host::kStarted);
  EXPECT_EQ(tools.Start("X", ""), host::kStarted);
  ASSERT_EQ(world.shell.Starts().size(), 2u);
  EXPECT_EQ(world.shell.Starts()[0].program, "X.exe");
  EXPECT_EQ(world.shell.Starts()[0].arguments, std::vector<std::string>{"a\tb"});
  EXPECT_EQ(world.shell.Starts()[0].folder, world.host.programFolder);
  EXPECT_TRUE(world.shell.Starts()[1].arguments.empty());
}

TEST_F(WaitsTest, AMissingCopyIsPutThereBeforeTheStart) {
  WriteApp("X.dll", "twin");
  tools.EnsureAndStart("X", "");
  EXPECT_TRUE(AppHas("X.exe"));
}

TEST_F(WaitsTest, TheWaitEndsWithTheProcess) {
  world.processes.Add({1, "X.exe", world.host.programFolder, true}, 5);
  EXPECT_EQ(tools.Wait("X.exe"), WaitResult::Exited);
  EXPECT_EQ(world.processes.Scans(), 6);
  EXPECT_EQ(world.pump.Turns(), 6);
  EXPECT_TRUE(waiting.empty());
}

TEST_F(WaitsTest, AProcessOfThatNameFromElsewhereCounts) {
  world.processes.Add({1, "cmd.exe", "/elsewhere", false}, 3);
  tools.Wait("CMD.exe");
  EXPECT_EQ(world.processes.Scans(), 4);
}

TEST_F(WaitsTest, AWaitRestsBetweenPolls) {
  world.processes.Add({1, "X.exe", world.host.programFolder, true}, 10);
  tools.Wait("X.exe");
  EXPECT_GE(world.clock.Slept(), 0.045);
  EXPECT_LT(world.clock.Slept(), 0.5);
}

// A search for processes that is slow, as on a machine that runs thousands.
class SlowProcesses final : public host::Processes {
 public:
  static constexpr double kSeconds = 0.02;

  SlowProcesses(host::testing::FakeClock& clock, int scans) : clock_(clock), left_(scans) {}
  std::vector<host::ProcessFacts> Running() override {
    clock_.Advance(kSeconds);
    if (left_-- <= 0) return {};
    return {{1, "X.exe", "/elsewhere", false}};
  }
  bool End(int) override { return false; }

 private:
  host::testing::FakeClock& clock_;
  int left_;
};

host::Host WorldWith(host::testing::TestHost& world, host::Processes& processes) {
  return {world.boxes,
          world.dialogs,
          world.pump,
          world.clock,
          world.files,
          world.settings,
          processes,
          world.shell,
          world.screen,
          world.instance,
          world.host.programFolder};
}

TEST_F(WaitsTest, ALongRestHasTurnsWithinIt) {
  constexpr int kScans = 5;
  SlowProcesses processes(world.clock, kScans);
  host::Host slow = WorldWith(world, processes);
  double last = 0;
  double longest = 0;
  world.pump.EveryTurn([&] {
    longest = std::max(longest, world.clock.Seconds() - last);
    last = world.clock.Seconds();
  });
  EXPECT_EQ(Tools(slow).Wait("X.exe"), WaitResult::Exited);
  EXPECT_LT(longest, 2 * SlowProcesses::kSeconds);
  EXPECT_GT(world.clock.Seconds(), 9 * kScans * SlowProcesses::kSeconds) << "polls need a tenth of the time";
}

TEST_F(WaitsTest, ALongRestEndsWithAStop) {
  SlowProcesses processes(world.clock, 100);
  host::Host slow = WorldWith(world, processes);
  bool ends = false;
  world.pump.OnTurn(3, [&] { ends = true; });
  EXPECT_EQ(Tools(slow, {.stopped = [&] { return ends; }}).Wait("X.exe"), WaitResult::Stopped);
  EXPECT_LT(world.clock.Seconds(), 5 * SlowProcesses::kSeconds);
}

TEST_F(WaitsTest, APollCanEndTheWait) {
  world.processes.Add({1, "X.exe", world.host.programFolder, true});
  int polls = 0;
  EXPECT_EQ(tools.Wait("X.exe", [&] { return ++polls == 4; }), WaitResult::Done);
  EXPECT_EQ(polls, 4);
  EXPECT_TRUE(world.processes.Ended().empty());
}

TEST_F(WaitsTest, APollSeesTheAnswerOfAHelperThatIsGone) {
  EXPECT_EQ(tools.Wait("X.exe", [] { return true; }), WaitResult::Done);
}

// It said so between a poll and the scan that no longer found it.
TEST_F(WaitsTest, APollSeesWhatAHelperSaidLast) {
  int polls = 0;
  EXPECT_EQ(tools.Wait("X.exe", [&] { return ++polls == 2; }), WaitResult::Done);
  EXPECT_EQ(polls, 2);
  EXPECT_EQ(tools.Wait("X.exe", [] { return false; }), WaitResult::Exited);
}

TEST_F(WaitsTest, ALimitEndsTheWaitAndNotTheProcess) {
  world.processes.Add({1, "X.exe", world.host.programFolder, true});
  const double before = world.clock.Seconds();
  EXPECT_EQ(tools.Wait("X.exe", {}, 20), WaitResult::TimedOut);
  EXPECT_NEAR(world.clock.Seconds() - before, 20, 0.5);
  EXPECT_TRUE(world.processes.Ended().empty());
}

TEST_F(WaitsTest, AStopEndsTheProcessAtOnce) {
  world.processes.Add({1, "X.exe", world.host.programFolder, true});
  world.processes.Add({2, "X.exe", "/elsewhere", true});
  world.pump.OnTurn(3, [this] { stop = true; });
  EXPECT_EQ(tools.Wait("X.exe"), WaitResult::Stopped);
  EXPECT_EQ(world.pump.Turns(), 3);
  EXPECT_EQ(world.processes.Ended(), std::vector<int>{1});
}

TEST_F(WaitsTest, AWaitThatLastsIsShown) {
  world.processes.Add({1, "X.exe", world.host.programFolder, true});
  tools.Wait("X.exe", {}, 2.5);
  EXPECT_TRUE(waiting.empty());
  tools.Wait("X.exe", {}, 5);
  EXPECT_EQ(waiting, (std::vector<std::string>{"X.exe", ""}));
}

TEST_F(WaitsTest, ACopyAsksAboutAFullDisk) {
  WriteApp("a", "content");
  world.faults.Set({.call = host::testing::DiskCall::Write, .error = ENOSPC});
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", host::Reply::Retry, 1);
  EXPECT_TRUE(tools.Saver().Copy(App("a"), App("b"), {.title = kTitle}));
  EXPECT_EQ(world.folder.Read("app/b"), "content");
  EXPECT_FALSE(stop);
  ASSERT_EQ(world.boxes.All().size(), 1u);
  EXPECT_EQ(world.boxes.All()[0].box.title, "Quillon");
  EXPECT_EQ(world.boxes.All()[0].box.type, 21);
  world.faults.Set({.call = host::testing::DiskCall::Write, .error = ENOSPC});
  world.boxes.Answer("盘空间不足", host::Reply::Cancel, 1);
  EXPECT_TRUE(tools.Saver().Copy(App("a"), App("c")).DiskFull());
  EXPECT_TRUE(stop);
}

}  // namespace
}  // namespace quillon::tools
