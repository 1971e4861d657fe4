// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "host/testing/faulty_disk.h"

namespace quillon::job {

// A disk that never answers background threads. It answers the thread of the test, which could not continue otherwise.
class DeadDisk {
 public:
  DeadDisk() : program_(gettid()) {}
  ~DeadDisk() { Answer(); }
  DeadDisk(const DeadDisk&) = delete;
  DeadDisk& operator=(const DeadDisk&) = delete;

  // Makes calls of a kind hang from the nth on; only those whose path contains the text count.
  void HangAt(host::testing::FaultyDisk& disk, host::testing::DiskCall call, const std::string& pathHolds,
              int nth = 1) {
    constexpr int kMany = 100;
    for (int i = 0; i < kMany; ++i)
      disk.Before(
          call, nth + i, [this] { Hang(); }, pathHolds);
  }
  void Hang() {
    if (gettid() == program_) return;
    std::unique_lock lock(mutex_);
    if (answers_) return;
    thread_local const AtEnd atEnd;
    static_cast<void>(atEnd);
    threads_.insert(gettid());
    changed_.notify_all();
    changed_.wait(lock, [&] { return answers_; });
  }
  // Waits until a thread hangs.
  void AwaitHanging() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return !threads_.empty(); });
  }
  bool Hangs() {
    const std::lock_guard lock(mutex_);
    return !threads_.empty();
  }
  // Answers from now on. Returns the threads that hung, and does not wait for them: they may go on to work.
  std::set<pid_t> LetGo() {
    std::set<pid_t> threads;
    {
      const std::lock_guard lock(mutex_);
      answers_ = true;
      threads.swap(threads_);
    }
    changed_.notify_all();
    return threads;
  }
  // Answers from now on. Returns when the threads that hung have ended, because they still use what the test owns.
  void Answer() { AwaitEnd(LetGo()); }
  static void AwaitEnd(const std::set<pid_t>& threads) {
    for (const pid_t thread : threads) {
      const std::string entry = "/proc/self/task/" + std::to_string(thread);
      while (std::filesystem::exists(entry)) std::this_thread::yield();
    }
    static_cast<void>(Ended().load(std::memory_order_acquire));
  }

 private:
  // The number of threads that have hung and ended. Everything that they did comes before what the test does after it
  // has read the number.
  static std::atomic<int>& Ended() {
    static std::atomic<int> ended = 0;
    return ended;
  }
  struct AtEnd {
    ~AtEnd() { Ended().fetch_add(1, std::memory_order_release); }
  };

  const pid_t program_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool answers_ = false;
  std::set<pid_t> threads_;
};

}  // namespace quillon::job
