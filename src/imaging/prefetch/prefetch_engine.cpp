// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The caller's side of the work ahead: plans, waits, and what is done about reads that hang.
#include "imaging/prefetch/prefetch_engine.h"

#include <chrono>
#include <utility>

#include "host/background_call.h"
#include "host/files/file_stamp.h"

namespace quillon::imaging {
namespace {

using host::Problem;

constexpr auto kPumpInterval = std::chrono::milliseconds(4);
// How long a read is waited for that stands in the way of an end, in seconds.
constexpr double kLastSecond = 1;

Status DiskSilent() { return {Problem::Stopped, host::kDiskUnresponsive}; }

double SystemSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Prefetcher::Bounds WithClock(Prefetcher::Bounds bounds) {
  if (!bounds.seconds) bounds.seconds = SystemSeconds;
  return bounds;
}

}  // namespace

Prefetcher::Engine::Engine(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds)
    : files_(files),
      crop_(std::move(crop)),
      measure_(std::move(measure)),
      bounds_(WithClock(std::move(bounds))),
      plan_(bounds_.planned),
      memory_(bounds_.results, bounds_.working),
      threads_(bounds_.threads) {}

void Prefetcher::Engine::End() {
  {
    Lock lock(mutex_);
    ending_ = true;
    DropAll(plan_.Clear());
    wake_.notify_all();
    // The clock of the waits may be another one.
    ForEachTask([](PrefetchTask& task) { task.seen = 0; });
    while (!finished_.wait_for(lock, kPumpInterval, [&] { return threads_.AllEnded(); })) {
      Abandon(SystemSeconds(), kLastSecond);
    }
  }
  threads_.Join();
}

void Prefetcher::Engine::PlanCrops(const std::vector<CropRequest>& upcoming) {
  {
    const std::lock_guard lock(mutex_);
    DropAll(plan_.ReplaceCrops(upcoming));
    if (plan_.HasCrops()) StartThreads();
  }
  wake_.notify_all();
  finished_.notify_all();
}

void Prefetcher::Engine::PlanMeasures(std::vector<std::string> upcoming) {
  {
    const std::lock_guard lock(mutex_);
    plan_.ReplaceMeasures(std::move(upcoming));
    if (plan_.HasMeasures()) StartThreads();
  }
  wake_.notify_all();
}

Status Prefetcher::Engine::PopCrop(const CropRequest& request, const std::function<void()>& pump,
                                   std::optional<std::string>& bytes) {
  using State = PrefetchCrop::State;
  bytes.reset();
  Lock lock(mutex_);
  if (plan_.Silent(request.source)) return DiskSilent();
  const PrefetchCropPtr crop = plan_.Find(request);
  if (!crop) return Status::Ok();
  crop->awaited = true;
  wake_.notify_all();
  const Status waited = WaitUntil(
      lock, pump, *crop, [&] { return crop->dropped || crop->state == State::Done || crop->state == State::Failed; });
  if (!waited) Drop(*crop);
  plan_.Remove(crop);
  if (crop->dropped || crop->state == State::Failed) return waited;
  memory_.ForgetResult(*crop);
  lock.unlock();
  wake_.notify_all();
  const std::optional<host::FileFacts> now = files_.Stat(request.source);
  if (now && crop->before && Unchanged(*now, *crop->before)) bytes = std::move(crop->result);
  return Status::Ok();
}

Status Prefetcher::Engine::AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
  Lock lock(mutex_);
  if (plan_.Silent(path)) return DiskSilent();
  plan_.RemoveMeasure(path);
  const PrefetchMeasurePtr measuring = measuring_;
  if (!measuring || measuring->path != path) return Status::Ok();
  return WaitUntil(lock, pump, *measuring, [&] { return !measuring->busy; });
}

// Threads are started with the first plan, so that a program that never plans has none.
// Where not even one can be started, nothing is planned.
void Prefetcher::Engine::StartThreads() {
  if (!threads_.Start([self = shared_from_this()] { self->Work(); })) DropAll(plan_.Clear());
}

// Stopped where the wait for task was given up before the condition held.
template <class Condition>
Status Prefetcher::Engine::WaitUntil(Lock& lock, const std::function<void()>& pump, PrefetchTask& task,
                                     Condition condition) {
  const double began = bounds_.seconds();
  while (!task.abandoned && !finished_.wait_for(lock, kPumpInterval, condition)) {
    lock.unlock();
    if (pump) pump();
    const bool stopped = bounds_.stopped && bounds_.stopped();
    lock.lock();
    const double now = bounds_.seconds();
    Abandon(now, host::kDiskTimeoutSeconds);
    if (task.abandoned) break;
    // What is not begun may stand behind others that hang.
    const double still = task.busy ? task.SilentFor(now) : now - began;
    if (stopped && still >= kLastSecond && !condition()) return {Problem::Stopped, "已停止"};
  }
  return task.abandoned ? DiskSilent() : Status::Ok();
}

template <class Act>
void Prefetcher::Engine::ForEachTask(Act act) {
  for (const PrefetchCropPtr& crop : busy_) act(*crop);
  if (measuring_) act(*measuring_);
}

// Gives up the threads whose read has not come back for so long; others take their place.
void Prefetcher::Engine::Abandon(double now, double silence) {
  bool any = false;
  ForEachTask([&](PrefetchTask& task) {
    if (task.SilentFor(now) < silence) return;
    threads_.Abandon(task);
    any = true;
  });
  if (!any) return;
  for (const PrefetchCropPtr& crop : PrefetchCrops(busy_)) {
    if (!crop->abandoned) continue;
    Drop(*crop);
    EndCrop(crop, PrefetchCrop::State::Failed);
    memory_.ForgetResult(*crop);
    DropAll(plan_.FallSilent(crop->request.source));
  }
  if (measuring_ && measuring_->abandoned) {
    DropAll(plan_.FallSilent(measuring_->path));
    EndMeasure();
  }
  if (!ending_) StartThreads();
}

void Prefetcher::Engine::DropAll(const PrefetchCrops& crops) {
  for (const PrefetchCropPtr& crop : crops) Drop(*crop);
}

void Prefetcher::Engine::Drop(PrefetchCrop& crop) {
  crop.dropped = true;
  crop.stop.request_stop();
  if (crop.state == PrefetchCrop::State::Done) ForgetResult(crop);
}

void Prefetcher::Engine::ForgetResult(PrefetchCrop& crop) {
  memory_.ForgetResult(crop);
  crop.result = {};
}

}  // namespace quillon::imaging
