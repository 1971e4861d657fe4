// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The threads' side of the work ahead.
#include <utility>

#include "imaging/ahead_engine.h"
#include "imaging/unchanged.h"

namespace quillon::imaging {

// A thread that finds its task left behind has been replaced; here its disk has answered in the end.
void Ahead::Engine::Work() {
  Lock lock(mutex_);
  while (!ending_) {
    if (const AheadCropPtr crop = plan_.NextCrop(memory_)) {
      if (plan_.SizeWanted(crop)) {
        LookAtSize(lock, crop);
      } else {
        RunCrop(lock, crop);
      }
      if (crop->leftBehind) return plan_.Answer(crop->request.source);
    } else if (plan_.HasMeasures() && !measuring_) {
      const AheadMeasurePtr measuring = RunMeasure(lock);
      if (measuring->leftBehind) return plan_.Answer(measuring->path);
    } else {
      wake_.wait(lock);
    }
  }
  threads_.CountEnded();
  finished_.notify_all();
}

void Ahead::Engine::Begin(AheadTask& task) {
  task.busy = true;
  task.thread = std::this_thread::get_id();
}

void Ahead::Engine::BeginCrop(const AheadCropPtr& crop) {
  Begin(*crop);
  crop->state = AheadCrop::State::Busy;
  busy_.push_back(crop);
}

void Ahead::Engine::EndCrop(const AheadCropPtr& crop, AheadCrop::State state) {
  crop->busy = false;
  crop->state = state;
  std::erase(busy_, crop);
  memory_.End(*crop);
  wake_.notify_all();
  finished_.notify_all();
}

void Ahead::Engine::LookAtSize(Lock& lock, const AheadCropPtr& crop) {
  BeginCrop(crop);
  lock.unlock();
  const std::optional<host::FileFacts> source = LookAtSource(*crop);
  lock.lock();
  if (crop->leftBehind) return;
  crop->sourceSize = source ? source->size : 0;
  EndCrop(crop, AheadCrop::State::Waiting);
}

void Ahead::Engine::RunCrop(Lock& lock, const AheadCropPtr& crop) {
  using State = AheadCrop::State;
  BeginCrop(crop);
  memory_.Begin(*crop);
  lock.unlock();
  const bool done = Crop(*crop);
  lock.lock();
  if (crop->leftBehind) return;
  const bool again = !done && memory_.MayFitLater(*crop);
  if (done) memory_.Expect(static_cast<std::int64_t>(crop->result.size()));
  if (!done || crop->dropped) ForgetResult(*crop);
  EndCrop(crop, done ? State::Done : again ? State::Waiting : State::Failed);
}

std::optional<host::FileFacts> Ahead::Engine::LookAtSource(AheadCrop& crop) const {
  ++crop.reads;
  const std::optional<host::FileFacts> facts = files_.Look(crop.request.source);
  ++crop.reads;
  return facts;
}

// Outside the lock. True when the result is whole and of a file that stayed as it was.
bool Ahead::Engine::Crop(AheadCrop& crop) {
  crop.before = LookAtSource(crop);
  if (!crop.before) return false;
  const Job job{crop.request, crop.stop.get_token(),
                [&](const void* data, std::size_t size) { return Append(crop, data, size); },
                [&](std::int64_t bytes) { return Admit(crop, bytes); }, crop.reads};
  try {
    if (!crop_(job) || crop.stop.stop_requested()) return false;
  } catch (...) {
    return false;
  }
  const std::optional<host::FileFacts> after = LookAtSource(crop);
  return after && Unchanged(*crop.before, *after);
}

Status Ahead::Engine::Append(AheadCrop& crop, const void* data, std::size_t size) {
  {
    const std::lock_guard lock(mutex_);
    if (crop.dropped || !memory_.Grow(crop, static_cast<std::int64_t>(size))) {
      return {host::Problem::Stopped, "已停止"};
    }
  }
  crop.result.append(static_cast<const char*>(data), size);
  return Status::Ok();
}

bool Ahead::Engine::Admit(AheadCrop& crop, std::int64_t bytes) {
  const std::lock_guard lock(mutex_);
  return !crop.dropped && memory_.Admit(crop, bytes);
}

// All of a measurement counts as one read: it takes long for no other reason.
AheadMeasurePtr Ahead::Engine::RunMeasure(Lock& lock) {
  const auto measuring = std::make_shared<AheadMeasure>();
  measuring->path = plan_.TakeMeasure();
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
  if (!measuring->leftBehind) EndMeasure();
  return measuring;
}

void Ahead::Engine::EndMeasure() {
  measuring_->busy = false;
  measuring_.reset();
  finished_.notify_all();
}

}  // namespace quillon::imaging
