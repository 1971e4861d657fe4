// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/foreseen_list.h"

#include "base/path_text.h"
#include "job/program.h"
#include "job/settings/mode_rectangle.h"

namespace quillon::job {
namespace {

ForeseenList::By DecidedBy(const Program& program, const CutSettings& settings) {
  const bool foreseen = settings.mode == CutMode::Normal || CutsOnly(settings.mode);
  const bool regions = program.flags.AdvancedOptionsLoaded && program.fBaseOpt.ChMulCut.On();
  // A run in large-capacity mode cuts the input folder and not the list.
  if (!foreseen || regions || program.flags.LargeCapacityMode) return ForeseenList::By::Others;
  return settings.manual && !settings.frameOnly ? ForeseenList::By::Hand : ForeseenList::By::Settings;
}

// By the name, so that no other file is opened. A file with another name is not foreseen.
bool NamedAsSeveral(const std::string& extension) {
  const std::string lower = base::ToLowerAscii(extension);
  return lower == "tif" || lower == "tiff" || lower == "gif" || lower == "png";
}

}  // namespace

ForeseenList::ForeseenList(const Program& program) : program_(program) { Restart(); }

void ForeseenList::Restart() {
  settings_ = ReadCutSettings(program_);
  by_ = job::DecidedBy(program_, settings_);
  if (program_.files.RowCount() == 0) pages_.clear();
  CountAnew();
}

void ForeseenList::CountAnew() {
  counted_ = 0;
  withoutFile_ = 0;
}

bool ForeseenList::PagesMatter(const FileRow& file) const {
  return by_ == By::Settings && ReplacesPages(settings_) && NamedAsSeveral(file.extension);
}

std::vector<std::string> ForeseenList::Unread() const {
  std::vector<std::string> paths;
  for (std::size_t row = 0; row < program_.files.RowCount(); ++row) {
    const FileRow& file = program_.files.Row(row);
    if (!PagesMatter(file)) continue;
    if (std::string path = file.Path(); !pages_.contains(path)) paths.push_back(std::move(path));
  }
  return paths;
}

void ForeseenList::Learn(const std::unordered_map<std::string, PagesOfFile>& found) {
  for (const auto& [path, pages] : found) pages_[path] = pages;
}

std::optional<CutOutcome> ForeseenList::Of(std::size_t row) const {
  if (by_ != By::Settings || row >= program_.files.RowCount()) return std::nullopt;
  const FileRow& file = program_.files.Row(row);
  SourceFacts facts{{file.width, file.height}, file.dpi, program_.flags.ScreenDpi, {}};
  if (PagesMatter(file)) {
    if (const auto known = pages_.find(file.Path()); known != pages_.end()) facts.pages = known->second;
  }
  return OutcomeOf(settings_, facts);
}

bool ForeseenList::CountMore(std::size_t rows) {
  const std::size_t all = program_.files.RowCount();
  for (; rows > 0 && counted_ < all; --rows, ++counted_) {
    const std::optional<CutOutcome> outcome = Of(counted_);
    if (outcome && !outcome->why.empty()) ++withoutFile_;
  }
  return counted_ >= all;
}

}  // namespace quillon::job
