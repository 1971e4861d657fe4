// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "host/files/files.h"
#include "imaging/io/memory_draft.h"
#include "imaging/types.h"

// What the prefetcher's engine is made of: tasks, the plan of them, their memory and their threads. All of it is
// guarded by the engine's mutex, unless said otherwise.
namespace quillon::imaging {

// What a thread does.
struct PrefetchTask {
  std::atomic<unsigned> reads = 0;  // counted up at the begin and at the end of each: odd during one; not guarded
  std::thread::id thread;
  bool busy = false;
  bool abandoned = false;  // its thread hangs and counts no more

  // Seconds since it was first asked during the read under way; 0 if there is none.
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

// The work and the stop are not guarded, and neither are the drafts while it is running.
struct PrefetchWork : PrefetchTask {
  enum class State { Waiting, Busy, Done, Failed };

  FileWork work;
  std::optional<std::uint64_t> sourceSize;
  std::stop_source stop;
  State state = State::Waiting;
  bool running = false;       // more than the size of its source is looked at
  bool dropped = false;       // no longer planned
  bool awaited = false;       // the caller is waiting for it
  bool alone = false;         // nothing else was planned when it was begun
  std::int64_t needs = 0;     // memory that it was refused
  std::int64_t admitted = 0;  // memory that it has, with what is reserved
  std::int64_t reserved = 0;  // of that for its results
  std::int64_t held = 0;      // bytes of its results so far
  std::int64_t counted = 0;   // of those among the results of all
  std::optional<host::FileFacts> before;
  std::vector<std::unique_ptr<MemoryDraft>> drafts;
};

struct PrefetchMeasure : PrefetchTask {
  std::string path;
};

using PrefetchWorkPtr = std::shared_ptr<PrefetchWork>;
using PrefetchWorks = std::vector<PrefetchWorkPtr>;
using PrefetchMeasurePtr = std::shared_ptr<PrefetchMeasure>;

// Counts what works hold and decides what they may use. Bytes.
//
// Results are counted as they grow, up to a bound of their own. Of large results a work reserves the size beforehand,
// as a part of its working memory: a result that grows too large at its end would have been made for nothing. Once it
// is finished it joins the other results, and if there is no room it stays in its reserve.
class PrefetchMemory {
 public:
  // results: of all finished and growing results. working: of all running works and all reserves.
  PrefetchMemory(std::int64_t results, std::int64_t working) : resultsBound_(results), workingBound_(working) {}

  // Whether a work may be begun: room for the memory it needs, as far as that is known, and for a result as large as
  // the largest so far. One that is awaited, or alone, needs no room for its result.
  bool HasRoom(const PrefetchWork& work) const;
  // Whether a work that was refused cannot be begun before results are popped.
  bool WaitsForPop(const PrefetchWork& work) const { return work.needs > 0 && running_ == 0 && !HasRoom(work); }

  void Begin(PrefetchWork& work);
  // Memory for a running work, all at once; what it needs is remembered if it is refused.
  bool Admit(PrefetchWork& work, std::int64_t working, std::int64_t results = 0);
  // Room for so many bytes more of its results.
  bool Grow(PrefetchWork& work, std::int64_t bytes);
  // Takes the working memory back. The results stay counted until they are forgotten.
  void End(PrefetchWork& work);
  void ForgetResults(PrefetchWork& work);

  // Of the results that are still to come, by a work that is finished. Called before its end.
  void Expect(const PrefetchWork& work);
  // Whether a work that was refused its memory will have it when others have ended.
  bool MayFitLater(const PrefetchWork& work) const { return work.needs > 0 && work.needs <= workingBound_; }

  std::int64_t Results() const { return results_; }
  std::int64_t Working() const { return working_; }

 private:
  const std::int64_t resultsBound_;
  const std::int64_t workingBound_;
  std::int64_t results_ = 0;
  std::int64_t working_ = 0;
  std::int64_t largestResult_ = 0;  // of those that reserve nothing
  int running_ = 0;
};

// What is to be done, and which files hang and are left alone.
class PrefetchPlan {
 public:
  // most: works planned at once, at least 1.
  explicit PrefetchPlan(int most);

  // The first of upcoming become the plan; what stands in both plans stays as it is. Returns what is no longer planned.
  PrefetchWorks Replace(const std::vector<FileWork>& upcoming);
  void ReplaceMeasures(std::vector<std::string> upcoming);
  // Empties the plan and returns its works.
  PrefetchWorks Clear();

  bool HasWork() const { return !works_.empty(); }
  std::size_t Count() const { return works_.size(); }
  PrefetchWorkPtr Find(const FileWork& work) const;
  void Remove(const PrefetchWorkPtr& work);
  // The work that is to be begun next; nothing if none waits or memory has no room. The first of the plan comes
  // before all others; then each whose size is still to be looked at; then the one with the largest source.
  PrefetchWorkPtr Next(const PrefetchMemory& memory) const;
  // Whether its size is to be looked at before anything else is done.
  bool SizeWanted(const PrefetchWorkPtr& work) const { return work != works_.front() && !work->sourceSize; }

  bool HasMeasures() const { return !measures_.empty(); }
  // Takes it out if it stands near the front of the plan, which is where the caller is.
  void RemoveMeasure(const std::string& path);
  // The first one, which leaves the plan. There has to be one.
  std::string PopMeasure();

  // A thread hangs in the file: it is planned no more. Returns the works on it that were.
  PrefetchWorks FallSilent(const std::string& path);
  // One of the threads that hung in it has come back.
  void Answer(const std::string& path) { silent_.erase(silent_.find(path)); }
  bool Silent(const std::string& path) const { return silent_.contains(path); }

 private:
  const std::size_t most_;
  PrefetchWorks works_;
  std::deque<std::string> measures_;
  std::multiset<std::string> silent_;  // once for each thread
};

// The threads. All but Join is guarded.
class PrefetchThreads {
 public:
  // 0: as many as there are cores.
  explicit PrefetchThreads(int count);

  // Starts those that are missing, each with work. False if there is not even one.
  bool Start(const std::function<void()>& work);
  // The thread of task hangs: it belongs here no longer, and ends by itself when it comes back.
  void Abandon(PrefetchTask& task);

  // Called by each thread that has left its work.
  void CountEnded() { ++ended_; }
  bool AllEnded() const { return ended_ == threads_.size(); }
  // After all have ended.
  void Join();

 private:
  const std::size_t count_;
  std::vector<std::thread> threads_;  // without those that were abandoned
  std::size_t ended_ = 0;             // of them
};

}  // namespace quillon::imaging
