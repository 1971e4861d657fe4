// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/disk_thread.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

namespace quillon::host {
namespace {

TEST(BackgroundCall, IsDoneOnceItsWorkIs) {
  auto value = std::make_shared<int>(0);
  const BackgroundCall errand([value](const std::atomic<bool>&) { *value = 7; });
  while (!errand.Done(0.01)) {
  }
  EXPECT_EQ(*value, 7);
}

TEST(BackgroundCall, IsAskedToStop) {
  auto stopped = std::make_shared<std::atomic<bool>>(false);
  {
    const BackgroundCall errand([stopped](const std::atomic<bool>& stop) {
      while (!stop) {
      }
      *stopped = true;
    });
    EXPECT_FALSE(errand.Done());
  }
  EXPECT_TRUE(*stopped);
}

// A call that hangs is abandoned, and may return when nobody waits for it any more.
TEST(BackgroundCall, IsAbandonedIfItNeverReturns) {
  struct Gate {
    std::mutex mutex;
    std::condition_variable opened;
    bool open = false;
    bool passed = false;
  };
  const auto gate = std::make_shared<Gate>();
  {
    const BackgroundCall errand([gate](const std::atomic<bool>&) {
      std::unique_lock lock(gate->mutex);
      gate->opened.wait(lock, [&] { return gate->open; });
      gate->passed = true;
      gate->opened.notify_all();
    });
    EXPECT_FALSE(errand.Done());
  }
  std::unique_lock lock(gate->mutex);
  gate->open = true;
  gate->opened.notify_all();
  gate->opened.wait(lock, [&] { return gate->passed; });
}

}  // namespace
}  // namespace quillon::host
