// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/files/files.h"
#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

using testing::DiskCall;
using testing::TestHost;
using ::testing::UnorderedElementsAre;

class SilentSaveTest : public ::testing::Test {
 protected:
  TestHost world;
};

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
