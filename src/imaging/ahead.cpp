// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/ahead.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

#include "host/errand.h"
#include "imaging/unchanged.h"

namespace quillon::imaging {
namespace {

using host::FileFacts;
using host::Problem;

constexpr auto kPumpInterval = std::chrono::milliseconds(4);
constexpr std::size_t kSearchedMeasures = 64;  // at the front of the plan, where the caller is
// How long a read is waited for that stands in the way of an end, in seconds.
constexpr double kLastSecond = 1;

enum class State { Waiting, Busy, Done, Failed };

Status DiskSilent() { return {Problem::Stopped, host::kDiskSilent}; }

double SystemSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// What a thread is doing. All but reads is guarded by the engine's mutex.
struct Task {
  std::atomic<unsigned> reads = 0;  // counted up at the begin and at the end of each: odd during one
  std::thread::id thread;
  bool busy = false;
  bool leftBehind = false;  // its thread hangs and counts no more

  // Seconds since it was first asked during the read under way; 0 where none is.
  double SilentFor(double now) {
    if (const unsigned newest = reads; newest != seen || newest % 2 == 0) {
      seen = newest;
      since = now;
    }
    return now - since;
  }

  unsigned seen = 0;
  double since = 0;
};

// All but request and stop is guarded by the engine's mutex, result while the job is not running.
struct PlannedCrop : Task {
  CropRequest request;
  std::optional<std::uint64_t> sourceSize;
  std::stop_source stop;
  State state = State::Waiting;
  bool running = false;       // more than the size of its source is looked at
  bool dropped = false;       // no longer planned
  bool awaited = false;       // the caller is waiting for it
  std::int64_t needs = 0;     // working memory it was refused
  std::int64_t admitted = 0;  // working memory it has
  std::int64_t held = 0;      // bytes of its result that are counted
  std::optional<FileFacts> before;
  std::string result;
};

struct Measuring : Task {
  std::string path;
};

using PlannedCropPtr = std::shared_ptr<PlannedCrop>;
using MeasuringPtr = std::shared_ptr<Measuring>;

}  // namespace

// Its threads own it too: one that hung may come back when nobody else is left.
class Ahead::Engine : public std::enable_shared_from_this<Engine> {
 public:
  Engine(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds)
      : files_(files), crop_(std::move(crop)), measure_(std::move(measure)), bounds_(std::move(bounds)) {
    if (bounds_.threads <= 0) bounds_.threads = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    if (!bounds_.seconds) bounds_.seconds = SystemSeconds;
  }

  void End() {
    {
      std::unique_lock lock(mutex_);
      ending_ = true;
      measures_.clear();
      for (const PlannedCropPtr& crop : crops_) Drop(*crop);
      crops_.clear();
      wake_.notify_all();
      // The clock of the waits may be another one.
      ForEachTask([](Task& task) { task.seen = 0; });
      while (!finished_.wait_for(lock, kPumpInterval, [&] { return ended_ == threads_.size(); })) {
        LeaveBehind(SystemSeconds(), kLastSecond);
      }
    }
    for (std::thread& thread : threads_) thread.join();
  }

  void PlanCrops(const std::vector<CropRequest>& upcoming) {
    {
      const std::lock_guard lock(mutex_);
      crops_ = KeepFromPlan(upcoming);
      if (!crops_.empty()) StartThreads();
    }
    wake_.notify_all();
    finished_.notify_all();
  }

  void PlanMeasures(std::vector<std::string> upcoming) {
    {
      const std::lock_guard lock(mutex_);
      measures_.assign(std::make_move_iterator(upcoming.begin()), std::make_move_iterator(upcoming.end()));
      std::erase_if(measures_, [this](const std::string& path) { return silent_.contains(path); });
      if (!measures_.empty()) StartThreads();
    }
    wake_.notify_all();
  }

  Status TakeCrop(const CropRequest& request, const std::function<void()>& pump, std::optional<std::string>& bytes) {
    bytes.reset();
    std::unique_lock lock(mutex_);
    if (silent_.contains(request.source)) return DiskSilent();
    const PlannedCropPtr crop = FindInPlan(request);
    if (!crop) return Status::Ok();
    crop->awaited = true;
    wake_.notify_all();
    const Status waited = WaitUntil(
        lock, pump, *crop, [&] { return crop->dropped || crop->state == State::Done || crop->state == State::Failed; });
    if (!waited) Drop(*crop);
    std::erase(crops_, crop);
    if (crop->dropped || crop->state == State::Failed) return waited;
    resultBytes_ -= crop->held;
    lock.unlock();
    wake_.notify_all();
    const std::optional<FileFacts> now = files_.Look(request.source);
    if (now && crop->before && Unchanged(*now, *crop->before)) bytes = std::move(crop->result);
    return Status::Ok();
  }

