// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <thread>
#include <vector>

#include "imaging/prefetch/prefetch_tasks.h"

namespace quillon::imaging {

// The threads that work ahead. Guarded by the engine's mutex, but for Join.
class PrefetchThreads {
 public:
  // 0: as many as there are cores.
  explicit PrefetchThreads(int count);

  // Starts those that are missing, each with work. False where there is not even one.
  bool Start(const std::function<void()>& work);
  // The thread of task hangs: it belongs here no longer, and ends by itself when it comes back.
  void Abandon(PrefetchTask& task);

  // Told by each thread that has left its work.
  void CountEnded() { ++ended_; }
  bool AllEnded() const { return ended_ == threads_.size(); }
  // After all have ended.
  void Join();

 private:
  const std::size_t count_;
  std::vector<std::thread> threads_;  // without those that were left behind
  std::size_t ended_ = 0;             // of them
};

}  // namespace quillon::imaging
