// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/disk_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quillon::host {
namespace {

using Kind = DiskCalls::Kind;

TEST(DiskCalls, AreSilentWhileNoneBeginsOrEnds) {
  DiskCalls calls;
  EXPECT_EQ(calls.SilentFor(10), std::nullopt) << "none is in flight";
  EXPECT_EQ(calls.SilentFor(20), std::nullopt);
  calls.Begin();
  EXPECT_EQ(calls.SilentFor(30), std::nullopt) << "it has just begun";
  EXPECT_EQ(calls.SilentFor(37), 7);
  EXPECT_EQ(calls.SilentFor(39), 9);
  calls.End();
  calls.Begin();
  EXPECT_EQ(calls.SilentFor(40), std::nullopt) << "another one";
  EXPECT_EQ(calls.SilentFor(41), 1);
}

TEST(DiskCalls, TwoAtOnceThatHangAreSeen) {
  DiskCalls calls;
  calls.Begin();
  calls.Begin();
  EXPECT_EQ(calls.SilentFor(0), std::nullopt);
  EXPECT_EQ(calls.SilentFor(5), 5);
  calls.End();
  EXPECT_EQ(calls.SilentFor(6), std::nullopt) << "one has come back";
  EXPECT_EQ(calls.SilentFor(8), 2);
}

TEST(DiskCalls, KnowTheirSyncs) {
  DiskCalls calls;
  {
    const DiskCalls::Scope write(&calls);
    EXPECT_FALSE(calls.Syncing());
    const DiskCalls::Scope sync(&calls, Kind::Sync);
    EXPECT_TRUE(calls.Syncing());
  }
  EXPECT_FALSE(calls.Syncing());
  EXPECT_FALSE(calls.InFlight());
  EXPECT_EQ(calls.Ended(), 2u);
  const DiskCalls::Scope uncounted(nullptr);
}

// Shared with threads that were abandoned.
struct Gate {
  std::mutex mutex;
  std::condition_variable changed;
  bool open = false;

  void Open() {
    {
      const std::lock_guard lock(mutex);
      open = true;
    }
    changed.notify_all();
  }
  void Pass() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return open; });
  }
};

// Each turn takes a second of the clock of the waits, unless a test says otherwise.
class DiskThreadTest : public ::testing::Test {
 protected:
  void TearDown() override {
    gate->Open();
    while (gate.use_count() > 1) std::this_thread::yield();
  }

  DiskThread::Work Hanging(Kind kind = Kind::Call) {
    return [gate = gate, kind](const DiskThread::Job& job) {
      const DiskCalls::Scope scope(&job.calls, kind);
      gate->Pass();
      return Status::Ok();
    };
  }

  std::shared_ptr<Gate> gate = std::make_shared<Gate>();
  double seconds = 100;
  double secondsOfATurn = 1;
  int turns = 0;
  bool stopped = false;
  std::function<void()> onTurn;
  DiskThread thread{{.idle =
                         [this] {
                           ++turns;
                           seconds += secondsOfATurn;
                           if (onTurn) onTurn();
                         },
                     .stopped = [this] { return stopped; },
                     .seconds = [this] { return seconds; }}};
};

TEST_F(DiskThreadTest, RunsAllWorkOnOneOtherThread) {
  std::vector<std::thread::id> ids;
  for (int i = 0; i < 3; ++i) {
    const Status done = thread.Run([&](const DiskThread::Job&) {
      ids.push_back(std::this_thread::get_id());
      return Status(Problem::Damaged, "why");
    });
    EXPECT_EQ(done.GetProblem(), Problem::Damaged);
    EXPECT_EQ(done.Why(), "why");
  }
  EXPECT_NE(ids[0], std::this_thread::get_id());
  EXPECT_EQ(ids, std::vector(3, ids[0]));
  EXPECT_EQ(turns, 0);
}

TEST_F(DiskThreadTest, ACallThatHangsIsGivenUpAfterHalfAMinute) {
  const Status done = thread.Run(Hanging());
  EXPECT_EQ(done.GetProblem(), Problem::Stopped);
  EXPECT_EQ(done.Why(), kDiskUnresponsive);
  EXPECT_GE(turns, 30);
  EXPECT_LE(turns, 32);
}

TEST_F(DiskThreadTest, ASyncIsGivenUpAfterFiveMinutes) {
  secondsOfATurn = 10;
  EXPECT_EQ(thread.Run(Hanging(Kind::Sync)).Why(), kDiskUnresponsive);
  EXPECT_GE(turns, 30);
  EXPECT_LE(turns, 32);
}

TEST_F(DiskThreadTest, AStopEndsTheWaitAfterASecond) {
  onTurn = [this] { stopped = turns >= 3; };
  EXPECT_EQ(thread.Run(Hanging()).Why(), "已停止");
  EXPECT_LE(turns, 5);
}

TEST_F(DiskThreadTest, AStopEndsTheWaitForASyncAfterHalfAMinute) {
  onTurn = [this] { stopped = true; };
  EXPECT_EQ(thread.Run(Hanging(Kind::Sync)).Why(), "已停止");
  EXPECT_GE(turns, 30);
  EXPECT_LE(turns, 32);
}

TEST_F(DiskThreadTest, AStopOfEarlierWorkDoesNotMatter) {
  stopped = true;
  EXPECT_EQ(thread.Run(Hanging()).Why(), kDiskUnresponsive);
}

TEST_F(DiskThreadTest, ACallThatReturnsLateIsNotAbandoned) {
  onTurn = [this] {
    if (turns == 20) gate->Open();
    if (turns > 20) seconds -= 1;  // no time goes by while the thread wakes up
  };
  EXPECT_TRUE(thread.Run(Hanging()));
}

TEST_F(DiskThreadTest, AnAbandonedWorkIsStoppedAndAnotherThreadServes) {
  const auto late = std::make_shared<std::atomic<bool>>(false);
  const Status given = thread.Run([gate = gate, late](const DiskThread::Job& job) {
    {
      const DiskCalls::Scope scope(&job.calls);
      gate->Pass();
    }
    *late = job.stop.stop_requested();
    return Status::Ok();
  });
  EXPECT_FALSE(given);
  EXPECT_TRUE(thread.Run([](const DiskThread::Job& job) {
    EXPECT_FALSE(job.stop.stop_requested());
    return Status::Ok();
  }));
  gate->Open();
  while (gate.use_count() > 1) std::this_thread::yield();
  EXPECT_TRUE(*late);
}

TEST_F(DiskThreadTest, ATurnOfTheWindowMayRunWorkOfItsOwn) {
  int inner = 0;
  onTurn = [&] {
    if (turns != 2) return;
    EXPECT_TRUE(thread.Run([&](const DiskThread::Job&) {
      ++inner;
      return Status::Ok();
    }));
    gate->Open();
  };
  EXPECT_TRUE(thread.Run(Hanging()));
  EXPECT_EQ(inner, 1);
}

TEST(DiskThread, NeedsNoHooks) {
  DiskThread thread({});
  EXPECT_TRUE(thread.Run([](const DiskThread::Job&) { return Status::Ok(); }));
}

}  // namespace
}  // namespace quillon::host
