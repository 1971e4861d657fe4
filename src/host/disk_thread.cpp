// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/disk_thread.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace quillon::host {
namespace {

using std::chrono::milliseconds;

// Seconds that the work of a BackgroundCall has to return after stop is set. Only a hanging disk call needs longer.
constexpr double kGracePeriod = 1.0;

// Most disks answer at once, and nobody notices a window that stands still for so short a time.
constexpr milliseconds kFirstLook{100};
constexpr milliseconds kPumpInterval{10};
constexpr double kAfterStop = 1;  // seconds

WaitHooks WithClock(WaitHooks hooks) {
  if (!hooks.seconds) hooks.seconds = SystemSeconds;
  return hooks;
}

// How long the calls in flight may be silent, in seconds.
double Patience(const DiskCalls& calls, bool stopped) {
  if (calls.Syncing()) return stopped ? kDiskTimeoutSeconds : kSyncTimeoutSeconds;
  return stopped ? kAfterStop : kDiskTimeoutSeconds;
}

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

double SystemSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// One thread, which owns the lane as well: it may be left alone with it.
class DiskThread::Lane : public std::enable_shared_from_this<Lane> {
 public:
  // Throws std::system_error if no thread can be created.
  void Start() {
    thread_ = std::thread([self = shared_from_this()] { self->Loop(); });
  }

  void Begin(Work work) {
    {
      const std::lock_guard lock(mutex_);
      work_ = std::move(work);
      busy_ = true;
    }
    wake_.notify_one();
  }
  // Waits at most that long for the end of the work.
  bool Done(milliseconds longest) {
    std::unique_lock lock(mutex_);
    return finished_.wait_for(lock, longest, [&] { return !busy_; });
  }
  Status Result() { return std::move(result_); }

  // Called while no work is running.
  void End() {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    wake_.notify_one();
    thread_.join();
  }
  // Returns false if the work has ended meanwhile.
  bool Abandon() {
    {
      const std::lock_guard lock(mutex_);
      if (!busy_) return false;
      ending_ = true;
    }
    stop_.request_stop();
    thread_.detach();
    return true;
  }

  DiskCalls calls;

 private:
  void Loop() {
    std::unique_lock lock(mutex_);
    for (;;) {
      wake_.wait(lock, [&] { return busy_ || ending_; });
      if (!busy_) return;
      lock.unlock();
      result_ = work_({stop_.get_token(), calls});
      work_ = nullptr;
      lock.lock();
      busy_ = false;
      // Outside the lock, so that the waiting thread need not wait once more.
      lock.unlock();
      finished_.notify_one();
      lock.lock();
    }
  }

  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable finished_;
  Work work_;  // used by the lane alone while it is busy, like result_
  Status result_;
  bool busy_ = false;
  bool ending_ = false;
  std::stop_source stop_;
  std::thread thread_;
};

DiskThread::DiskThread(WaitHooks hooks) : hooks_(WithClock(std::move(hooks))) {}

DiskThread::~DiskThread() {
  for (const std::shared_ptr<Lane>& lane : idle_) lane->End();
}

std::shared_ptr<DiskThread::Lane> DiskThread::TakeLane() {
  if (!idle_.empty()) {
    std::shared_ptr<Lane> lane = std::move(idle_.back());
    idle_.pop_back();
    return lane;
  }
  auto lane = std::make_shared<Lane>();
  try {
    lane->Start();
  } catch (const std::system_error&) {
    return nullptr;
  }
  return lane;
}

Status DiskThread::Run(Work work) {
  const std::shared_ptr<Lane> lane = TakeLane();
  if (!lane) {
    DiskCalls calls;
    return work({{}, calls});
  }
  lane->Begin(std::move(work));
  if (Status waited = Await(*lane); !waited) return waited;
  Status result = lane->Result();
  idle_.push_back(lane);
  return result;
}

// Fails if the work was given up and its lane abandoned.
Status DiskThread::Await(Lane& lane) {
  const bool stoppedBefore = hooks_.stopped && hooks_.stopped();
  milliseconds wait = kFirstLook;
  while (!lane.Done(wait)) {
    const std::optional<double> silent = lane.calls.SilentFor(hooks_.seconds());
    wait = silent ? kPumpInterval : kFirstLook;
    if (!silent) continue;
    if (hooks_.idle) hooks_.idle();
    const bool stopped = !stoppedBefore && hooks_.stopped && hooks_.stopped();
    if (*silent < Patience(lane.calls, stopped) || !lane.Abandon()) continue;
    return {Problem::Stopped, stopped ? "已停止" : kDiskUnresponsive};
  }
  return Status::Ok();
}

}  // namespace quillon::host
