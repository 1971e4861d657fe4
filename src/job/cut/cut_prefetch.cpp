// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/cut_prefetch.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "job/cut/cut_steps.h"
#include "job/cut/output_name.h"

namespace quillon::job {
namespace {

constexpr std::size_t kCropsAhead = 23;  // with the row itself what the services plan at once
constexpr std::size_t kMeasuresAhead = 64;

bool OnlyPlainCrops(const CutSettings& options, bool withArray) {
  const bool changes = EffectsApply(options) || options.zoomAfter || options.split || options.rotateRule > 0;
  return !changes && !options.frameOnly && !options.manual && !options.omitFolders && !withArray;
}

}  // namespace

CutPrefetch::CutPrefetch(CutRun& run)
    : run_(run), foresees_(!run.program.recovering && OnlyPlainCrops(ReadCutSettings(run.program), run.withArray)) {}

CutPrefetch::~CutPrefetch() {
  run_.program.images.PlanCrops({});
  run_.program.images.PlanMeasures({});
}

void CutPrefetch::Prefetch(std::size_t row) {
  if (!run_.program.recovering) PrefetchMeasures(row);
  if (foresees_) PrefetchCrops(row);
}

std::size_t CutPrefetch::Lookahead() const { return foresees_ ? kCropsAhead + 1 : 0; }

void CutPrefetch::Prefetch(const std::vector<std::string>& paths) {
  if (!foresees_ || paths.empty()) return;
  while (!next_.empty() && next_.front().path != paths.front()) next_.pop_front();
  for (std::size_t i = next_.size(); i < paths.size(); ++i) {
    imaging::ImageFacts facts;
    std::optional<imaging::CropRequest> request;
    const bool measured = !run_.program.disks.Silent(paths[i]) && run_.program.images.ImageInfo(paths[i], facts);
    if (measured) request = Foresee(0, paths[i], {facts.width, facts.height});
    next_.push_back({0, paths[i], std::move(request)});
  }
  PlanCrops();
}

void CutPrefetch::PrefetchCrops(std::size_t row) {
  const FileList& files = run_.program.files;
  while (!next_.empty() && next_.front().row < row) next_.pop_front();
  looked_ = std::max(looked_, row - 1);
  while (looked_ < files.RowCount() && looked_ < row + kCropsAhead) {
    const FileRow& listed = files.Row(looked_++);
    auto request = Foresee(looked_, listed.Path(), {listed.width, listed.height});
    if (request) next_.push_back({looked_, "", std::move(request)});
  }
  PlanCrops();
}

std::optional<imaging::CropRequest> CutPrefetch::Foresee(std::size_t row, const std::string& path, base::Size size) {
  CutFile file(run_, row, path);
  if (!IsJpeg(file.extension) || !IsJpeg(file.OutExt) || TooSmall(size, file.settings.smallest)) return std::nullopt;
  file.W = size.width;
  file.H = size.height;
  PredictTarget(file);
  FindRectangle(file);
  return PlainCrop(file);
}

void CutPrefetch::PlanCrops() {
  std::vector<imaging::CropRequest> requests;
  for (const Forecast& forecast : next_) {
    const bool planned = forecast.request && !run_.program.disks.Silent(forecast.request->source);
    if (planned) requests.push_back(*forecast.request);
  }
  run_.program.images.PlanCrops(requests);
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
