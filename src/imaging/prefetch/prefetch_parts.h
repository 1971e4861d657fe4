// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

#include "host/files/disk_calls.h"
#include "host/files/files.h"
#include "imaging/io/bytes.h"
#include "imaging/types.h"

// The parts of the prefetcher's engine: tasks, plan, memory and threads. The mutex of the engine guards all of them,
// unless a comment says otherwise.
namespace quillon::imaging {

// A piece of work for one thread.
struct PrefetchTask {
  host::DiskCalls calls;  // not guarded
  std::thread::id thread;
  bool busy = false;
  bool abandoned = false;  // its thread hangs in a read and was replaced
};

// work and stop are not guarded, and neither are the drafts while the work runs.
struct PrefetchWork : PrefetchTask {
  enum class State { Waiting, Busy, Done, Failed };

  FileWork work;
  std::optional<std::uint64_t> sourceSize;
  std::stop_source stop;
  State state = State::Waiting;
  bool running = false;       // its thread does the work, and not only stats the source
  bool dropped = false;       // no longer planned
  bool awaited = false;       // the caller is waiting for it
  bool alone = false;         // nothing else was planned when it began
  std::int64_t needs = 0;     // memory that was refused
  std::int64_t admitted = 0;  // memory that was admitted, including what is reserved
  std::int64_t reserved = 0;  // the part of it for the results
  std::int64_t held = 0;      // bytes of its results so far
  std::int64_t counted = 0;   // those of them that count against the bound of the results
  std::optional<host::FileFacts> before;
  std::vector<std::unique_ptr<MemoryDraft>> drafts;
};

struct PrefetchMeasure : PrefetchTask {
  std::string path;
};

using PrefetchWorkPtr = std::shared_ptr<PrefetchWork>;
using PrefetchWorks = std::vector<PrefetchWorkPtr>;
using PrefetchMeasurePtr = std::shared_ptr<PrefetchMeasure>;

// Counts the memory of all works, in bytes, and decides whether a work may use more.
//
// Results are counted while they grow and have a bound of their own. A work with large results reserves their size in
// advance as part of its working memory, because a result that exceeds the bound at its end would be made in vain. A
// finished result moves to the bound of the results if there is room, and otherwise keeps its reserve.
class PrefetchMemory {
 public:
  // results: of all finished and growing results. working: of all running works and all reserves.
  PrefetchMemory(std::int64_t results, std::int64_t working) : resultsBound_(results), workingBound_(working) {}

  // Returns whether a work may begin: there is room for the memory that it needs, if that is known, and for a result as
  // large as the largest so far. A work that is awaited, or the only one, needs no room for its result.
  bool HasRoom(const PrefetchWork& work) const;
  // Returns whether a refused work can begin only after results are popped.
  bool WaitsForPop(const PrefetchWork& work) const { return work.needs > 0 && running_ == 0 && !HasRoom(work); }

  void Begin(PrefetchWork& work);
  // Admits memory for a running work, once. If it is refused, the need is remembered.
  bool Admit(PrefetchWork& work, std::int64_t working, std::int64_t results = 0);
  // Admits that many more bytes of results.
  bool Grow(PrefetchWork& work, std::int64_t bytes);
  // Frees the working memory. The results remain counted until ForgetResults.
  void End(PrefetchWork& work);
  void ForgetResults(PrefetchWork& work);

  // Learns the size of results from a finished work. Called before End.
  void Expect(const PrefetchWork& work);
  // Returns whether a refused work can have its memory after others have ended.
  bool MayFitLater(const PrefetchWork& work) const { return work.needs > 0 && work.needs <= workingBound_; }

  std::int64_t Results() const { return results_; }
  std::int64_t Working() const { return working_; }

 private:
  const std::int64_t resultsBound_;
  const std::int64_t workingBound_;
  std::int64_t results_ = 0;
  std::int64_t working_ = 0;
  std::int64_t largestResult_ = 0;  // of works without a reserve
  int running_ = 0;
};

// The planned works and measurements, and the files whose reads hang.
class PrefetchPlan {
 public:
  // most: the largest number of planned works, at least 1.
  explicit PrefetchPlan(int most);

  // Plans the first of upcoming. Works that both plans contain are kept as they are. Returns the works that are no
  // longer planned.
  PrefetchWorks Replace(const std::vector<FileWork>& upcoming);
  void ReplaceMeasures(std::vector<std::string> upcoming);
  // Empties the plan and returns its works.
  PrefetchWorks Clear();

  bool HasWork() const { return !works_.empty(); }
  std::size_t Count() const { return works_.size(); }
  PrefetchWorkPtr Find(const FileWork& work) const;
  void Remove(const PrefetchWorkPtr& work);
  // Returns the work to begin next; nothing if none waits or memory has no room. The first of the plan comes first,
  // then works whose source size is not known yet, then the work with the largest source.
  PrefetchWorkPtr Next(const PrefetchMemory& memory) const;
  // Returns whether the size of its source must be read before the work is done.
  bool SizeWanted(const PrefetchWorkPtr& work) const { return work != works_.front() && !work->sourceSize; }

  bool HasMeasures() const { return !measures_.empty(); }
  // Removes a measurement if it is near the front of the plan. The caller measures in the order of the plan.
  void RemoveMeasure(const std::string& path);
  // Removes and returns the first measurement. The plan must not be empty.
  std::string PopMeasure();

  // Records that a thread hangs in the file, and removes its works from the plan. Returns them.
  PrefetchWorks FallSilent(const std::string& path);
  // Records that a thread that hung in the file has returned.
  void Answer(const std::string& path) { silent_.erase(silent_.find(path)); }
  bool Silent(const std::string& path) const { return silent_.contains(path); }

 private:
  const std::size_t most_;
  PrefetchWorks works_;
  std::deque<std::string> measures_;
  std::multiset<std::string> silent_;  // once for each thread
};

// The worker threads. Everything but Join is guarded.
class PrefetchThreads {
 public:
  // 0: as many as there are cores.
  explicit PrefetchThreads(int count);

  // Starts missing threads, each with work. Returns false if there is not even one.
  bool Start(const std::function<void()>& work);
  // Detaches the thread of task, which hangs. It ends by itself when its read returns.
  void Abandon(PrefetchTask& task);

  // Called by each thread before it ends.
  void CountEnded() { ++ended_; }
  bool AllEnded() const { return ended_ == threads_.size(); }
  // Call after all have ended.
  void Join();

 private:
  const std::size_t count_;
  std::vector<std::thread> threads_;  // without abandoned ones
  std::size_t ended_ = 0;             // of them
};

}  // namespace quillon::imaging
