// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "job/cut/cut_file.h"
#include "job/cut/cut_prefetch.h"
#include "job/run/driver.h"

namespace quillon::job {

// The normal cut of one file that no row stands for.
class LargeNormalCut final : public FileDriver {
 public:
  explicit LargeNormalCut(CutRun& run) : run_(run), forecast_(run) {}

  std::string Name() const override { return run_.pdf ? "menuNormalCut pdf" : "menuNormalCut"; }
  void Cut(const std::string& path, std::size_t number, std::vector<FileResult>& results) override;
  bool BesideSources() const override { return run_.program.form1.ChOver.On(); }
  std::vector<std::string> Outputs(const std::string& path) const override { return ForeseenOutputs(run_, path); }
  void HandledBefore(const std::string& path) override;
  std::size_t Lookahead() const override { return forecast_.Lookahead(); }
  void Prefetch(const std::vector<std::string>& paths) override { forecast_.Prefetch(paths); }

 private:
  CutRun& run_;
  CutPrefetch forecast_;
};

}  // namespace quillon::job
