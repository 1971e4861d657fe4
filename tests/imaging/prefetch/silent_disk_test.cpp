// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <atomic>
#include <thread>

#include "host/disk_thread.h"
#include "host/testing/fakes.h"
#include "imaging/prefetch/prefetcher_fixture.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using testing::Gate;
using testing::Log;
using testing::PrefetcherTest;

// Waits for reads that do not return. Each turn of the pump advances a clock by ten seconds.
class SilentDiskTest : public PrefetcherTest {
 protected:
  // Work that reads until the gate opens, on the sources of that name, and is done at once on others.
  Prefetcher::Worker Hanging(const std::string& name) {
    return [gate = gate_, name](const Prefetcher::Job& job) -> Status {
      if (job.work.Source().ends_with(name)) {
        const host::DiskCalls::Scope reading(&job.calls);
        gate->Pass();
      }
      return job.output().Write("x", 1);
    };
  }
  PrefetchLimits Clocked(int threads) {
    PrefetchLimits limits;
    limits.threads = threads;
    limits.seconds = [this] { return seconds_; };
    limits.stopped = [this] { return stopped_; };
    return limits;
  }
  Status TakeSilent(const CropRequest& request) {
    std::optional<std::string> bytes;
    Status popped = Pop(request, pump_, bytes);
    EXPECT_EQ(bytes, std::nullopt);
    return popped;
  }
  // Returns whether no thread uses the gate any more, also no abandoned one.
  bool AllThreadsEnded() const { return gate_.use_count() == 1; }

  void TearDown() override {
    gate_->Open();
    prefetcher_.reset();
    while (!AllThreadsEnded()) std::this_thread::yield();
  }

  double seconds_ = 1000;
  bool stopped_ = false;
  std::function<void()> pump_ = [this] {
    if (host::testing::OtherThreadsWait()) seconds_ += 10;
  };
  std::shared_ptr<Gate> gate_ = std::make_shared<Gate>();
};

TEST_F(SilentDiskTest, AReadThatDoesNotComeBackIsGivenUp) {
  const CropRequest a = Made("a");
  Start(Hanging("a"), Clocked(1));
  Plan({a});
  gate_->AwaitWaiting(1);
  const Status popped = TakeSilent(a);
  EXPECT_EQ(popped.GetProblem(), Problem::Stopped);
  EXPECT_EQ(popped.Why(), "磁盘没有响应，已跳过；请检查磁盘或网络连接后重新处理");
  EXPECT_GE(seconds_, 1030);
  EXPECT_LE(seconds_, 1050);
}

TEST_F(SilentDiskTest, AnotherThreadReplacesIt) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  Start(Hanging("a"), Clocked(1));
  Plan({a, b});
  gate_->AwaitWaiting(1);
  EXPECT_EQ(PopBytes(b, pump_), "x");
  const double then = seconds_;
  EXPECT_EQ(TakeSilent(a).Why(), host::kDiskUnresponsive);
  EXPECT_EQ(seconds_, then) << "it is known by now";
  Plan({a});
  EXPECT_EQ(TakeSilent(a).Why(), host::kDiskUnresponsive) << "it is not tried again";
  EXPECT_EQ(prefetcher_->AwaitMeasure(a.source, pump_).Why(), host::kDiskUnresponsive);
  // Until it answers.
  gate_->Open();
  std::optional<std::string> bytes;
  do {
    Plan({a});
    static_cast<void>(Pop(a, pump_, bytes));
  } while (!bytes);
}

TEST_F(SilentDiskTest, AComputationIsWaitedForHoweverLongItLasts) {
  const CropRequest a = Made("a");
  Start(
      [gate = gate_](const Prefetcher::Job& job) {
        gate->Pass();
        return job.output().Write("x", 1);
      },
      Clocked(1));
  stopped_ = true;
  Plan({a});
  gate_->AwaitWaiting(1);
  int turns = 0;
  EXPECT_EQ(PopBytes(a,
                     [&] {
                       pump_();
                       if (++turns == 50) gate_->Open();
                     }),
            "x");
}

TEST_F(SilentDiskTest, ReadsThatComeBackAreNoSilence) {
  constexpr int kReads = 20;
  const CropRequest a = Made("a");
  auto wanted = std::make_shared<std::atomic<int>>(0);
  auto read = std::make_shared<std::atomic<int>>(0);
  Start(
      [=](const Prefetcher::Job& job) {
        while (*read < kReads) {
          job.calls.Begin();
          wanted->wait(*read);
          job.calls.End();
          ++*read;
          read->notify_one();
        }
        return job.output().Write("x", 1);
      },
      Clocked(1));
  Plan({a});
  EXPECT_EQ(PopBytes(a,
                     [&] {
                       if (*wanted == kReads) return;
                       seconds_ += 20;
                       ++*wanted;
                       wanted->notify_one();
                       read->wait(*wanted - 1);
                     }),
            "x");
}

TEST_F(SilentDiskTest, AStopEndsTheWaitForARead) {
  const CropRequest a = Made("a");
  Start(Hanging("a"), Clocked(1));
  Plan({a});
  gate_->AwaitWaiting(1);
  pump_ = [this] {
    seconds_ += 0.5;
    stopped_ = true;
  };
  EXPECT_EQ(TakeSilent(a).Why(), "已停止");
  EXPECT_LE(seconds_, 1002);
}

TEST_F(SilentDiskTest, AStopEndsTheWaitForWhatIsNotBegun) {
  const CropRequest a = Made("a");
  const CropRequest b = Made("b");
  Start(Hanging("a"), Clocked(1));
  Plan({a, b});
  gate_->AwaitWaiting(1);
  pump_ = [this] {
    seconds_ += 0.5;
    stopped_ = true;
  };
  EXPECT_EQ(TakeSilent(b).Why(), "已停止");
}

TEST_F(SilentDiskTest, TheEndDoesNotWaitForADeadRead) {
  const CropRequest a = Made("a");
  Start(Hanging("a"), Clocked(2));
  Plan({a, Made("b")});
  gate_->AwaitWaiting(1);
  prefetcher_.reset();
  EXPECT_FALSE(AllThreadsEnded());
}

TEST_F(SilentDiskTest, AMeasurementThatDoesNotComeBackIsGivenUp) {
  auto measured = std::make_shared<Log>();
  Start(Naming(), Clocked(1), [gate = gate_, measured](const std::string& path) {
    if (path == "1") gate->Pass();
    measured->Add(path);
  });
  prefetcher_->PlanMeasures({"1", "2"});
  gate_->AwaitWaiting(1);
  EXPECT_EQ(prefetcher_->AwaitMeasure("1", pump_).Why(), host::kDiskUnresponsive);
  EXPECT_GE(seconds_, 1030);
  const double then = seconds_;
  EXPECT_EQ(prefetcher_->AwaitMeasure("1", pump_).Why(), host::kDiskUnresponsive);
  EXPECT_EQ(seconds_, then);
  while (measured->Lines().empty()) std::this_thread::yield();
  EXPECT_EQ(measured->Lines(), std::vector<std::string>{"2"});
}

TEST_F(SilentDiskTest, AStopEndsTheWaitForAMeasurement) {
  Start(Naming(), Clocked(1), [gate = gate_](const std::string&) { gate->Pass(); });
  prefetcher_->PlanMeasures({"1"});
  gate_->AwaitWaiting(1);
  pump_ = [this] {
    seconds_ += 0.5;
    stopped_ = true;
  };
  EXPECT_EQ(prefetcher_->AwaitMeasure("1", pump_).Why(), "已停止");
}

}  // namespace
}  // namespace quillon::imaging
