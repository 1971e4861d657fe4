// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "imaging/ahead.h"
#include "imaging/ahead_memory.h"
#include "imaging/ahead_plan.h"
#include "imaging/ahead_tasks.h"
#include "imaging/ahead_threads.h"

namespace quillon::imaging {

// Brings the plan, the threads and the memory together under one mutex. Its threads own it too: one that hung may come
// back when nobody else is left.
class Ahead::Engine : public std::enable_shared_from_this<Engine> {
 public:
  Engine(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds);

  // As the operations of Ahead; End is its destruction.
  void PlanCrops(const std::vector<CropRequest>& upcoming);
  void PlanMeasures(std::vector<std::string> upcoming);
  Status TakeCrop(const CropRequest& request, const std::function<void()>& pump, std::optional<std::string>& bytes);
  Status AwaitMeasure(const std::string& path, const std::function<void()>& pump);
  void End();

 private:
  using Lock = std::unique_lock<std::mutex>;

  // --- Of the caller's thread; all but WaitUntil, which gives the lock away meanwhile, hold it.
  void StartThreads();
  template <class Condition>
  Status WaitUntil(Lock& lock, const std::function<void()>& pump, AheadTask& task, Condition condition);
  template <class Act>
  void ForEachTask(Act act);
  void LeaveBehind(double now, double silence);

  // --- Of both; they hold the lock.
  void DropAll(const AheadCrops& crops);
  void Drop(AheadCrop& crop);
  void ForgetResult(AheadCrop& crop);
  void EndCrop(const AheadCropPtr& crop, AheadCrop::State state);
  void EndMeasure();

  // --- Of the working threads; those that are given the lock let it go while they work.
  void Work();
  void WorkOn(Lock& lock, const AheadCropPtr& crop);
  void LookAtSize(Lock& lock, const AheadCropPtr& crop);
  void RunCrop(Lock& lock, const AheadCropPtr& crop);
  AheadMeasurePtr RunMeasure(Lock& lock);
  void BeginCrop(const AheadCropPtr& crop);
  static void Begin(AheadTask& task);
  std::optional<host::FileFacts> LookAtSource(AheadCrop& crop) const;
  bool Crop(AheadCrop& crop);
  Status Append(AheadCrop& crop, const void* data, std::size_t size);
  bool Admit(AheadCrop& crop, std::int64_t bytes);

  host::Files& files_;
  const CropWork crop_;
  const MeasureWork measure_;
  const Bounds bounds_;

  std::mutex mutex_;
  std::condition_variable wake_;      // there may be work
  std::condition_variable finished_;  // something is done or dropped
  bool ending_ = false;
  AheadPlan plan_;
  AheadMemory memory_;
  AheadThreads threads_;
  AheadCrops busy_;            // that a thread works on, also when they are no longer planned
  AheadMeasurePtr measuring_;  // one at a time, since the library for it does not gain by more
};

}  // namespace quillon::imaging
