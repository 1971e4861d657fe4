// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

#include "host/files/disk_calls.h"
#include "host/status.h"

namespace quillon::host {

// Timeout in seconds: a disk that does not answer any call for this long is treated as unresponsive.
inline constexpr double kDiskTimeoutSeconds = 30;
// The same for a disk that writes out what the system holds in memory: a slow one needs minutes.
inline constexpr double kSyncTimeoutSeconds = 300;
// The message for a file on an unresponsive disk.
inline constexpr const char* kDiskUnresponsive = "磁盘没有响应，已跳过；请检查磁盘或网络连接后重新处理";

// Runs one function on a background thread of its own, so that a call that never returns (a read from an unresponsive
// disk) cannot block the caller. The caller waits for a limited time and may abandon the call.
//
// The thread is detached: a system call that hangs cannot be interrupted, so its thread stays until the call returns.
class BackgroundCall {
 public:
  // The function to run. It must check stop now and then and return once it is set.
  // It must own or share everything it touches after stop is set, because the caller may be gone by then.
  using Work = std::function<void(const std::atomic<bool>& stop)>;

  // Starts work immediately. If no thread can be created, work runs to its end inside the constructor.
  explicit BackgroundCall(Work work);
  // Sets stop and waits up to one second for work to return. A call that takes longer is abandoned.
  ~BackgroundCall();
  BackgroundCall(const BackgroundCall&) = delete;
  BackgroundCall& operator=(const BackgroundCall&) = delete;

  // Returns true if work has returned. Waits at most that many seconds for it.
  bool Done(double seconds = 0) const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

// What a wait for a disk asks of the program. Each of them may be empty.
struct WaitHooks {
  std::function<void()> idle;       // called every few milliseconds, so that the window keeps its turns
  std::function<bool()> stopped;    // returns whether a stop is requested
  std::function<double()> seconds;  // the clock that measures how long a disk is silent; the system's if empty
};

// Seconds of a monotonic clock of the system.
double SystemSeconds();

// Runs work that reads or writes files on a lasting thread, one work after the other, while the caller waits. A system
// call on an unresponsive disk may never return and cannot be interrupted. So the work counts its disk calls, and the
// waiting caller is the watchdog: if a call stays in flight, the caller calls WaitHooks::idle, and gives the work up
// once the call has been silent for too long. The thread is then abandoned and another one replaces it; it ends by
// itself if its call returns.
//
// Time in which the work computes does not count, and the window gets no turns then.
class DiskThread {
 public:
  struct Job {
    std::stop_token stop;  // set when the work is abandoned
    DiskCalls& calls;
    SaveControl Saving() const { return {stop, &calls}; }
  };
  // The work must own or share everything it touches, because the caller may be gone when its call returns.
  using Work = std::function<Status(const Job& job)>;

  explicit DiskThread(WaitHooks hooks);
  ~DiskThread();
  DiskThread(const DiskThread&) = delete;
  DiskThread& operator=(const DiskThread&) = delete;

  // Runs work and returns its result. Not thread-safe, but WaitHooks::idle may call it again: the inner work then gets
  // a thread of its own. If no thread can be created, work runs on the calling thread.
  // Error: Stopped if the work was given up, with kDiskUnresponsive if a call was silent for kDiskTimeoutSeconds, or
  // for kSyncTimeoutSeconds while the disk syncs; with "已停止" if a stop was requested during the wait and a call was
  // silent for one second, or for kDiskTimeoutSeconds while the disk syncs.
  Status Run(Work work);

  const WaitHooks& Hooks() const { return hooks_; }

 private:
  class Lane;
  std::shared_ptr<Lane> TakeLane();
  Status Await(Lane& lane);

  const WaitHooks hooks_;
  std::vector<std::shared_ptr<Lane>> idle_;
};

}  // namespace quillon::host
