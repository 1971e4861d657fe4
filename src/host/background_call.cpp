// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/background_call.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace quillon::host {
namespace {

// Seconds that work has to return after stop is set. Only a hanging disk call needs longer.
constexpr double kGracePeriod = 1.0;

}  // namespace

// Shared with the thread, which may outlive the BackgroundCall.
struct BackgroundCall::State {
  explicit State(Work given) : work(std::move(given)) {}

  void Run() {
    work(stop);
    const std::lock_guard lock(mutex);
    done = true;
    ended.notify_all();
  }

  Work work;
  std::atomic<bool> stop = false;
  std::mutex mutex;
  std::condition_variable ended;
  bool done = false;
};

BackgroundCall::BackgroundCall(Work work) : state_(std::make_shared<State>(std::move(work))) {
  try {
    std::thread([state = state_] { state->Run(); }).detach();
  } catch (const std::system_error&) {
    state_->Run();
  }
}

BackgroundCall::~BackgroundCall() {
  state_->stop = true;
  Done(kGracePeriod);
}

bool BackgroundCall::Done(double seconds) const {
  std::unique_lock lock(state_->mutex);
  return state_->ended.wait_for(lock, std::chrono::duration<double>(seconds), [&] { return state_->done; });
}

}  // namespace quillon::host
