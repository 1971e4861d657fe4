// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/stop_signals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

namespace quillon::cli {
namespace {

// Each test runs in a process of its own, because a thread of the test program that does not block a signal could get
// it.
struct StopSignalsTest : testing::Test {
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

void Send(int signal, const StopSignals& signals) {
  kill(getpid(), signal);
  while (!signals.Stopping()) std::this_thread::yield();
}

// A clock that stands still until the test moves it.
class TestClock {
 public:
  StopSignals::Seconds Seconds() {
    return [this] {
      ++reads_;
      return now_.load();
    };
  }
  void Set(double now) { now_ = now; }
  double Now() const { return now_; }
  // Waits until the signal thread has read the time that often, which it does once for the signals that it finds.
  void AwaitReads(int count) const {
    while (reads_ < count) std::this_thread::yield();
  }

 private:
  std::atomic<double> now_ = 100;
  std::atomic<int> reads_ = 0;
};

// True until the signal thread has read the signal.
bool Pending(int signal) {
  sigset_t signals;
  sigpending(&signals);
  return sigismember(&signals, signal) == 1;
}

TEST_F(StopSignalsTest, AreWishesToStop) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EXIT(
        {
          StopSignals signals;
          const bool before = signals.Stopping();
          Send(signal, signals);
          _exit(before ? 1 : 40);
        },
        testing::ExitedWithCode(40), "");
  }
}

TEST_F(StopSignalsTest, TheSecondIsInsisted) {
  EXPECT_EXIT(
      {
        TestClock clock;
        StopSignals signals(StopSignals::kSameWish, clock.Seconds());
        signals.OnSecondSignal([] { _exit(41); });
        Send(SIGINT, signals);
        clock.Set(100.5);
        kill(getpid(), SIGTERM);
        for (;;) pause();
      },
      testing::ExitedWithCode(41), "");
}

TEST_F(StopSignalsTest, ASecondWithinHalfASecondIsTheSameWish) {
  EXPECT_EXIT(
      {
        TestClock clock;
        StopSignals signals(StopSignals::kSameWish, clock.Seconds());
        signals.OnSecondSignal([&] { _exit(clock.Now() < 101 ? 1 : 44); });
        Send(SIGTERM, signals);
        clock.Set(100.49);
        for (int i = 0; i < 3; ++i) {
          kill(getpid(), i == 1 ? SIGINT : SIGTERM);
          clock.AwaitReads(i + 2);
        }
        clock.Set(101);
        kill(getpid(), SIGTERM);
        for (;;) pause();
      },
      testing::ExitedWithCode(44), "");
}

TEST_F(StopSignalsTest, EachCountsIfNoneIsDoubled) {
  EXPECT_EXIT(
      {
        TestClock clock;
        StopSignals signals(StopSignals::kEachCounts, clock.Seconds());
        signals.OnSecondSignal([] { _exit(45); });
        Send(SIGTERM, signals);
        kill(getpid(), SIGTERM);
        for (;;) pause();
      },
      testing::ExitedWithCode(45), "");
}

TEST_F(StopSignalsTest, HangUpsDoNotInsist) {
  EXPECT_EXIT(
      {
        StopSignals signals;
        signals.OnSecondSignal([] { _exit(41); });
        Send(SIGHUP, signals);
        for (int i = 0; i < 3; ++i) {
          kill(getpid(), SIGHUP);
          while (Pending(SIGHUP)) std::this_thread::yield();
        }
        _exit(43);
      },
      testing::ExitedWithCode(43), "");
}

// As nohup asks for.
TEST_F(StopSignalsTest, AHangUpThatIsIgnoredStaysIgnored) {
  EXPECT_EXIT(
      {
        std::signal(SIGHUP, SIG_IGN);
        StopSignals signals;
        kill(getpid(), SIGHUP);
        const bool hung = signals.Stopping();
        Send(SIGTERM, signals);
        _exit(hung ? 1 : 42);
      },
      testing::ExitedWithCode(42), "");
}

TEST_F(StopSignalsTest, LeaveTheSignalsAsTheyWere) {
  EXPECT_EXIT(
      {
        { StopSignals signals; }
        kill(getpid(), SIGTERM);
        for (;;) pause();
      },
      testing::KilledBySignal(SIGTERM), "");
}

}  // namespace
}  // namespace quillon::cli
