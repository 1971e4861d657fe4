// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <csignal>
#include <functional>
#include <mutex>
#include <thread>

namespace quillon::cli {

// Catches the wishes to stop: SIGINT, SIGTERM and SIGHUP (unless the caller had that one ignored). They are taken by a
// thread of their own, so that nothing else is interrupted by them. To be made before any other thread, which then
// leaves the signals alone too.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals&) = delete;
  StopSignals& operator=(const StopSignals&) = delete;

  bool Stopping() const { return stopping_; }
  // Called at a second SIGINT or SIGTERM, on the thread that takes it: the first one was not obeyed.
  void OnInsist(std::function<void()> act);

 private:
  void Listen();

  sigset_t signals_;
  sigset_t before_;
  int taken_ = -1;  // tells of signals
  int end_ = -1;    // tells the thread to end
  std::atomic<bool> stopping_ = false;
  std::mutex mutex_;
  std::function<void()> insist_;
  std::thread thread_;
};

}  // namespace quillon::cli
