// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/ahead.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

#include "imaging/unchanged.h"

namespace quillon::imaging {
namespace {

using host::FileFacts;
using host::Problem;

constexpr auto kPumpInterval = std::chrono::milliseconds(4);
constexpr std::size_t kSearchedMeasures = 64;  // at the front of the plan, where the caller is

enum class State { Waiting, Running, Done, Failed };

// All but request, sourceSize and stop is guarded by the engine's mutex, result while the job is not running.
struct PlannedCrop {
  CropRequest request;
  std::uint64_t sourceSize = 0;
  std::stop_source stop;
  State state = State::Waiting;
  bool dropped = false;       // no longer planned
  bool awaited = false;       // the caller is waiting for it
  std::int64_t needs = 0;     // working memory it was refused
  std::int64_t admitted = 0;  // working memory it has
  std::optional<FileFacts> before;
  std::string result;
};

using PlannedCropPtr = std::shared_ptr<PlannedCrop>;

}  // namespace

class Ahead::Engine {
 public:
  Engine(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds)
      : files_(files), crop_(std::move(crop)), measure_(std::move(measure)), bounds_(bounds) {
    if (bounds_.threads <= 0) bounds_.threads = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  }

  ~Engine() {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
      measures_.clear();
      for (const PlannedCropPtr& crop : crops_) Drop(*crop);
      crops_.clear();
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  void PlanCrops(const std::vector<CropRequest>& upcoming) {
    const std::size_t count = std::min(upcoming.size(), static_cast<std::size_t>(std::max(bounds_.planned, 1)));
    std::vector<PlannedCropPtr> plan = KeepFromPlan(upcoming, count);
    // Files are looked at without holding up the threads.
    for (std::size_t i = 0; i < count; ++i) {
      if (!plan[i]) plan[i] = NewCrop(upcoming[i]);
    }
    {
      const std::lock_guard lock(mutex_);
      crops_ = std::move(plan);
      if (!crops_.empty()) StartThreads();
    }
    wake_.notify_all();
    finished_.notify_all();
  }

  void PlanMeasures(std::vector<std::string> upcoming) {
    {
      const std::lock_guard lock(mutex_);
      measures_.assign(std::make_move_iterator(upcoming.begin()), std::make_move_iterator(upcoming.end()));
      if (!measures_.empty()) StartThreads();
    }
    wake_.notify_all();
  }

  std::optional<std::string> TakeCrop(const CropRequest& request, const std::function<void()>& pump) {
    std::unique_lock lock(mutex_);
    const PlannedCropPtr crop = FindInPlan(request);
    if (!crop) return std::nullopt;
    crop->awaited = true;
    wake_.notify_all();
    WaitUntil(lock, pump, [&] { return crop->dropped || crop->state == State::Done || crop->state == State::Failed; });
    if (crop->dropped) return std::nullopt;
    std::erase(crops_, crop);
    if (crop->state == State::Failed) return std::nullopt;
    resultBytes_ -= static_cast<std::int64_t>(crop->result.size());
    lock.unlock();
    wake_.notify_all();
    const std::optional<FileFacts> now = files_.Look(request.source);
    if (!now || !crop->before || !Unchanged(*now, *crop->before)) return std::nullopt;
    return std::move(crop->result);
  }

  void AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
    std::unique_lock lock(mutex_);
    const auto end = measures_.begin() + static_cast<std::ptrdiff_t>(std::min(measures_.size(), kSearchedMeasures));
    const auto found = std::find(measures_.begin(), end, path);
    if (found != end) measures_.erase(found);
    WaitUntil(lock, pump, [&] { return measuring_ != path; });
  }

 private:
  // Threads are started with the first plan, so that a program that never plans has none.
  // Where not even one can be started, nothing is planned.
  void StartThreads() {
    try {
      while (threads_.size() < static_cast<std::size_t>(bounds_.threads)) threads_.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {
      if (!threads_.empty()) return;
      crops_.clear();
      measures_.clear();
    }
  }

  template <class Condition>
  void WaitUntil(std::unique_lock<std::mutex>& lock, const std::function<void()>& pump, Condition condition) {
    while (!finished_.wait_for(lock, kPumpInterval, condition)) {
      lock.unlock();
      if (pump) pump();
      lock.lock();
    }
  }

  PlannedCropPtr FindInPlan(const CropRequest& request) const {
    const auto found = std::find_if(crops_.begin(), crops_.end(),
                                    [&](const PlannedCropPtr& crop) { return crop->request == request; });
    return found == crops_.end() ? nullptr : *found;
  }

  // What stands in both plans, in the places of the new one; the rest of the old one is dropped.
  std::vector<PlannedCropPtr> KeepFromPlan(const std::vector<CropRequest>& upcoming, std::size_t count) {
    const std::lock_guard lock(mutex_);
    std::vector<PlannedCropPtr> plan(count);
    for (std::size_t i = 0; i < count; ++i) {
      plan[i] = FindInPlan(upcoming[i]);
      if (plan[i]) std::erase(crops_, plan[i]);
    }
    for (const PlannedCropPtr& crop : crops_) Drop(*crop);
    crops_.clear();
    return plan;
  }

  PlannedCropPtr NewCrop(const CropRequest& request) const {
    auto crop = std::make_shared<PlannedCrop>();
    crop->request = request;
    if (const std::optional<FileFacts> source = files_.Look(request.source)) crop->sourceSize = source->size;
    return crop;
  }

  void Drop(PlannedCrop& crop) {
    crop.dropped = true;
    crop.stop.request_stop();
    if (crop.state == State::Done) ForgetResult(crop);
  }

  void ForgetResult(PlannedCrop& crop) {
    resultBytes_ -= static_cast<std::int64_t>(crop.result.size());
    crop.result = {};
  }

  void Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
      if (ending_) return;
      if (const PlannedCropPtr crop = NextCrop()) {
        RunCrop(lock, *crop);
      } else if (!measures_.empty() && !measuring_) {
        RunMeasure(lock);
      } else {
        wake_.wait(lock);
      }
    }
  }

