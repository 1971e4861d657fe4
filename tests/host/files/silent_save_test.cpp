// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "host/files/files.h"
#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

using testing::DiskCall;
using testing::NameOf;
using testing::TestHost;
using ::testing::UnorderedElementsAre;

class SilentSaveTest : public ::testing::Test {
 protected:
  // The system calls of a save that were made while none was counted.
  std::vector<std::string> Uncounted(const std::string& path, const std::vector<DiskCall>& kinds) {
    DiskCalls calls;
    std::vector<std::string> uncounted;
    for (const DiskCall kind : kinds) {
      world.faults.Before(kind, 1, [&calls, &uncounted, kind] {
        if (!calls.InFlight()) uncounted.emplace_back(NameOf(kind));
      });
    }
    const auto fill = [](Draft& draft) { return draft.Write("new", 3); };
    EXPECT_TRUE(world.files.Save(path, fill, {.calls = &calls}));
    EXPECT_FALSE(calls.InFlight());
    for (const DiskCall kind : kinds) EXPECT_GT(world.faults.Count(kind), 0) << NameOf(kind);
    return uncounted;
  }
  Status SaveStopped(const std::string& path) {
    std::stop_source stop;
    const auto fill = [&](Draft& draft) {
      stop.request_stop();
      return draft.Write("new", 3);
    };
    return world.files.Save(path, fill, {.stop = stop.get_token()});
  }

  TestHost world;
};

TEST_F(SilentSaveTest, EveryCallThatASaveWaitsForIsCounted) {
  EXPECT_EQ(Uncounted(world.folder.Path("fresh"), {DiskCall::StatLink, DiskCall::OpenNew, DiskCall::Lock,
                                                   DiskCall::Write, DiskCall::StatOpen, DiskCall::RenameNew}),
            std::vector<std::string>());
  ASSERT_TRUE(world.files.Flush().empty());
  world.faults.Clear();
  EXPECT_EQ(Uncounted(world.folder.Write("standing", "old"),
                      {DiskCall::StatLink, DiskCall::MayWrite, DiskCall::CopyLabels, DiskCall::SetMode,
                       DiskCall::SetTimes, DiskCall::Sync, DiskCall::Rename}),
            std::vector<std::string>());
}

TEST_F(SilentSaveTest, TheSyncOfAReplacedFileIsCountedAsOne) {
  DiskCalls calls;
  bool syncing = false;
  world.faults.Before(DiskCall::Write, 1, [&] { EXPECT_FALSE(calls.Syncing()); });
  world.faults.Before(DiskCall::Sync, 1, [&] { syncing = calls.Syncing(); });
  world.faults.Before(DiskCall::Rename, 1, [&] { EXPECT_FALSE(calls.Syncing()); });
  const auto fill = [](Draft& draft) { return draft.Write("new", 3); };
  EXPECT_TRUE(world.files.Save(world.folder.Write("standing", "old"), fill, {.calls = &calls}));
  EXPECT_TRUE(syncing);
}

TEST_F(SilentSaveTest, CopiesAreCountedWhileTheyReadAndWrite) {
  DiskCalls calls;
  int counted = 0;
  for (const DiskCall kind : {DiskCall::OpenRead, DiskCall::Read, DiskCall::Write, DiskCall::RenameNew}) {
    world.faults.Before(kind, 1, [&] { counted += calls.InFlight() ? 1 : 0; });
  }
  EXPECT_TRUE(world.files.Copy(world.folder.Write("a", "x"), world.folder.Path("b"), {.calls = &calls}));
  EXPECT_EQ(counted, 4);
}

TEST_F(SilentSaveTest, WhatWasStoppedGetsNoName) {
  EXPECT_EQ(SaveStopped(world.folder.Path("app/fresh")).GetProblem(), Problem::Stopped);
  EXPECT_TRUE(world.folder.Names("app").empty());
  const std::string standing = world.folder.Write("app/standing", "old");
  EXPECT_EQ(SaveStopped(standing).GetProblem(), Problem::Stopped);
  EXPECT_EQ(world.folder.Read("app/standing"), "old");
  EXPECT_EQ(world.folder.Names("app").size(), 1u);
}

// Holds syncs up until it is opened.
class Barrier {
 public:
  void Open() {
    {
      const std::lock_guard lock(mutex_);
      open_ = true;
    }
    changed_.notify_all();
  }
  void Pass() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return open_; });
    passed_ = true;
    changed_.notify_all();
  }
  void AwaitPassed() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return passed_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool open_ = false;
  bool passed_ = false;
};

std::vector<std::string> PathsOf(const std::vector<LateFailure>& failures) {
  std::vector<std::string> paths;
  paths.reserve(failures.size());
  for (const LateFailure& failure : failures) paths.push_back(failure.path);
  return paths;
}

TEST_F(SilentSaveTest, AFlushThatIsGivenUpReportsAllThatIsPending) {
  Barrier barrier;
  world.faults.Before(DiskCall::Sync, 1, [&] { barrier.Pass(); });
  const std::string a = world.folder.Path("a");
  const std::string b = world.folder.Path("b");
  ASSERT_TRUE(world.files.Save(a, "x"));
  int asked = 0;
  std::vector<std::string> pending;
  const auto giveUp = [&](const std::vector<std::string>& paths) {
    pending = paths;
    if (++asked == 1) {
      EXPECT_TRUE(world.files.Save(b, "x"));  // waits for the next batch
    }
    return asked < 3;
  };
  const std::vector<LateFailure> failures = world.files.Flush(giveUp);
  EXPECT_THAT(pending, UnorderedElementsAre(a, b));
  EXPECT_EQ(asked, 3);
  EXPECT_THAT(PathsOf(failures), UnorderedElementsAre(a, b));
  for (const LateFailure& failure : failures) EXPECT_EQ(failure.status.Why(), "磁盘没有响应");

  // What is saved afterwards is synced by another thread.
  ASSERT_TRUE(world.files.Save(world.folder.Path("c"), "x"));
  EXPECT_TRUE(world.files.Flush([](const std::vector<std::string>&) { return true; }).empty());

  // Once the disk answers, the abandoned thread syncs and closes its files.
  barrier.Open();
  barrier.AwaitPassed();
  while (world.faults.OpenHandles() > 0) std::this_thread::yield();
  EXPECT_EQ(world.folder.Read("a"), "x");
  EXPECT_EQ(world.folder.Read("b"), "x");
}

TEST_F(SilentSaveTest, AFlushThatGoesOnWaitsForASlowDisk) {
  Barrier barrier;
  world.faults.Before(DiskCall::Sync, 1, [&] { barrier.Pass(); });
  ASSERT_TRUE(world.files.Save(world.folder.Path("a"), "x"));
  int asked = 0;
  EXPECT_TRUE(world.files
                  .Flush([&](const std::vector<std::string>&) {
                    if (++asked == 5) barrier.Open();
                    return true;
                  })
                  .empty());
  EXPECT_GE(asked, 5);
}

}  // namespace
}  // namespace quillon::host
