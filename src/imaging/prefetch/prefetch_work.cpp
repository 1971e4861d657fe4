// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The threads' side of the work ahead.
#include <utility>

#include "host/files/file_stamp.h"
#include "imaging/prefetch/prefetch_engine.h"

namespace quillon::imaging {

// A thread that finds its task left behind has been replaced; here its disk has answered in the end.
void Prefetcher::Engine::Work() {
  Lock lock(mutex_);
  while (!ending_) {
    if (const PrefetchCropPtr crop = plan_.NextCrop(memory_)) {
      if (plan_.SizeWanted(crop)) {
        StatSize(lock, crop);
      } else {
        RunCrop(lock, crop);
      }
      if (crop->abandoned) return plan_.Answer(crop->request.source);
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

void Prefetcher::Engine::BeginCrop(const PrefetchCropPtr& crop) {
  Begin(*crop);
  crop->state = PrefetchCrop::State::Busy;
  busy_.push_back(crop);
}

void Prefetcher::Engine::EndCrop(const PrefetchCropPtr& crop, PrefetchCrop::State state) {
  crop->busy = false;
  crop->state = state;
  std::erase(busy_, crop);
  memory_.End(*crop);
  wake_.notify_all();
  finished_.notify_all();
}

void Prefetcher::Engine::StatSize(Lock& lock, const PrefetchCropPtr& crop) {
  BeginCrop(crop);
  lock.unlock();
  const std::optional<host::FileFacts> source = StatSource(*crop);
  lock.lock();
  if (crop->abandoned) return;
  crop->sourceSize = source ? source->size : 0;
  EndCrop(crop, PrefetchCrop::State::Waiting);
}

void Prefetcher::Engine::RunCrop(Lock& lock, const PrefetchCropPtr& crop) {
  using State = PrefetchCrop::State;
  BeginCrop(crop);
  memory_.Begin(*crop);
  lock.unlock();
  const bool done = Crop(*crop);
  lock.lock();
  if (crop->abandoned) return;
  const bool again = !done && memory_.MayFitLater(*crop);
  if (done) memory_.Expect(static_cast<std::int64_t>(crop->result.size()));
  if (!done || crop->dropped) ForgetResult(*crop);
  EndCrop(crop, done ? State::Done : again ? State::Waiting : State::Failed);
}

std::optional<host::FileFacts> Prefetcher::Engine::StatSource(PrefetchCrop& crop) const {
  ++crop.reads;
  const std::optional<host::FileFacts> facts = files_.Stat(crop.request.source);
  ++crop.reads;
  return facts;
}

// Outside the lock. True when the result is whole and of a file that stayed as it was.
bool Prefetcher::Engine::Crop(PrefetchCrop& crop) {
  crop.before = StatSource(crop);
  if (!crop.before) return false;
  const Job job{crop.request, crop.stop.get_token(),
                [&](const void* data, std::size_t size) { return Append(crop, data, size); },
                [&](std::int64_t bytes) { return Admit(crop, bytes); }, crop.reads};
  try {
    if (!crop_(job) || crop.stop.stop_requested()) return false;
  } catch (...) {
    return false;
  }
  const std::optional<host::FileFacts> after = StatSource(crop);
  return after && Unchanged(*crop.before, *after);
}

Status Prefetcher::Engine::Append(PrefetchCrop& crop, const void* data, std::size_t size) {
  {
    const std::lock_guard lock(mutex_);
    if (crop.dropped || !memory_.Grow(crop, static_cast<std::int64_t>(size))) {
      return {host::Problem::Stopped, "已停止"};
    }
  }
  crop.result.append(static_cast<const char*>(data), size);
  return Status::Ok();
}

bool Prefetcher::Engine::Admit(PrefetchCrop& crop, std::int64_t bytes) {
  const std::lock_guard lock(mutex_);
  return !crop.dropped && memory_.Admit(crop, bytes);
}

// All of a measurement counts as one read: it takes long for no other reason.
PrefetchMeasurePtr Prefetcher::Engine::RunMeasure(Lock& lock) {
  const auto measuring = std::make_shared<PrefetchMeasure>();
  measuring->path = plan_.PopMeasure();
  measuring->reads = 1;
  Begin(*measuring);
  measuring_ = measuring;
  lock.unlock();
  try {
    measure_(measuring->path);
  } catch (...) {
    // The caller measures again and sees for itself.
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

}  // namespace quillon::imaging
