// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// How the prefetcher works. The caller handles files in order and plans the work of the next files before each of them;
// the engine keeps the works that the old and the new plan have in common. Its threads, one for each core, choose the
// next work for which memory has room, write its outputs into drafts in memory and mark it Done. The caller pops the
// work of the file that it has reached. If the work is not done yet, the caller waits and gives its pump turns; if the
// work failed, the caller does it itself. One mutex guards all state and is released while a thread works or waits.
//
// A result depends on nothing but the work and its source. So a result may be used if the popped work equals the
// planned one and a stat of the source gives the same facts before the work, after the work and when it is popped.
//
// A disk may stop answering in the middle of a read, and no call can end such a read. So reads are counted (see
// host::DiskCalls). A waiting caller notices a read that stays in flight too long, abandons its thread and starts
// another one. The abandoned thread owns everything that it may still use. It ends by itself if its read returns.
#include "imaging/prefetch/prefetcher.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "host/disk_thread.h"
#include "host/files/file_stamp.h"
#include "imaging/prefetch/prefetch_parts.h"

namespace quillon::imaging {
namespace {

using host::Problem;

constexpr auto kPumpInterval = std::chrono::milliseconds(4);
// After a stop or at the end, a read that is silent for so many seconds is abandoned.
constexpr double kLastSecond = 1;

Status DiskSilent() { return {Problem::Stopped, host::kDiskUnresponsive}; }

PrefetchLimits WithClock(PrefetchLimits limits) {
  if (!limits.seconds) limits.seconds = host::SystemSeconds;
  return limits;
}

}  // namespace

// Joins plan, threads and memory under one mutex. Its threads own it too, because an abandoned thread may return after
// the Prefetcher is gone.
class Prefetcher::Engine : public std::enable_shared_from_this<Engine> {
 public:
  Engine(host::Files& files, Worker worker, Measurement measurement, PrefetchLimits limits)
      : files_(files),
        worker_(std::move(worker)),
        measurement_(std::move(measurement)),
        limits_(WithClock(std::move(limits))),
        plan_(limits_.planned),
        memory_(limits_.results, limits_.working),
        threads_(limits_.threads) {}

  // The operations of Prefetcher; End is its destructor.
  void PlanWork(const std::vector<FileWork>& upcoming);
  void PlanMeasures(std::vector<std::string> upcoming);
  Status Pop(const FileWork& work, const std::function<void()>& pump, std::optional<std::vector<std::string>>& outputs);
  Status AwaitMeasure(const std::string& path, const std::function<void()>& pump);
  void End();

 private:
  using Lock = std::unique_lock<std::mutex>;
  using State = PrefetchWork::State;

  // --- Called by the caller's thread, with the lock held. WaitUntil releases it meanwhile.
  void StartThreads();
  template <class Condition>
  Status WaitUntil(Lock& lock, const std::function<void()>& pump, PrefetchTask& task, Condition condition);
  bool NoLongerComes(const PrefetchWork& work) const;
  template <class Act>
  void ForEachTask(Act act);
  void Abandon(double now, double silence);

  // --- Called by all threads, with the lock held.
  void DropAll(const PrefetchWorks& works);
  void Drop(PrefetchWork& work);
  void ForgetResults(PrefetchWork& work);
  void EndWork(const PrefetchWorkPtr& work, State state);
  void EndMeasure();

  // --- Called by the worker threads. Functions with a lock parameter release it while they work.
  void Run();
  void StatSize(Lock& lock, const PrefetchWorkPtr& work);
  void RunWork(Lock& lock, const PrefetchWorkPtr& work);
  PrefetchMeasurePtr RunMeasure(Lock& lock);
  void BeginWork(const PrefetchWorkPtr& work);
  static void Begin(PrefetchTask& task);
  std::optional<host::FileFacts> StatSource(PrefetchWork& work) const;
  bool Do(PrefetchWork& work);
  host::Draft& AddDraft(PrefetchWork& work);
  Status Grow(PrefetchWork& work, std::int64_t bytes);
  bool Admit(PrefetchWork& work, std::int64_t working, std::int64_t results);

