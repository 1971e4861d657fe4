// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "host/files/files.h"
#include "imaging/types.h"

namespace quillon::imaging {

// By default results and working memory together stay at most 168 MB.
struct PrefetchLimits {
  int threads = 0;                                 // 0: as many as there are cores
  int planned = 24;                                // the largest number of planned works
  std::int64_t results = std::int64_t{24} << 20;   // bytes of finished and growing results
  std::int64_t working = std::int64_t{144} << 20;  // bytes admitted
  std::function<double()> seconds = {};            // the clock of the waits; that of the system if empty
  std::function<bool()> stopped = {};              // returns whether a stop is requested; called during waits
};

// Does planned work and measurements on other threads in advance, so that the results are ready when they are needed.
// It never changes a result: bytes are returned only for exactly the planned work, and only if the source is unchanged
// since before the work began. A failure is dropped; the caller then does the work itself and reports the failure.
//
// All functions are called from one thread. A wait calls its pump every few milliseconds, and the pump may plan. A wait
// lasts as long as the work computes. It ends if a read is silent for host::kDiskTimeoutSeconds, or for one second
// after a stop request. The thread of that read is abandoned, and its file fails at once until the read returns.
class Prefetcher {
 public:
  struct Job {
    const FileWork& work;
    std::stop_token stop;
    // Returns a draft for the next output. A write fails if all results together would exceed their bound.
    std::function<host::Draft&()> output;
    // Called before memory is allocated: working bytes are used until the job ends, results bytes until the results are
    // popped. Such results do not count against the bound of the results. If it returns false, the job must end. It is
    // run again when there is room, or never if the bounds are too small.
    std::function<bool(std::int64_t working, std::int64_t results)> admit;
    // Counts the reads of the source.
    host::DiskCalls& calls;
    // True if nothing else is planned, so that the work may use all cores.
    bool alone = false;
  };
  // Does a work into the drafts of the job and accesses no destination. Called on several threads at once. Like the
  // measurement, it must own everything that it uses after a read, because its thread may have been abandoned.
  using Worker = std::function<Status(const Job& job)>;
  // Measures a picture and remembers the answer. Called by one thread at a time.
  using Measurement = std::function<void(const std::string& path)>;

  Prefetcher(host::Files& files, Worker worker, Measurement measurement, PrefetchLimits limits);
  // Stops the work in progress and waits for it. A thread whose read is silent for one second is abandoned.
  ~Prefetcher();
  Prefetcher(const Prefetcher&) = delete;
  Prefetcher& operator=(const Prefetcher&) = delete;

  // Replaces the plan by the first PrefetchLimits::planned of upcoming. Works that both plans contain are kept in any
  // state; all others are stopped and dropped. The first work is begun first, then the one with the largest source, so
  // that no long work is begun last.
  void PlanWork(const std::vector<FileWork>& upcoming);

  // Replaces the plan of measurements. They are made in order whenever no work is waiting.
  void PlanMeasures(std::vector<std::string> upcoming);

  // Removes work from the plan and gives its outputs. Waits for them if the work is planned. Gives nothing if the work
  // is not planned (the pump may replace the plan), if it failed, if its source has changed, or if it needs memory that
  // is only free after other results are popped.
  // Stopped, with a sentence for the user: the wait was given up, and the caller should not read the source either.
  Status Pop(const FileWork& work, const std::function<void()>& pump, std::optional<std::vector<std::string>>& outputs);

  // Removes the measurement of path from the plan, or waits for it if it is in progress. Called before the caller
  // measures path. Stopped: as Pop.
  Status AwaitMeasure(const std::string& path, const std::function<void()>& pump);

 private:
  class Engine;
  std::shared_ptr<Engine> engine_;
};

}  // namespace quillon::imaging
