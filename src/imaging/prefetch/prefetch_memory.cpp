// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetch_memory.h"

#include <algorithm>
#include <utility>

namespace quillon::imaging {

bool PrefetchMemory::HasRoom(const PrefetchCrop& crop) const {
  if (crop.needs > workingBound_ - working_) return false;
  if (crop.awaited || (running_ == 0 && results_ == 0)) return true;
  return results_ + (running_ + 1) * largestResult_ <= resultsBound_;
}

void PrefetchMemory::Begin(PrefetchCrop& crop) {
  crop.running = true;
  ++running_;
}

bool PrefetchMemory::Admit(PrefetchCrop& crop, std::int64_t bytes) {
  crop.needs = bytes;
  if (bytes > workingBound_ - working_) return false;
  crop.needs = 0;
  crop.admitted = bytes;
  working_ += bytes;
  return true;
}

bool PrefetchMemory::Grow(PrefetchCrop& crop, std::int64_t bytes) {
  if (bytes > resultsBound_ - results_) return false;
  crop.held += bytes;
  results_ += bytes;
  return true;
}

void PrefetchMemory::End(PrefetchCrop& crop) {
  if (std::exchange(crop.running, false)) --running_;
  working_ -= std::exchange(crop.admitted, 0);
}

void PrefetchMemory::ForgetResult(PrefetchCrop& crop) { results_ -= std::exchange(crop.held, 0); }

// One giant among small ones is forgotten after a while.
void PrefetchMemory::Expect(std::int64_t resultBytes) {
  largestResult_ = std::max(largestResult_ * 7 / 8, resultBytes);
}

}  // namespace quillon::imaging
