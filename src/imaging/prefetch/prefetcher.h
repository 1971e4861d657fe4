// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
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

// Does planned work and measurements on other threads, so that the finished bytes are there when they are asked for. It
// only ever saves time: a result is handed out for exactly the work it was made for, on a source that is unchanged
// since before the work began; whatever fails here is silently left to the caller, who does the work again and reports.
//
// Plan, Pop and Await are called from one thread. The pump given to a wait is called every few milliseconds; it may
// call Plan. A wait lasts as long as the work computes, but not for a disk that answers no longer: a read that has not
// come back for half a minute ends it, with a stop request one of a second. The thread that hangs there is abandoned;
// as long as it hangs, its file fails at once.
class Prefetcher {
 public:
  struct Job {
    const FileWork& work;
    std::stop_token stop;
    // A draft for the next output. Its writes fail when the results held would grow above their bound.
    std::function<host::Draft&()> output;
    // Asked before memory is used: so many bytes until the job ends, and for results of that size until they are
    // popped, which then need no room within the bound of the results. After false the job has to end. It is begun
    // again when there is room, and left to the caller if there never can be.
    std::function<bool(std::int64_t working, std::int64_t results)> admit;
    // Counted up when a read of the source begins and again when it ends.
    std::atomic<unsigned>& reads;
    // Nothing else is planned, so that the work may use all cores by itself.
    bool alone = false;
  };
  // Does a work into the job's drafts without touching any destination. Called on several threads at once. Like the
  // measurement it owns whatever it touches after a read that hung.
  using Worker = std::function<Status(const Job& job)>;
  // Measures a picture and remembers the answer. Called on one thread at a time.
  using Measurement = std::function<void(const std::string& path)>;

  // By default results and working memory together stay at most 168 MB.
  struct Bounds {
    int threads = 0;                                 // 0: as many as there are cores
    int planned = 24;                                // works planned at once
    std::int64_t results = std::int64_t{24} << 20;   // bytes of finished and growing results
    std::int64_t working = std::int64_t{144} << 20;  // bytes admitted
    std::function<double()> seconds = {};            // the clock of the waits; the system's if empty
    std::function<bool()> stopped = {};              // whether a stop is requested; asked during waits
  };

  Prefetcher(host::Files& files, Worker worker, Measurement measurement, Bounds bounds);
  // Stops what is under way and waits for it, for a read that does not come back no longer than a second.
  ~Prefetcher();
  Prefetcher(const Prefetcher&) = delete;
  Prefetcher& operator=(const Prefetcher&) = delete;

  // Replaces the plan by the first Bounds::planned of upcoming. Work that stands in both goes on or stays finished;
  // everything else is stopped and thrown away. The first is begun first, then the one with the largest source, so that
  // no long work is left over for the end.
  void PlanWork(const std::vector<FileWork>& upcoming);

  // Replaces the plan of measurements; they are made in order when no work is waiting.
  void PlanMeasures(std::vector<std::string> upcoming);

  // The finished outputs of work, which leaves the plan. Waits for them if it is planned; nothing if it was not planned
  // (or is no longer: the pump may replace the plan), failed, its source has changed, or there is no memory for it
  // until other results are popped. Stopped, with a sentence, when the wait was given up: the caller had better not
  // touch the source either.
  Status Pop(const FileWork& work, const std::function<void()>& pump, std::optional<std::vector<std::string>>& outputs);

  // Called before path is measured by the caller: takes it out of the plan, and waits when it is under way. Stopped as
  // above.
  Status AwaitMeasure(const std::string& path, const std::function<void()>& pump);

 private:
  class Engine;
  std::shared_ptr<Engine> engine_;
};

}  // namespace quillon::imaging
