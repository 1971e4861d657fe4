// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetch_threads.h"

#include <algorithm>
#include <system_error>

namespace quillon::imaging {

PrefetchThreads::PrefetchThreads(int count)
    : count_(count > 0 ? count : std::max(1U, std::thread::hardware_concurrency())) {}

bool PrefetchThreads::Start(const std::function<void()>& work) {
  try {
    while (threads_.size() < count_) threads_.emplace_back(work);
  } catch (const std::system_error&) {
    return !threads_.empty();
  }
  return true;
}

void PrefetchThreads::Abandon(PrefetchTask& task) {
  const auto thread = std::find_if(threads_.begin(), threads_.end(),
                                   [&](const std::thread& each) { return each.get_id() == task.thread; });
  thread->detach();
  threads_.erase(thread);
  task.abandoned = true;
}

void PrefetchThreads::Join() {
  for (std::thread& thread : threads_) thread.join();
}

}  // namespace quillon::imaging
