// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formats/png/fpngcut.h"
#include "job/cut/cut_file.h"
#include "job/cut/cut_run.h"
#include "job/run/driver.h"
#include "job/run/run_prefetch.h"

namespace quillon::formats {

// The run of the window FPngCut: writes {LOutDir}/{name}.png for each listed picture, or without ChBat for the first
// alone. Scaling and cutting give FixW x FixH pixels; a cut begins at the upper left corner. It waits while the window
// is paused.
class PngTool final : public job::RunDriver {
 public:
  PngTool(job::Program& program, FPngCut& window) : program_(program), window_(window) {}

  job::RunNeeds Needs() const override;
  void UseJournal(job::RunJournal& journal) override { journal_ = &journal; }
  std::string Name() const override { return "PngTool"; }
  std::vector<std::string> Windows() const override { return {"Form1", "FPngCut"}; }
  std::vector<std::string> Outputs(const std::string& path) const override;
  // Puts the helper DrawTranspText, which belongs to this tool, into the program folder. Nothing starts it.
  bool Prepare() override;
  void Begin(job::RunLedger& ledger) override;
  void PrefetchFrom(std::size_t row) override { prefetch_->Prefetch(row); }
  void Cut(const job::RunFile& file, const Report& report) override;
  void EndPrefetch() override { prefetch_.reset(); }
  job::RunEnd End(job::RunSource source) override;

 private:
  job::Step Steps(job::CutFile& file);
  imaging::PngCutRequest Request(const job::CutFile& file) const;
  std::optional<imaging::FileWork> Foresee(std::size_t row, const std::string& path);
  void WaitWhilePaused();
  std::string CountText() const;

  job::Program& program_;
  FPngCut& window_;
  job::RunJournal* journal_ = nullptr;
  std::unique_ptr<job::CutRun> run_;
  std::optional<job::RunPrefetch> prefetch_;
  std::size_t handled_ = 0;
  std::size_t planned_ = 0;
};

}  // namespace quillon::formats
