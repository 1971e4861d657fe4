// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetch_parts.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

namespace quillon::imaging {
namespace {

constexpr std::size_t kSearchedMeasures = 64;  // at the front of the plan

}  // namespace

// --- Memory

bool PrefetchMemory::HasRoom(const PrefetchWork& work) const {
  if (work.needs > workingBound_ - working_) return false;
  if (work.awaited || (running_ == 0 && results_ == 0)) return true;
  return results_ + (running_ + 1) * largestResult_ <= resultsBound_;
}

void PrefetchMemory::Begin(PrefetchWork& work) {
  work.running = true;
  ++running_;
}

bool PrefetchMemory::Admit(PrefetchWork& work, std::int64_t working, std::int64_t results) {
  const std::int64_t bytes = working + results;
  work.needs = bytes;
  if (bytes > workingBound_ - working_) return false;
  work.needs = 0;
  work.admitted += bytes;
  work.reserved += results;
  working_ += bytes;
  return true;
}

bool PrefetchMemory::Grow(PrefetchWork& work, std::int64_t bytes) {
  const std::int64_t grown = work.held + bytes;
  const std::int64_t beyond = std::max<std::int64_t>(grown - work.reserved, 0) - work.counted;
  if (beyond > resultsBound_ - results_) return false;
  work.held = grown;
  work.counted += beyond;
  results_ += beyond;
  return true;
}

void PrefetchMemory::End(PrefetchWork& work) {
  if (!std::exchange(work.running, false)) return;
  --running_;
  std::int64_t kept = work.held - work.counted;
  if (kept <= resultsBound_ - results_) {
    results_ += kept;
    work.counted += std::exchange(kept, 0);
  }
  working_ -= work.admitted - kept;
  work.admitted = kept;
  work.reserved = kept;
}

void PrefetchMemory::ForgetResults(PrefetchWork& work) {
  results_ -= std::exchange(work.counted, 0);
  work.held = 0;
  if (!work.running) working_ -= std::exchange(work.admitted, 0);
}

// The expectation decays, so that one very large result does not hold up the others for long.
void PrefetchMemory::Expect(const PrefetchWork& work) {
  largestResult_ = std::max(largestResult_ * 7 / 8, work.counted);
}

// --- Plan

PrefetchPlan::PrefetchPlan(int most) : most_(static_cast<std::size_t>(std::max(most, 1))) {}

PrefetchWorks PrefetchPlan::Replace(const std::vector<FileWork>& upcoming) {
  PrefetchWorks plan;
  for (std::size_t i = 0; i < std::min(upcoming.size(), most_); ++i) {
    if (upcoming[i].Empty() || Silent(upcoming[i].Source())) continue;
    PrefetchWorkPtr work = Find(upcoming[i]);
    if (work) {
      Remove(work);
    } else {
      work = std::make_shared<PrefetchWork>();
      work->work = upcoming[i];
    }
    plan.push_back(std::move(work));
  }
  works_.swap(plan);
  return plan;
}

void PrefetchPlan::ReplaceMeasures(std::vector<std::string> upcoming) {
  measures_.assign(std::make_move_iterator(upcoming.begin()), std::make_move_iterator(upcoming.end()));
  std::erase_if(measures_, [this](const std::string& path) { return Silent(path); });
}

PrefetchWorks PrefetchPlan::Clear() {
  measures_.clear();
  return std::exchange(works_, {});
}

PrefetchWorkPtr PrefetchPlan::Find(const FileWork& work) const {
  const auto found =
      std::find_if(works_.begin(), works_.end(), [&](const PrefetchWorkPtr& each) { return each->work == work; });
  return found == works_.end() ? nullptr : *found;
}

void PrefetchPlan::Remove(const PrefetchWorkPtr& work) { std::erase(works_, work); }

PrefetchWorkPtr PrefetchPlan::Next(const PrefetchMemory& memory) const {
  PrefetchWorkPtr next;
  for (const PrefetchWorkPtr& work : works_) {
    if (work->state != PrefetchWork::State::Waiting) continue;
    if (SizeWanted(work)) return work;
    if (!memory.HasRoom(*work)) continue;
    if (work == works_.front()) return work;
    if (!next || work->sourceSize > next->sourceSize) next = work;
  }
  return next;
}

void PrefetchPlan::RemoveMeasure(const std::string& path) {
  const auto end = measures_.begin() + static_cast<std::ptrdiff_t>(std::min(measures_.size(), kSearchedMeasures));
  const auto found = std::find(measures_.begin(), end, path);
  if (found != end) measures_.erase(found);
}

std::string PrefetchPlan::PopMeasure() {
  std::string path = std::move(measures_.front());
  measures_.pop_front();
  return path;
}

PrefetchWorks PrefetchPlan::FallSilent(const std::string& path) {
  silent_.insert(path);
  std::erase(measures_, path);
  const auto hangs = std::stable_partition(works_.begin(), works_.end(),
                                           [&](const PrefetchWorkPtr& work) { return work->work.Source() != path; });
  PrefetchWorks out(hangs, works_.end());
  works_.erase(hangs, works_.end());
  return out;
}

// --- Threads

PrefetchThreads::PrefetchThreads(int count)
    : count_(count > 0 ? count : std::max(1U, std::thread::hardware_concurrency())) {}

bool PrefetchThreads::Start(const std::function<void()>& work) {
  try {
    while (threads_.size() < count_) threads_.emplace_back(work);
  } catch (const std::system_error&) {
    return !threads_.empty();
  }
  return true;
}

void PrefetchThreads::Abandon(PrefetchTask& task) {
  const auto thread = std::find_if(threads_.begin(), threads_.end(),
                                   [&](const std::thread& each) { return each.get_id() == task.thread; });
  thread->detach();
  threads_.erase(thread);
  task.abandoned = true;
}

void PrefetchThreads::Join() {
  for (std::thread& thread : threads_) thread.join();
}

}  // namespace quillon::imaging