  PlannedCropPtr NextCrop() const {
    PlannedCropPtr next;
    for (const PlannedCropPtr& crop : crops_) {
      if (crop->state != State::Waiting || !HasRoom(*crop)) continue;
      if (crop == crops_.front()) return crop;
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

  void RunCrop(std::unique_lock<std::mutex>& lock, PlannedCrop& crop) {
    crop.state = State::Running;
    ++running_;
    lock.unlock();
    const bool done = Crop(crop);
    lock.lock();
    --running_;
    workingBytes_ -= crop.admitted;
    crop.admitted = 0;
    const bool again = !done && crop.needs > 0 && crop.needs <= bounds_.working;
    crop.state = done ? State::Done : again ? State::Waiting : State::Failed;
    // One giant among small ones is forgotten after a while.
    if (done) largestResult_ = std::max(largestResult_ * 7 / 8, static_cast<std::int64_t>(crop.result.size()));
    if (!done || crop.dropped) ForgetResult(crop);
    wake_.notify_all();
    finished_.notify_all();
  }

  // Outside the lock. True when the result is whole and of a file that stayed as it was.
  bool Crop(PlannedCrop& crop) {
    crop.before = files_.Look(crop.request.source);
    if (!crop.before) return false;
    const Job job{crop.request, crop.stop.get_token(),
                  [&](const void* data, std::size_t size) { return Append(crop, data, size); },
                  [&](std::int64_t bytes) { return Admit(crop, bytes); }};
    try {
      if (!crop_(job)) return false;
    } catch (...) {
      return false;
    }
    const std::optional<FileFacts> after = files_.Look(crop.request.source);
    return after && Unchanged(*crop.before, *after);
  }

  Status Append(PlannedCrop& crop, const void* data, std::size_t size) {
    if (crop.stop.stop_requested()) return {Problem::Stopped, "已停止"};
    {
      const std::lock_guard lock(mutex_);
      if (resultBytes_ + static_cast<std::int64_t>(size) > bounds_.results) return {Problem::Stopped, "已停止"};
      resultBytes_ += static_cast<std::int64_t>(size);
    }
    crop.result.append(static_cast<const char*>(data), size);
    return Status::Ok();
  }

  bool Admit(PlannedCrop& crop, std::int64_t bytes) {
    const std::lock_guard lock(mutex_);
    crop.needs = bytes;
    if (workingBytes_ + bytes > bounds_.working) return false;
    crop.needs = 0;
    crop.admitted = bytes;
    workingBytes_ += bytes;
    return true;
  }

  void RunMeasure(std::unique_lock<std::mutex>& lock) {
    const std::string path = std::move(measures_.front());
    measures_.pop_front();
    measuring_ = path;
    lock.unlock();
    try {
      measure_(path);
    } catch (...) {
      // The caller measures again and sees for itself.
    }
    lock.lock();
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
  // Under way; one at a time, since the library for it does not gain by more.
  std::optional<std::string> measuring_;
  std::int64_t resultBytes_ = 0;
  std::int64_t workingBytes_ = 0;
  std::int64_t largestResult_ = 0;
  int running_ = 0;
  std::vector<std::thread> threads_;
};

Ahead::Ahead(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds)
    : engine_(std::make_unique<Engine>(files, std::move(crop), std::move(measure), bounds)) {}

Ahead::~Ahead() = default;

void Ahead::PlanCrops(const std::vector<CropRequest>& upcoming) { engine_->PlanCrops(upcoming); }
void Ahead::PlanMeasures(std::vector<std::string> upcoming) { engine_->PlanMeasures(std::move(upcoming)); }

std::optional<std::string> Ahead::TakeCrop(const CropRequest& request, const std::function<void()>& pump) {
  return engine_->TakeCrop(request, pump);
}

void Ahead::AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
  engine_->AwaitMeasure(path, pump);
}

}  // namespace quillon::imaging
