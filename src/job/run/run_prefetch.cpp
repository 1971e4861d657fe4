// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/run_prefetch.h"

#include <algorithm>
#include <utility>

#include "imaging/services.h"
#include "job/list/disk_monitor.h"
#include "job/list/file_list.h"

namespace quillon::job {
namespace {

constexpr std::size_t kWorksAfterRow = 23;  // with the row itself, as many works as PrefetchLimits::planned
constexpr std::size_t kPlannedMeasures = 64;

}  // namespace

RunPrefetch::RunPrefetch(const RunContext& context, Foresee foresee)
    : context_(context), foresee_(context.recovering ? Foresee() : std::move(foresee)) {}

void RunPrefetch::Clear() {
  next_.clear();
  context_.images.PlanWork({});
  context_.images.PlanMeasures({});
}

void RunPrefetch::Prefetch(std::size_t row) {
  if (!context_.recovering) PrefetchMeasures(row);
  if (foresee_) PrefetchWorks(row);
}

std::size_t RunPrefetch::Lookahead() const { return foresee_ ? kWorksAfterRow + 1 : 0; }

void RunPrefetch::Prefetch(const std::vector<std::string>& paths) {
  if (!foresee_ || paths.empty()) return;
  while (!next_.empty() && next_.front().path != paths.front()) next_.pop_front();
  for (std::size_t i = next_.size(); i < paths.size(); ++i) {
    imaging::ImageFacts facts;
    std::optional<imaging::FileWork> work;
    const bool measured = !context_.disks.Silent(paths[i]) && context_.images.ImageInfo(paths[i], facts);
    if (measured) work = foresee_(0, paths[i], {facts.width, facts.height});
    next_.push_back({0, paths[i], std::move(work)});
  }
  PlanWork();
}

void RunPrefetch::PrefetchWorks(std::size_t row) {
  const FileList& files = context_.files;
  while (!next_.empty() && next_.front().row < row) next_.pop_front();
  foreseen_ = std::max(foreseen_, row - 1);
  while (foreseen_ < files.RowCount() && foreseen_ < row + kWorksAfterRow) {
    const FileRow& listed = files.Row(foreseen_++);
    if (context_.disks.Silent(listed.Path())) continue;
    auto work = foresee_(foreseen_, listed.Path(), {listed.width, listed.height});
    if (work) next_.push_back({foreseen_, "", std::move(work)});
  }
  PlanWork();
}

void RunPrefetch::PlanWork() {
  std::vector<imaging::FileWork> works;
  for (const PlannedFile& file : next_) {
    const bool planned = file.work && !context_.disks.Silent(file.work->Source());
    if (planned) works.push_back(*file.work);
  }
  context_.images.PlanWork(works);
}

// The image services forget the sizes of the first files of a long list, so these are measured again. For all others
// this costs one stat each.
void RunPrefetch::PrefetchMeasures(std::size_t row) {
  const FileList& files = context_.files;
  if (measured_ >= files.RowCount() || row + kPlannedMeasures / 2 <= measured_) return;
  std::vector<std::string> paths;
  for (std::size_t next = row; next <= files.RowCount() && paths.size() < kPlannedMeasures; ++next) {
    paths.push_back(files.Row(next - 1).Path());
  }
  measured_ = row + paths.size() - 1;
  std::erase_if(paths, [this](const std::string& path) { return context_.disks.Silent(path); });
  context_.images.PlanMeasures(std::move(paths));
}

}  // namespace quillon::job
