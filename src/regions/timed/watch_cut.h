// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "job/program.h"
#include "job/run/driver.h"
#include "job/run/run_prefetch.h"
#include "regions/lists/region_source.h"
#include "regions/region.h"

namespace quillon::regions {

// What is done to each picture of a watched folder.
struct WatchCutOptions {
  bool fast = false;  // ChFast: transparency goes, laid on white
  bool sizeFilter = false;
  bool both = false;
  int smallWidth = 0;  // TW
  int smallHeight = 0;
  // ChMul. Yes: the regions go beside the source, which is discarded when all of them stand. No: the one region takes
  // the place of the source.
  bool several = false;
  std::vector<Margins> regions;
  Unit unit = Unit::Pixels;
};

// Cuts the regions out of one picture after another, beside or in place of it. A picture that has changed since it had
// settled is left as it is: RunFile::settled must be given.
class WatchCut final : public job::FileDriver {
 public:
  WatchCut(job::Program& program, WatchCutOptions options);

  void Begin(job::RunLedger& ledger) override { ledger_ = &ledger; }
  std::size_t Lookahead() const override { return prefetch_.Lookahead(); }
  void Prefetch(const std::vector<std::string>& paths) override { prefetch_.Prefetch(paths); }
  // Reports one result, or none if there is no region.
  void Cut(const job::RunFile& file, const Report& report) override;
  void EndPrefetch() override { prefetch_.Clear(); }

  // The work that Cut asks for at a picture of that size. Nothing if it is passed over, or if no region has an area.
  std::optional<imaging::FileWork> Foresee(const std::string& path, base::Size size) const;

 private:
  job::FileResult CutPicture(const job::RunFile& file, base::Size size);
  bool IsSmall(base::Size size) const;
  std::vector<RegionCut> CutsOf(const std::string& path, base::Size size) const;
  imaging::FileWork WorkOf(const std::string& path, const std::vector<RegionCut>& cuts) const;
  RegionSource Open(const std::string& path, const std::vector<RegionCut>& cuts) const;
  // The work file of a cut that takes the place of its source.
  std::string AsidePath(const std::string& extension) const;
  host::Status CutInPlace(const job::RunFile& file, const RegionCut& cut);
  // outputs: of the regions that were cut.
  host::Status CutBeside(const job::RunFile& file, const std::vector<RegionCut>& cuts,
                         std::vector<std::string>& outputs);
  host::Status MakeRoom(const std::string& target);
  job::FileResult Failed(const std::string& path, const host::Status& status) const;

  job::Program& program_;
  WatchCutOptions options_;
  job::RunPrefetch prefetch_;
  job::RunLedger* ledger_ = nullptr;
};

}  // namespace quillon::regions