  Status AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
    std::unique_lock lock(mutex_);
    if (silent_.contains(path)) return DiskSilent();
    const auto end = measures_.begin() + static_cast<std::ptrdiff_t>(std::min(measures_.size(), kSearchedMeasures));
    const auto found = std::find(measures_.begin(), end, path);
    if (found != end) measures_.erase(found);
    const MeasuringPtr measuring = measuring_;
    if (!measuring || measuring->path != path) return Status::Ok();
    return WaitUntil(lock, pump, *measuring, [&] { return !measuring->busy; });
  }

 private:
  // Threads are started with the first plan, so that a program that never plans has none.
  // Where not even one can be started, nothing is planned.
  void StartThreads() {
    try {
      while (threads_.size() < static_cast<std::size_t>(bounds_.threads)) {
        threads_.emplace_back([self = shared_from_this()] { self->Work(); });
      }
    } catch (const std::system_error&) {
      if (!threads_.empty()) return;
      for (const PlannedCropPtr& crop : crops_) Drop(*crop);
      crops_.clear();
      measures_.clear();
    }
  }

  // Stopped where the wait for task was given up before the condition held.
  template <class Condition>
  Status WaitUntil(std::unique_lock<std::mutex>& lock, const std::function<void()>& pump, Task& task,
                   Condition condition) {
    const double began = bounds_.seconds();
    while (!task.leftBehind && !finished_.wait_for(lock, kPumpInterval, condition)) {
      lock.unlock();
      if (pump) pump();
      const bool stopped = bounds_.stopped && bounds_.stopped();
      lock.lock();
      const double now = bounds_.seconds();
      LeaveBehind(now, host::kLongestSilence);
      if (task.leftBehind) break;
      // What is not begun may stand behind others that hang.
      const double still = task.busy ? task.SilentFor(now) : now - began;
      if (stopped && still >= kLastSecond && !condition()) return {Problem::Stopped, "已停止"};
    }
    return task.leftBehind ? DiskSilent() : Status::Ok();
  }

  template <class Act>
  void ForEachTask(Act act) {
    for (const PlannedCropPtr& crop : busy_) act(*crop);
    if (measuring_) act(*measuring_);
  }

  // Gives up the threads whose read has not come back for so long; others take their place.
  void LeaveBehind(double now, double silence) {
    bool any = false;
    ForEachTask([&](Task& task) {
      if (task.SilentFor(now) < silence) return;
      const auto thread = std::find_if(threads_.begin(), threads_.end(),
                                       [&](const std::thread& each) { return each.get_id() == task.thread; });
      thread->detach();
      threads_.erase(thread);
      task.leftBehind = any = true;
    });
    if (!any) return;
    for (const PlannedCropPtr& crop : std::vector<PlannedCropPtr>(busy_)) {
      if (!crop->leftBehind) continue;
      Drop(*crop);
      EndCrop(crop, State::Failed);
      UncountResult(*crop);
      silent_.insert(crop->request.source);
    }
    if (measuring_ && measuring_->leftBehind) {
      silent_.insert(measuring_->path);
      EndMeasure();
    }
    std::erase_if(measures_, [this](const std::string& path) { return silent_.contains(path); });
    for (const PlannedCropPtr& crop : crops_) {
      if (silent_.contains(crop->request.source)) Drop(*crop);
    }
    std::erase_if(crops_, [](const PlannedCropPtr& crop) { return crop->dropped; });
    if (!ending_) StartThreads();
  }

  PlannedCropPtr FindInPlan(const CropRequest& request) const {
    const auto found = std::find_if(crops_.begin(), crops_.end(),
                                    [&](const PlannedCropPtr& crop) { return crop->request == request; });
    return found == crops_.end() ? nullptr : *found;
  }

