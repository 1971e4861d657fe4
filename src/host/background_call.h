// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace quillon::host {

// After so many seconds without any answer a disk is given up.
inline constexpr double kLongestSilence = 30;
// What is told of a file on it.
inline constexpr const char* kDiskSilent = "磁盘没有响应，已跳过；请检查磁盘或网络连接后重新处理";

// Work on a thread of its own that may never come back: a call to a disk that no longer answers. It can be waited for
// a moment at a time, and be left behind.
class BackgroundCall {
 public:
  // work has to look at stop now and then, and to own or share whatever it touches once stop is set.
  using Work = std::function<void(const std::atomic<bool>& stop)>;

  // Where no thread can be had, the work is done at once.
  explicit BackgroundCall(Work work);
  // Stops the work and gives it a second to end; what does not is left behind.
  ~BackgroundCall();
  BackgroundCall(const BackgroundCall&) = delete;
  BackgroundCall& operator=(const BackgroundCall&) = delete;

  // True once the work is done; waits at most so long for it.
  bool Done(double seconds = 0) const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace quillon::host
