// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "imaging/prefetch/prefetch_tasks.h"

namespace quillon::imaging {

// Counts what the crops ahead hold and says what they may take. Bytes; guarded by the engine's mutex.
class PrefetchMemory {
 public:
  // results: of all finished and growing results. working: of all running crops.
  PrefetchMemory(std::int64_t results, std::int64_t working) : resultsBound_(results), workingBound_(working) {}

  // Whether a crop may be begun: room for its working memory, as far as that is known, and for a result as large as
  // the largest so far. One that is awaited, or alone, needs no room for its result.
  bool HasRoom(const PrefetchCrop& crop) const;

  void Begin(PrefetchCrop& crop);
  // Working memory for a running crop, all at once; where it is refused, what it needs is remembered.
  bool Admit(PrefetchCrop& crop, std::int64_t bytes);
  // Room for so many bytes more of its result.
  bool Grow(PrefetchCrop& crop, std::int64_t bytes);
  // Takes the working memory back. The result stays counted until it is forgotten.
  void End(PrefetchCrop& crop);
  void ForgetResult(PrefetchCrop& crop);

  // Of the results that are still to come, by one that is finished.
  void Expect(std::int64_t resultBytes);
  // Whether a crop that was refused its working memory will have it when others have ended.
  bool MayFitLater(const PrefetchCrop& crop) const { return crop.needs > 0 && crop.needs <= workingBound_; }

  std::int64_t Results() const { return results_; }
  std::int64_t Working() const { return working_; }

 private:
  const std::int64_t resultsBound_;
  const std::int64_t workingBound_;
  std::int64_t results_ = 0;
  std::int64_t working_ = 0;
  std::int64_t largestResult_ = 0;
  int running_ = 0;
};

}  // namespace quillon::imaging
