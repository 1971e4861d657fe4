// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetcher.h"

#include <utility>

#include "imaging/prefetch/prefetch_engine.h"

namespace quillon::imaging {

Prefetcher::Prefetcher(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds)
    : engine_(std::make_shared<Engine>(files, std::move(crop), std::move(measure), std::move(bounds))) {}

Prefetcher::~Prefetcher() { engine_->End(); }

void Prefetcher::PlanCrops(const std::vector<CropRequest>& upcoming) { engine_->PlanCrops(upcoming); }
void Prefetcher::PlanMeasures(std::vector<std::string> upcoming) { engine_->PlanMeasures(std::move(upcoming)); }

Status Prefetcher::PopCrop(const CropRequest& request, const std::function<void()>& pump,
                           std::optional<std::string>& bytes) {
  return engine_->PopCrop(request, pump, bytes);
}

Status Prefetcher::AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
  return engine_->AwaitMeasure(path, pump);
}

}  // namespace quillon::imaging
