// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "job/cut/cut_run.h"
#include "job/run/driver.h"
#include "job/run/run_prefetch.h"

namespace quillon::job {

// The normal cut, menuNormalCut: turns each file into one output file.
class NormalCut final : public RunDriver {
 public:
  explicit NormalCut(Program& program);

  RunNeeds Needs() const override;
  bool Prepare() override;
  void UseJournal(RunJournal& journal) override { journal_ = &journal; }
  void Begin(RunLedger& ledger) override;
  std::string Name() const override { return pdf_ ? "menuNormalCut pdf" : "menuNormalCut"; }
  bool BesideSources() const override;
  std::vector<std::string> Outputs(const std::string& path) const override;
  void HandledBefore(const std::string& path) override;
  void Start() override;
  void Cut(const RunFile& file, const Report& report) override;
  void PrefetchFrom(std::size_t row) override { prefetch_->Prefetch(row); }
  std::size_t Lookahead() const override { return prefetch_->Lookahead(); }
  void Prefetch(const std::vector<std::string>& paths) override { prefetch_->Prefetch(paths); }
  void EndPrefetch() override { prefetch_.reset(); }
  RunEnd End(RunSource source) override;
  void Leave() override;
  void Finish() override;
  void Release() override;

 private:
  void PrepareCanvas();
  RunPrefetch::Foresee Foresight();

  Program& program_;
  bool withArray_ = false;         // ChCutAndArray
  bool pdf_ = false;               // CmbOutType was 5 at the start
  bool omits_ = false;             // ChOmitFolds
  RunJournal* journal_ = nullptr;  // of the run
  std::unique_ptr<CutRun> run_;
  std::optional<RunPrefetch> prefetch_;
};

}  // namespace quillon::job