  host::Files& files_;
  const Worker worker_;
  const Measurement measurement_;
  const PrefetchLimits limits_;

  std::mutex mutex_;
  std::condition_variable wake_;      // work may be waiting
  std::condition_variable finished_;  // a task is done or dropped
  bool ending_ = false;
  PrefetchPlan plan_;
  PrefetchMemory memory_;
  PrefetchThreads threads_;
  PrefetchWorks busy_;            // in progress, even if no longer planned
  PrefetchMeasurePtr measuring_;  // one at a time, because MediaInfo measures one file at a time
};

// --- The caller's thread: plans, waits and the watchdog for reads.

void Prefetcher::Engine::End() {
  {
    Lock lock(mutex_);
    ending_ = true;
    DropAll(plan_.Clear());
    wake_.notify_all();
    // The clock of the waits may be another one, so that silences are measured anew.
    ForEachTask([](PrefetchTask& task) { task.calls.Reset(); });
    while (!finished_.wait_for(lock, kPumpInterval, [&] { return threads_.AllEnded(); })) {
      Abandon(host::SystemSeconds(), kLastSecond);
    }
  }
  threads_.Join();
}

void Prefetcher::Engine::PlanWork(const std::vector<FileWork>& upcoming) {
  {
    const std::lock_guard lock(mutex_);
    DropAll(plan_.Replace(upcoming));
    if (plan_.HasWork()) StartThreads();
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

Status Prefetcher::Engine::Pop(const FileWork& wanted, const std::function<void()>& pump,
                               std::optional<std::vector<std::string>>& outputs) {
  outputs.reset();
  Lock lock(mutex_);
  if (plan_.Silent(wanted.Source())) return DiskSilent();
  const PrefetchWorkPtr work = plan_.Find(wanted);
  if (!work) return Status::Ok();
  work->awaited = true;
  wake_.notify_all();
  const Status waited =
      WaitUntil(lock, pump, *work, [&] { return work->state == State::Done || NoLongerComes(*work); });
  if (!waited) Drop(*work);
  plan_.Remove(work);
  if (work->dropped || work->state != State::Done) return waited;
  memory_.ForgetResults(*work);
  lock.unlock();
  wake_.notify_all();
  const std::optional<host::FileFacts> now = files_.Stat(wanted.Source());
  if (!now || !work->before || !Unchanged(*now, *work->before)) return Status::Ok();
  outputs.emplace();
  for (const std::unique_ptr<MemoryDraft>& draft : work->drafts) outputs->push_back(draft->Release());
  return Status::Ok();
}

// Returns whether waiting for the work is useless: results that are popped after it may hold the memory that it needs.
bool Prefetcher::Engine::NoLongerComes(const PrefetchWork& work) const {
  return work.dropped || work.state == State::Failed || (work.state == State::Waiting && memory_.WaitsForPop(work));
}

Status Prefetcher::Engine::AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
  Lock lock(mutex_);
  if (plan_.Silent(path)) return DiskSilent();
  plan_.RemoveMeasure(path);
  const PrefetchMeasurePtr measuring = measuring_;
  if (!measuring || measuring->path != path) return Status::Ok();
  return WaitUntil(lock, pump, *measuring, [&] { return !measuring->busy; });
}

// Called with each plan, so that a program that never plans has no threads. If no thread can be started, the plan is
// dropped.
void Prefetcher::Engine::StartThreads() {
  if (!threads_.Start([self = shared_from_this()] { self->Run(); })) DropAll(plan_.Clear());
}

// Returns Stopped if the wait for task was given up before the condition was true.
template <class Condition>
Status Prefetcher::Engine::WaitUntil(Lock& lock, const std::function<void()>& pump, PrefetchTask& task,
                                     Condition condition) {
  const double began = limits_.seconds();
  while (!task.abandoned && !finished_.wait_for(lock, kPumpInterval, condition)) {
    lock.unlock();
    if (pump) pump();
    const bool stopped = limits_.stopped && limits_.stopped();
    lock.lock();
    const double now = limits_.seconds();
    Abandon(now, host::kDiskTimeoutSeconds);
    if (task.abandoned) break;
    // A task that was not begun may wait for others that hang.
    const double still = task.busy ? task.calls.SilentFor(now).value_or(0) : now - began;
    if (stopped && still >= kLastSecond && !condition()) return {Problem::Stopped, "已停止"};
  }
  return task.abandoned ? DiskSilent() : Status::Ok();
}

template <class Act>
void Prefetcher::Engine::ForEachTask(Act act) {
  for (const PrefetchWorkPtr& work : busy_) act(*work);
  if (measuring_) act(*measuring_);
}

// Abandons threads whose read is silent for that many seconds, and replaces them.
void Prefetcher::Engine::Abandon(double now, double silence) {
  bool any = false;
  ForEachTask([&](PrefetchTask& task) {
    if (task.calls.SilentFor(now).value_or(0) < silence) return;
    threads_.Abandon(task);
    any = true;
  });
  if (!any) return;
  for (const PrefetchWorkPtr& work : PrefetchWorks(busy_)) {
    if (!work->abandoned) continue;
    Drop(*work);
    EndWork(work, State::Failed);
    memory_.ForgetResults(*work);
    DropAll(plan_.FallSilent(work->work.Source()));
  }
  if (measuring_ && measuring_->abandoned) {
    DropAll(plan_.FallSilent(measuring_->path));
    EndMeasure();
  }
  if (!ending_) StartThreads();
}

void Prefetcher::Engine::DropAll(const PrefetchWorks& works) {
  for (const PrefetchWorkPtr& work : works) Drop(*work);
}

void Prefetcher::Engine::Drop(PrefetchWork& work) {
  work.dropped = true;
  work.stop.request_stop();
  if (work.state == State::Done) ForgetResults(work);
}

void Prefetcher::Engine::ForgetResults(PrefetchWork& work) {
  memory_.ForgetResults(work);
  work.drafts.clear();
}

// --- The worker threads.

// A thread whose task was abandoned has been replaced and ends. Its read has returned, so its disk answers again.
void Prefetcher::Engine::Run() {
  Lock lock(mutex_);
  while (!ending_) {
    if (const PrefetchWorkPtr work = plan_.Next(memory_)) {
      if (plan_.SizeWanted(work)) {
        StatSize(lock, work);
      } else {
        RunWork(lock, work);
      }
      if (work->abandoned) return plan_.Answer(work->work.Source());
    } else if (plan_.HasMeasures() && !measuring_) {
      const PrefetchMeasurePtr measuring = RunMeasure(lock);
      if (measuring->abandoned) return plan_.Answer(measuring->path);
    } else {
      wake_.wait(lock);
    }
  }
  threads_.CountEnded();
  finished_.notify_all();
}

void Prefetcher::Engine::Begin(PrefetchTask& task) {
  task.busy = true;
  task.thread = std::this_thread::get_id();
}

void Prefetcher::Engine::BeginWork(const PrefetchWorkPtr& work) {
  Begin(*work);
  work->state = State::Busy;
  busy_.push_back(work);
}

void Prefetcher::Engine::EndWork(const PrefetchWorkPtr& work, State state) {
  work->busy = false;
  work->state = state;
  std::erase(busy_, work);
  memory_.End(*work);
  wake_.notify_all();
  finished_.notify_all();
}

void Prefetcher::Engine::StatSize(Lock& lock, const PrefetchWorkPtr& work) {
  BeginWork(work);
  lock.unlock();
  const std::optional<host::FileFacts> source = StatSource(*work);
  lock.lock();
  if (work->abandoned) return;
  work->sourceSize = source ? source->size : 0;
  EndWork(work, State::Waiting);
}

void Prefetcher::Engine::RunWork(Lock& lock, const PrefetchWorkPtr& work) {
  BeginWork(work);
  work->alone = plan_.Count() == 1;
  memory_.Begin(*work);
  lock.unlock();
  const bool done = Do(*work);
  lock.lock();
  if (work->abandoned) return;
  const bool again = !done && memory_.MayFitLater(*work);
  if (done) memory_.Expect(*work);
  if (!done || work->dropped) ForgetResults(*work);
  EndWork(work, done ? State::Done : again ? State::Waiting : State::Failed);
}

std::optional<host::FileFacts> Prefetcher::Engine::StatSource(PrefetchWork& work) const {
  const host::DiskCalls::Scope scope(&work.calls);
  return files_.Stat(work.work.Source());
}

// Called without the lock. Returns true if the results are complete and the source has not changed.
bool Prefetcher::Engine::Do(PrefetchWork& work) {
  work.before = StatSource(work);
  if (!work.before || work.before->kind != host::FileKind::File || work.stop.stop_requested()) return false;
  const Job job{work.work,
                work.stop.get_token(),
                [&]() -> host::Draft& { return AddDraft(work); },
                [&](std::int64_t working, std::int64_t results) { return Admit(work, working, results); },
                work.calls,
                work.alone};
  try {
    if (!worker_(job) || work.stop.stop_requested()) return false;
  } catch (...) {
    return false;
  }
  const std::optional<host::FileFacts> after = StatSource(work);
  return after && Unchanged(*work.before, *after);
}

host::Draft& Prefetcher::Engine::AddDraft(PrefetchWork& work) {
  work.drafts.push_back(std::make_unique<MemoryDraft>([this, &work](std::int64_t bytes) { return Grow(work, bytes); }));
  return *work.drafts.back();
}

Status Prefetcher::Engine::Grow(PrefetchWork& work, std::int64_t bytes) {
  const std::lock_guard lock(mutex_);
  const bool grows = !work.dropped && memory_.Grow(work, bytes);
  return grows ? Status::Ok() : Status(Problem::Stopped, "已停止");
}

bool Prefetcher::Engine::Admit(PrefetchWork& work, std::int64_t working, std::int64_t results) {
  const std::lock_guard lock(mutex_);
  return !work.dropped && memory_.Admit(work, working, results);
}

// A whole measurement counts as one read, because only a disk can make it last that long.
PrefetchMeasurePtr Prefetcher::Engine::RunMeasure(Lock& lock) {
  const auto measuring = std::make_shared<PrefetchMeasure>();
  measuring->path = plan_.PopMeasure();
  measuring->calls.Begin();
  Begin(*measuring);
  measuring_ = measuring;
  lock.unlock();
  try {
    measurement_(measuring->path);
  } catch (...) {
    // The caller measures again and reports the failure.
  }
  lock.lock();
  if (!measuring->abandoned) EndMeasure();
  return measuring;
}

void Prefetcher::Engine::EndMeasure() {
  measuring_->busy = false;
  measuring_.reset();
  finished_.notify_all();
}

// --- The face.

Prefetcher::Prefetcher(host::Files& files, Worker worker, Measurement measurement, PrefetchLimits limits)
    : engine_(std::make_shared<Engine>(files, std::move(worker), std::move(measurement), std::move(limits))) {}

Prefetcher::~Prefetcher() { engine_->End(); }

void Prefetcher::PlanWork(const std::vector<FileWork>& upcoming) { engine_->PlanWork(upcoming); }
void Prefetcher::PlanMeasures(std::vector<std::string> upcoming) { engine_->PlanMeasures(std::move(upcoming)); }

Status Prefetcher::Pop(const FileWork& work, const std::function<void()>& pump,
                       std::optional<std::vector<std::string>>& outputs) {
  return engine_->Pop(work, pump, outputs);
}

Status Prefetcher::AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
  return engine_->AwaitMeasure(path, pump);
}

}  // namespace quillon::imaging
