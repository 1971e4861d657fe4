// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/foreseen_list.h"

#include "job/program.h"

namespace quillon::job {
namespace {

ForeseenList::By DecidedBy(const Program& program, const CutSettings& settings) {
  const bool normal = Selected<CutMode>(program.form1.CmbCutMode) == CutMode::Normal;
  const bool regions = program.flags.AdvancedOptionsLoaded && program.fBaseOpt.ChMulCut.On();
  // A run in large-capacity mode cuts the input folder and not the list.
  if (!normal || regions || program.flags.LargeCapacityMode) return ForeseenList::By::Others;
  return settings.manual && !settings.frameOnly ? ForeseenList::By::Hand : ForeseenList::By::Settings;
}

}  // namespace

ForeseenList::ForeseenList(const Program& program) : program_(program) { Restart(); }

void ForeseenList::Restart() {
  settings_ = ReadCutSettings(program_);
  by_ = job::DecidedBy(program_, settings_);
  counted_ = 0;
  withoutFile_ = 0;
}

std::optional<CutOutcome> ForeseenList::Of(std::size_t row) const {
  if (by_ != By::Settings || row >= program_.files.RowCount()) return std::nullopt;
  const FileRow& file = program_.files.Row(row);
  return OutcomeOf(settings_, {{file.width, file.height}, file.dpi, program_.flags.ScreenDpi});
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
