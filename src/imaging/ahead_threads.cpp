// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/ahead_threads.h"

#include <algorithm>
#include <system_error>

namespace quillon::imaging {

AheadThreads::AheadThreads(int count) : count_(count > 0 ? count : std::max(1U, std::thread::hardware_concurrency())) {}

bool AheadThreads::Start(const std::function<void()>& work) {
  try {
    while (threads_.size() < count_) threads_.emplace_back(work);
  } catch (const std::system_error&) {
    return !threads_.empty();
  }
  return true;
}

void AheadThreads::LeaveBehind(AheadTask& task) {
  const auto thread = std::find_if(threads_.begin(), threads_.end(),
                                   [&](const std::thread& each) { return each.get_id() == task.thread; });
  thread->detach();
  threads_.erase(thread);
  task.leftBehind = true;
}

void AheadThreads::Join() {
  for (std::thread& thread : threads_) thread.join();
}

}  // namespace quillon::imaging
