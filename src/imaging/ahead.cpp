// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/ahead.h"

#include <utility>

#include "imaging/ahead_engine.h"

namespace quillon::imaging {

Ahead::Ahead(host::Files& files, CropWork crop, MeasureWork measure, Bounds bounds)
    : engine_(std::make_shared<Engine>(files, std::move(crop), std::move(measure), std::move(bounds))) {}

Ahead::~Ahead() { engine_->End(); }

void Ahead::PlanCrops(const std::vector<CropRequest>& upcoming) { engine_->PlanCrops(upcoming); }
void Ahead::PlanMeasures(std::vector<std::string> upcoming) { engine_->PlanMeasures(std::move(upcoming)); }

Status Ahead::TakeCrop(const CropRequest& request, const std::function<void()>& pump,
                       std::optional<std::string>& bytes) {
  return engine_->TakeCrop(request, pump, bytes);
}

Status Ahead::AwaitMeasure(const std::string& path, const std::function<void()>& pump) {
  return engine_->AwaitMeasure(path, pump);
}

}  // namespace quillon::imaging
