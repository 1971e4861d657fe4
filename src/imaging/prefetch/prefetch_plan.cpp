// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetch_plan.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillon::imaging {
namespace {

constexpr std::size_t kSearchedMeasures = 64;  // at the front of the plan

}  // namespace

PrefetchPlan::PrefetchPlan(int most) : most_(static_cast<std::size_t>(std::max(most, 1))) {}

PrefetchCrops PrefetchPlan::ReplaceCrops(const std::vector<CropRequest>& upcoming) {
  PrefetchCrops plan;
  for (std::size_t i = 0; i < std::min(upcoming.size(), most_); ++i) {
    if (Silent(upcoming[i].source)) continue;
    PrefetchCropPtr crop = Find(upcoming[i]);
    if (crop) {
      Remove(crop);
    } else {
      crop = std::make_shared<PrefetchCrop>();
      crop->request = upcoming[i];
    }
    plan.push_back(std::move(crop));
  }
  crops_.swap(plan);
  return plan;
}

void PrefetchPlan::ReplaceMeasures(std::vector<std::string> upcoming) {
  measures_.assign(std::make_move_iterator(upcoming.begin()), std::make_move_iterator(upcoming.end()));
  std::erase_if(measures_, [this](const std::string& path) { return Silent(path); });
}

PrefetchCrops PrefetchPlan::Clear() {
  measures_.clear();
  return std::exchange(crops_, {});
}

PrefetchCropPtr PrefetchPlan::Find(const CropRequest& request) const {
  const auto found =
      std::find_if(crops_.begin(), crops_.end(), [&](const PrefetchCropPtr& crop) { return crop->request == request; });
  return found == crops_.end() ? nullptr : *found;
}

void PrefetchPlan::Remove(const PrefetchCropPtr& crop) { std::erase(crops_, crop); }

PrefetchCropPtr PrefetchPlan::NextCrop(const PrefetchMemory& memory) const {
  PrefetchCropPtr next;
  for (const PrefetchCropPtr& crop : crops_) {
    if (crop->state != PrefetchCrop::State::Waiting) continue;
    if (SizeWanted(crop)) return crop;
    if (!memory.HasRoom(*crop)) continue;
    if (crop == crops_.front()) return crop;
    if (!next || crop->sourceSize > next->sourceSize) next = crop;
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

PrefetchCrops PrefetchPlan::FallSilent(const std::string& path) {
  silent_.insert(path);
  std::erase(measures_, path);
  const auto hangs = std::stable_partition(crops_.begin(), crops_.end(),
                                           [&](const PrefetchCropPtr& crop) { return crop->request.source != path; });
  PrefetchCrops out(hangs, crops_.end());
  crops_.erase(hangs, crops_.end());
  return out;
}

}  // namespace quillon::imaging
