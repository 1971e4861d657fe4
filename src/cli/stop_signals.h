// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <csignal>
#include <functional>
#include <mutex>
#include <thread>

namespace quillon::cli {

// Turns SIGINT, SIGTERM and SIGHUP into a flag. SIGHUP is left alone if it is ignored, as nohup does.
//
// The signals are blocked and a thread of their own reads them from a signalfd, so that they interrupt no system call
// of the run. Must be constructed before any other thread is started: threads inherit the blocked signals. The
// destructor restores the signal mask.
class StopSignals {
 public:
  // When a further signal is the same wish as the first, in seconds after it. `timeout` signals the process and then
  // its whole group, so that the process gets two.
  static constexpr double kSameWish = 0.5;
  // For a process that gets each wish once.
  static constexpr double kEachCounts = 0;
  // Returns a time in seconds that never goes back. Called on the signal thread.
  using Seconds = std::function<double()>;

  explicit StopSignals(double sameWish = kSameWish, Seconds seconds = SteadySeconds);
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  // Returns true after the first signal; never false again.
  bool Stopping() const { return stopping_; }
  // Sets the function that is called at every SIGINT or SIGTERM that is another wish than the first signal, on the
  // signal thread. A second SIGHUP does not count, because the system may send it more than once.
  void OnSecondSignal(std::function<void()> act);

 private:
  static double SteadySeconds();
  void Listen();
  void Handle(bool counts, double now);

  const double sameWish_;
  const Seconds seconds_;
  double firstAt_ = 0;  // of the first signal; used by the signal thread alone
  sigset_t signals_;
  sigset_t oldMask_;
  int signalFd_ = -1;  // delivers the signals
  int endFd_ = -1;     // readable when the thread must end
  std::atomic<bool> stopping_ = false;
  std::mutex mutex_;
  std::function<void()> onSecondSignal_;  // guarded by mutex_
  std::thread thread_;
};

}  // namespace quillon::cli
