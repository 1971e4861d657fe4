// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <memory>

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

}  // namespace quillon::host