  // What stands in both plans goes over into the new one; the rest of the old one is dropped.
  std::vector<PlannedCropPtr> KeepFromPlan(const std::vector<CropRequest>& upcoming) {
    const std::size_t count = std::min(upcoming.size(), static_cast<std::size_t>(std::max(bounds_.planned, 1)));
    std::vector<PlannedCropPtr> plan;
    for (std::size_t i = 0; i < count; ++i) {
      if (silent_.contains(upcoming[i].source)) continue;
      plan.push_back(FindInPlan(upcoming[i]));
      if (plan.back()) {
        std::erase(crops_, plan.back());
      } else {
        plan.back() = std::make_shared<PlannedCrop>();
        plan.back()->request = upcoming[i];
      }
    }
    for (const PlannedCropPtr& crop : crops_) Drop(*crop);
    return plan;
  }

  void Drop(PlannedCrop& crop) {
    crop.dropped = true;
    crop.stop.request_stop();
    if (crop.state == State::Done) ForgetResult(crop);
  }

  void ForgetResult(PlannedCrop& crop) {
    UncountResult(crop);
    crop.result = {};
  }

  void UncountResult(PlannedCrop& crop) { resultBytes_ -= std::exchange(crop.held, 0); }

  void Begin(Task& task) {
    task.busy = true;
    task.thread = std::this_thread::get_id();
  }

  // A thread that finds its task left behind has been replaced.
  void Work() {
    std::unique_lock lock(mutex_);
    while (!ending_) {
      if (const PlannedCropPtr crop = NextCrop()) {
        if (crop == crops_.front() || crop->sourceSize) {
          RunCrop(lock, crop);
        } else {
          LookAtSize(lock, crop);
        }
        if (crop->leftBehind) return ComeBack(crop->request.source);
      } else if (!measures_.empty() && !measuring_) {
        const MeasuringPtr measuring = RunMeasure(lock);
        if (measuring->leftBehind) return ComeBack(measuring->path);
      } else {
        wake_.wait(lock);
      }
    }
    ++ended_;
    finished_.notify_all();
  }

  // Of a thread that was left behind: its disk has answered in the end.
  void ComeBack(const std::string& path) { silent_.erase(silent_.find(path)); }

  // The first, before all others; then each whose size is still to be looked at; then the largest.
  PlannedCropPtr NextCrop() const {
    PlannedCropPtr next;
    for (const PlannedCropPtr& crop : crops_) {
      if (crop->state != State::Waiting) continue;
      const bool first = crop == crops_.front();
      if (!first && !crop->sourceSize) return crop;
      if (!HasRoom(*crop)) continue;
      if (first) return crop;
      if (!next || crop->sourceSize > next->sourceSize) next = crop;
    }
    return next;
  }

  // Room for its working memory, as far as that is known, and for a result as large as the largest so far.
  bool HasRoom(const PlannedCrop& crop) const {
    if (crop.needs > bounds_.working - workingBytes_) return false;
    if (crop.awaited || (running_ == 0 && resultBytes_ == 0)) return true;
    return resultBytes_ + (running_ + 1) * largestResult_ <= bounds_.results;
  }

  void BeginCrop(const PlannedCropPtr& crop) {
    Begin(*crop);
    crop->state = State::Busy;
    busy_.push_back(crop);
  }

  void EndCrop(const PlannedCropPtr& crop, State state) {
    crop->busy = false;
    crop->state = state;
    std::erase(busy_, crop);
    if (std::exchange(crop->running, false)) --running_;
    workingBytes_ -= std::exchange(crop->admitted, 0);
    wake_.notify_all();
    finished_.notify_all();
  }

  void LookAtSize(std::unique_lock<std::mutex>& lock, const PlannedCropPtr& crop) {
    BeginCrop(crop);
    lock.unlock();
    const std::optional<FileFacts> source = LookAtSource(*crop);
    lock.lock();
    if (crop->leftBehind) return;
    crop->sourceSize = source ? source->size : 0;
    EndCrop(crop, State::Waiting);
  }

  void RunCrop(std::unique_lock<std::mutex>& lock, const PlannedCropPtr& crop) {
    BeginCrop(crop);
    crop->running = true;
    ++running_;
    lock.unlock();
    const bool done = Crop(*crop);
    lock.lock();
    if (crop->leftBehind) return;
    const bool again = !done && crop->needs > 0 && crop->needs <= bounds_.working;
    // One giant among small ones is forgotten after a while.
    if (done) largestResult_ = std::max(largestResult_ * 7 / 8, static_cast<std::int64_t>(crop->result.size()));
    if (!done || crop->dropped) ForgetResult(*crop);
    EndCrop(crop, done ? State::Done : again ? State::Waiting : State::Failed);
  }

