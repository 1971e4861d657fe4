// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <vector>

#include "imaging/prefetch/prefetch_memory.h"
#include "imaging/prefetch/prefetch_tasks.h"

namespace quillon::imaging {

// What is to be done ahead, and which files hang and are left alone. Guarded by the engine's mutex.
class PrefetchPlan {
 public:
  // most: crops planned at once, at least 1.
  explicit PrefetchPlan(int most);

  // The first of upcoming become the plan; what stands in both plans stays as it is. Gives what is no longer planned.
  PrefetchCrops ReplaceCrops(const std::vector<CropRequest>& upcoming);
  void ReplaceMeasures(std::vector<std::string> upcoming);
  // Empties the plan and gives its crops.
  PrefetchCrops Clear();

  bool HasCrops() const { return !crops_.empty(); }
  PrefetchCropPtr Find(const CropRequest& request) const;
  void Remove(const PrefetchCropPtr& crop);
  // The crop that is to be begun next; nothing where none waits or memory has no room. The first of the plan comes
  // before all others; then each whose size is still to be looked at; then the one with the largest source.
  PrefetchCropPtr NextCrop(const PrefetchMemory& memory) const;
  // Whether its size is to be looked at before anything else is done.
  bool SizeWanted(const PrefetchCropPtr& crop) const { return crop != crops_.front() && !crop->sourceSize; }

  bool HasMeasures() const { return !measures_.empty(); }
  // Where it stands near the front of the plan, which is where the caller is.
  void RemoveMeasure(const std::string& path);
  // The first one, which leaves the plan. There has to be one.
  std::string PopMeasure();

  // A thread hangs in the file: it is planned no more. Gives the crops of it that were.
  PrefetchCrops FallSilent(const std::string& path);
  // One of the threads that hung in it has come back.
  void Answer(const std::string& path) { silent_.erase(silent_.find(path)); }
  bool Silent(const std::string& path) const { return silent_.contains(path); }

 private:
  const std::size_t most_;
  PrefetchCrops crops_;
  std::deque<std::string> measures_;
  std::multiset<std::string> silent_;  // once for each thread
};

}  // namespace quillon::imaging
