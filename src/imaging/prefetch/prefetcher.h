// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
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

// Works on announced crops and measurements on other threads, so that the finished bytes are there when they are asked
// for. It only ever saves time: a result is handed out for exactly the request it was made for, on a file that is
// unchanged since before the work began; whatever fails here is silently left to the caller, who does the work again
// and reports.
//
// Plan, Take and Await are called from one thread. The pump given to a wait is called every few milliseconds; it may
// call Plan. A wait lasts as long as the work computes, but not for a disk that answers no longer: a read that has not
// come back for half a minute ends it, with a stop request one of a second. The thread that hangs there is left behind;
// as long as it does, its file fails at once.
class Prefetcher {
 public:
  struct Job {
    const CropRequest& request;
    std::stop_token stop;
    // Appends to the result; fails when the results held would grow above their bound.
    std::function<Status(const void*, std::size_t)> sink;
    // Asked before so many bytes of working memory are taken; at false the work has to end. It is begun again when
    // there is room, and left to the caller when there never can be.
    std::function<bool(std::int64_t bytes)> admit;
    // Counted up when a read of the source begins and again when it ends.
    std::atomic<unsigned>& reads;
  };
  // Does a crop into the job's sink without touching its destination. Called on several threads at once. Like the
  // other work it owns whatever it touches behind a read that hung.
  using CropWork = std::function<Status(const Job& job)>;
  // Measures a picture and remembers the answer. Called on one thread at a time.
  using MeasureWork = std::function<void(const std::string& path)>;

  // By default results and working memory together stay at most 168 MB.
  struct Bounds {
    int threads = 0;                                 // 0: as many as there are cores
    int planned = 24;                                // crops planned at once
    std::int64_t results = std::int64_t{24} << 20;   // bytes of finished and growing results
    std::int64_t working = std::int64_t{144} << 20;  // bytes admitted to running crops
    std::function<double()> seconds = {};            // the clock of the waits, the system's where there is none
    std::function<bool()> stopped = {};              // whether a stop is requested; asked during waits
  };

  Prefetcher(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds);
  // Stops what is under way and waits for it, for a read that does not come back no longer than a second.
  ~Prefetcher();
  Prefetcher(const Prefetcher&) = delete;
  Prefetcher& operator=(const Prefetcher&) = delete;

  // Replaces the plan of crops by the first Bounds::planned of upcoming. Work that stands in both goes on or stays
  // finished; everything else is stopped and thrown away. The first is begun first, then the one with the largest
  // source, so that no long work is left over for the end.
  void PlanCrops(const std::vector<CropRequest>& upcoming);

  // Replaces the plan of measurements; they are made in order when no crop is waiting.
  void PlanMeasures(std::vector<std::string> upcoming);

  // The finished bytes for request, which leaves the plan. Waits for them when it is planned; nothing when it was not
  // planned (or is no longer: the pump may replace the plan), failed, or its source has changed. Stopped, with a
  // sentence, when the wait was given up: the caller had better not touch the source either.
  Status PopCrop(const CropRequest& request, const std::function<void()>& pump, std::optional<std::string>& bytes);

  // Called before path is measured by the caller: takes it out of the plan, and waits when it is under way. Stopped as
  // above.
  Status AwaitMeasure(const std::string& path, const std::function<void()>& pump);

 private:
  class Engine;
  std::shared_ptr<Engine> engine_;
};

}  // namespace quillon::imaging