  std::optional<FileFacts> LookAtSource(PlannedCrop& crop) const {
    ++crop.reads;
    const std::optional<FileFacts> facts = files_.Look(crop.request.source);
    ++crop.reads;
    return facts;
  }

  // Outside the lock. True when the result is whole and of a file that stayed as it was.
  bool Crop(PlannedCrop& crop) {
    crop.before = LookAtSource(crop);
    if (!crop.before) return false;
    const Job job{crop.request, crop.stop.get_token(),
                  [&](const void* data, std::size_t size) { return Append(crop, data, size); },
                  [&](std::int64_t bytes) { return Admit(crop, bytes); }, crop.reads};
    try {
      if (!crop_(job) || crop.stop.stop_requested()) return false;
    } catch (...) {
      return false;
    }
    const std::optional<FileFacts> after = LookAtSource(crop);
    return after && Unchanged(*crop.before, *after);
  }

  Status Append(PlannedCrop& crop, const void* data, std::size_t size) {
    {
      const std::lock_guard lock(mutex_);
      const auto more = static_cast<std::int64_t>(size);
      if (crop.dropped || resultBytes_ + more > bounds_.results) return {Problem::Stopped, "已停止"};
      resultBytes_ += more;
      crop.held += more;
    }
    crop.result.append(static_cast<const char*>(data), size);
    return Status::Ok();
  }

  bool Admit(PlannedCrop& crop, std::int64_t bytes) {
    const std::lock_guard lock(mutex_);
    if (crop.dropped) return false;
    crop.needs = bytes;
    if (workingBytes_ + bytes > bounds_.working) return false;
    crop.needs = 0;
    crop.admitted = bytes;
    workingBytes_ += bytes;
    return true;
  }

  // All of a measurement counts as one read: it takes long for no other reason.
  MeasuringPtr RunMeasure(std::unique_lock<std::mutex>& lock) {
    const auto measuring = std::make_shared<Measuring>();
    measuring->path = std::move(measures_.front());
    measures_.pop_front();
    measuring->reads = 1;
    Begin(*measuring);
    measuring_ = measuring;
    lock.unlock();
    try {
      measure_(measuring->path);
    } catch (...) {
      // The caller measures again and sees for itself.
    }
    lock.lock();
    if (!measuring->leftBehind) EndMeasure();
    return measuring;
  }

  void EndMeasure() {
    measuring_->busy = false;
    measuring_.reset();
    finished_.notify_all();
  }

  host::Files& files_;
  const CropWork crop_;
  const MeasureWork measure_;
  Bounds bounds_;

  std::mutex mutex_;
  std::condition_variable wake_;      // there may be work
  std::condition_variable finished_;  // something is done or dropped
  bool ending_ = false;
  std::vector<PlannedCropPtr> crops_;
  std::deque<std::string> measures_;
  std::vector<PlannedCropPtr> busy_;   // that a thread works on, also when they are no longer planned
  std::multiset<std::string> silent_;  // files that threads hang in which were left behind
  MeasuringPtr measuring_;             // one at a time, since the library for it does not gain by more
  std::int64_t resultBytes_ = 0;
  std::int64_t workingBytes_ = 0;
  std::int64_t largestResult_ = 0;
  int running_ = 0;
  std::vector<std::thread> threads_;  // without those that were left behind
  std::size_t ended_ = 0;             // of them
};

Ahead::Ahead(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds)
    : engine_(std::make_shared<Engine>(files, std::move(crop), std::move(measure), std::move(bounds))) {}

Ahead::~Ahead() { engine_->End(); }

void Ahead::PlanCrops(const std::vector<CropRequest>& upcoming) { engine_->PlanCrops(upcoming); }
void Ahead::PlanMeasures(std::vector<std::string> upcoming) { engine_->PlanMeasures(std::move(upcoming)); }

Status Ahead::TakeCrop(const CropRequest& request, const std::function<void()>& pump,
                       std::optional<std::string>& bytes) {
  return engine_->TakeCrop(request, pump, bytes);
}

Status Ahead::AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
  return engine_->AwaitMeasure(path, pump);
}

}  // namespace quillon::imaging
