// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The caller's side of the work ahead: plans, waits, and what is done about reads that hang.
#include "imaging/ahead_engine.h"

#include <chrono>
#include <utility>

#include "host/errand.h"
#include "imaging/unchanged.h"

namespace quillon::imaging {
namespace {

using host::Problem;

constexpr auto kPumpInterval = std::chrono::milliseconds(4);
// How long a read is waited for that stands in the way of an end, in seconds.
constexpr double kLastSecond = 1;

Status DiskSilent() { return {Problem::Stopped, host::kDiskSilent}; }

double SystemSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Ahead::Bounds WithClock(Ahead::Bounds bounds) {
  if (!bounds.seconds) bounds.seconds = SystemSeconds;
  return bounds;
}

}  // namespace

Ahead::Engine::Engine(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds)
    : files_(files),
      crop_(std::move(crop)),
      measure_(std::move(measure)),
      bounds_(WithClock(std::move(bounds))),
      plan_(bounds_.planned),
      memory_(bounds_.results, bounds_.working),
      threads_(bounds_.threads) {}

void Ahead::Engine::End() {
  {
    Lock lock(mutex_);
    ending_ = true;
    DropAll(plan_.Clear());
    wake_.notify_all();
    // The clock of the waits may be another one.
    ForEachTask([](AheadTask& task) { task.seen = 0; });
    while (!finished_.wait_for(lock, kPumpInterval, [&] { return threads_.AllEnded(); })) {
      LeaveBehind(SystemSeconds(), kLastSecond);
    }
  }
  threads_.Join();
}

void Ahead::Engine::PlanCrops(const std::vector<CropRequest>& upcoming) {
  {
    const std::lock_guard lock(mutex_);
    DropAll(plan_.ReplaceCrops(upcoming));
    if (plan_.HasCrops()) StartThreads();
  }
  wake_.notify_all();
  finished_.notify_all();
}

void Ahead::Engine::PlanMeasures(std::vector<std::string> upcoming) {
  {
    const std::lock_guard lock(mutex_);
    plan_.ReplaceMeasures(std::move(upcoming));
    if (plan_.HasMeasures()) StartThreads();
  }
  wake_.notify_all();
}

Status Ahead::Engine::TakeCrop(const CropRequest& request, const std::function<void()>& pump,
                               std::optional<std::string>& bytes) {
  using State = AheadCrop::State;
  bytes.reset();
  Lock lock(mutex_);
  if (plan_.Silent(request.source)) return DiskSilent();
  const AheadCropPtr crop = plan_.Find(request);
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
  const std::optional<host::FileFacts> now = files_.Look(request.source);
  if (now && crop->before && Unchanged(*now, *crop->before)) bytes = std::move(crop->result);
  return Status::Ok();
}

Status Ahead::Engine::AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
  Lock lock(mutex_);
  if (plan_.Silent(path)) return DiskSilent();
  plan_.RemoveMeasure(path);
  const AheadMeasurePtr measuring = measuring_;
  if (!measuring || measuring->path != path) return Status::Ok();
  return WaitUntil(lock, pump, *measuring, [&] { return !measuring->busy; });
}

// Threads are started with the first plan, so that a program that never plans has none.
// Where not even one can be started, nothing is planned.
void Ahead::Engine::StartThreads() {
  if (!threads_.Start([self = shared_from_this()] { self->Work(); })) DropAll(plan_.Clear());
}

// Stopped where the wait for task was given up before the condition held.
template <class Condition>
Status Ahead::Engine::WaitUntil(Lock& lock, const std::function<void()>& pump, AheadTask& task, Condition condition) {
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
void Ahead::Engine::ForEachTask(Act act) {
  for (const AheadCropPtr& crop : busy_) act(*crop);
  if (measuring_) act(*measuring_);
}

// Gives up the threads whose read has not come back for so long; others take their place.
void Ahead::Engine::LeaveBehind(double now, double silence) {
  bool any = false;
  ForEachTask([&](AheadTask& task) {
    if (task.SilentFor(now) < silence) return;
    threads_.LeaveBehind(task);
    any = true;
  });
  if (!any) return;
  for (const AheadCropPtr& crop : AheadCrops(busy_)) {
    if (!crop->leftBehind) continue;
    Drop(*crop);
    EndCrop(crop, AheadCrop::State::Failed);
    memory_.ForgetResult(*crop);
    DropAll(plan_.FallSilent(crop->request.source));
  }
  if (measuring_ && measuring_->leftBehind) {
    DropAll(plan_.FallSilent(measuring_->path));
    EndMeasure();
  }
  if (!ending_) StartThreads();
}

void Ahead::Engine::DropAll(const AheadCrops& crops) {
  for (const AheadCropPtr& crop : crops) Drop(*crop);
}

void Ahead::Engine::Drop(AheadCrop& crop) {
  crop.dropped = true;
  crop.stop.request_stop();
  if (crop.state == AheadCrop::State::Done) ForgetResult(crop);
}

void Ahead::Engine::ForgetResult(AheadCrop& crop) {
  memory_.ForgetResult(crop);
  crop.result = {};
}

}  // namespace quillon::imaging
