// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/cut_prefetch.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "job/cut/cut_plan.h"

namespace quillon::job {
namespace {

constexpr std::size_t kWorksAhead = 23;  // with the row itself what the services plan at once
constexpr std::size_t kMeasuresAhead = 64;

}  // namespace

CutPrefetch::CutPrefetch(CutRun& run) : run_(run), foresees_(IsForeseeable(run, ReadCutSettings(run.program))) {}

CutPrefetch::~CutPrefetch() {
  run_.program.images.PlanWork({});
  run_.program.images.PlanMeasures({});
}

void CutPrefetch::Prefetch(std::size_t row) {
  if (!run_.program.recovering) PrefetchMeasures(row);
  if (foresees_) PrefetchWorks(row);
}

std::size_t CutPrefetch::Lookahead() const { return foresees_ ? kWorksAhead + 1 : 0; }

void CutPrefetch::Prefetch(const std::vector<std::string>& paths) {
  if (!foresees_ || paths.empty()) return;
  while (!next_.empty() && next_.front().path != paths.front()) next_.pop_front();
  for (std::size_t i = next_.size(); i < paths.size(); ++i) {
    imaging::ImageFacts facts;
    std::optional<imaging::FileWork> work;
    const bool measured = !run_.program.disks.Silent(paths[i]) && run_.program.images.ImageInfo(paths[i], facts);
    if (measured) work = Foresee(0, paths[i], {facts.width, facts.height});
    next_.push_back({0, paths[i], std::move(work)});
  }
  PlanWork();
}

void CutPrefetch::PrefetchWorks(std::size_t row) {
  const FileList& files = run_.program.files;
  while (!next_.empty() && next_.front().row < row) next_.pop_front();
  looked_ = std::max(looked_, row - 1);
  while (looked_ < files.RowCount() && looked_ < row + kWorksAhead) {
    const FileRow& listed = files.Row(looked_++);
    if (run_.program.disks.Silent(listed.Path())) continue;
    auto work = Foresee(looked_, listed.Path(), {listed.width, listed.height});
    if (work) next_.push_back({looked_, "", std::move(work)});
  }
  PlanWork();
}

std::optional<imaging::FileWork> CutPrefetch::Foresee(std::size_t row, const std::string& path, base::Size size) {
  std::optional<CutPlan> plan = ForeseeCut(CutFile(run_, row, path), size);
  if (!plan) return std::nullopt;
  return std::move(plan->work);
}

void CutPrefetch::PlanWork() {
  std::vector<imaging::FileWork> works;
  for (const Forecast& forecast : next_) {
    const bool planned = forecast.work && !run_.program.disks.Silent(forecast.work->Source());
    if (planned) works.push_back(*forecast.work);
  }
  run_.program.images.PlanWork(works);
}

// What a long list has pushed out of the services' memory is measured ahead again; the rest costs a look each.
void CutPrefetch::PrefetchMeasures(std::size_t row) {
  const FileList& files = run_.program.files;
  if (measured_ >= files.RowCount() || row + kMeasuresAhead / 2 <= measured_) return;
  std::vector<std::string> paths;
  for (std::size_t next = row; next <= files.RowCount() && paths.size() < kMeasuresAhead; ++next) {
    paths.push_back(files.Row(next - 1).Path());
  }
  measured_ = row + paths.size() - 1;
  std::erase_if(paths, [this](const std::string& path) { return run_.program.disks.Silent(path); });
  run_.program.images.PlanMeasures(std::move(paths));
}

}  // namespace quillon::job
