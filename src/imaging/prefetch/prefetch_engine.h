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

#include "imaging/prefetch/prefetch_memory.h"
#include "imaging/prefetch/prefetch_plan.h"
#include "imaging/prefetch/prefetch_tasks.h"
#include "imaging/prefetch/prefetch_threads.h"
#include "imaging/prefetch/prefetcher.h"

namespace quillon::imaging {

// Brings the plan, the threads and the memory together under one mutex. Its threads own it too: one that hung may come
// back when nobody else is left.
class Prefetcher::Engine : public std::enable_shared_from_this<Engine> {
 public:
  Engine(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds);

  // As the operations of Prefetcher; End is called when that is destroyed.
  void PlanCrops(const std::vector<CropRequest>& upcoming);
  void PlanMeasures(std::vector<std::string> upcoming);
  Status PopCrop(const CropRequest& request, const std::function<void()>& pump, std::optional<std::string>& bytes);
  Status AwaitMeasure(const std::string& path, const std::function<void()>& pump);
  void End();

 private:
  using Lock = std::unique_lock<std::mutex>;

  // --- Of the caller's thread; all but WaitUntil, which gives the lock away meanwhile, hold it.
  void StartThreads();
  template <class Condition>
  Status WaitUntil(Lock& lock, const std::function<void()>& pump, PrefetchTask& task, Condition condition);
  template <class Act>
  void ForEachTask(Act act);
  void Abandon(double now, double silence);

  // --- Of both; they hold the lock.
  void DropAll(const PrefetchCrops& crops);
  void Drop(PrefetchCrop& crop);
  void ForgetResult(PrefetchCrop& crop);
  void EndCrop(const PrefetchCropPtr& crop, PrefetchCrop::State state);
  void EndMeasure();

  // --- Of the working threads; those that are given the lock let it go while they work.
  void Work();
  void StatSize(Lock& lock, const PrefetchCropPtr& crop);
  void RunCrop(Lock& lock, const PrefetchCropPtr& crop);
  PrefetchMeasurePtr RunMeasure(Lock& lock);
  void BeginCrop(const PrefetchCropPtr& crop);
  static void Begin(PrefetchTask& task);
  std::optional<host::FileFacts> StatSource(PrefetchCrop& crop) const;
  bool Crop(PrefetchCrop& crop);
  Status Append(PrefetchCrop& crop, const void* data, std::size_t size);
  bool Admit(PrefetchCrop& crop, std::int64_t bytes);

  host::Files& files_;
  const CropWork crop_;
  const MeasureWork measure_;
  const Bounds bounds_;

  std::mutex mutex_;
  std::condition_variable wake_;      // there may be work
  std::condition_variable finished_;  // something is done or dropped
  bool ending_ = false;
  PrefetchPlan plan_;
  PrefetchMemory memory_;
  PrefetchThreads threads_;
  PrefetchCrops busy_;            // that a thread works on, also when they are no longer planned
  PrefetchMeasurePtr measuring_;  // one at a time, since the library for it does not gain by more
};

}  // namespace quillon::imaging
