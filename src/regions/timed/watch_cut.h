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
  bool fast = false;  // ChFast: transparency becomes white
  bool sizeFilter = false;
  bool both = false;
  int smallWidth = 0;  // TW
  int smallHeight = 0;
  // ChMul. True: the regions are written beside the source, which is discarded when all of them are complete. False:
  // the one region replaces the source, which goes to the trash.
  bool several = false;
  std::vector<Margins> regions;
  Unit unit = Unit::Pixels;
};

// Cuts the regions out of each picture, into files beside it or over the picture itself. A picture that has changed
// since it had settled is not changed; RunFile::settled must be given.
class WatchCut final : public job::FileDriver {
 public:
  WatchCut(job::Program& program, WatchCutOptions options);

  void Begin(job::RunLedger& ledger) override { ledger_ = &ledger; }
  std::size_t Lookahead() const override { return prefetch_.Lookahead(); }
  void Prefetch(const std::vector<std::string>& paths) override { prefetch_.Prefetch(paths); }
  // Reports one result, or none if there is no region.
  void Cut(const job::RunFile& file, const Report& report) override;
  void EndPrefetch() override { prefetch_.Clear(); }

  // Returns the work that Cut requests for a picture of that size; nothing if it is skipped or no region has an area.
  std::optional<imaging::FileWork> Foresee(const std::string& path, base::Size size) const;

 private:
  job::FileResult CutPicture(const job::RunFile& file, base::Size size);
  bool IsSmall(base::Size size) const;
  std::vector<RegionCut> CutsOf(const std::string& path, base::Size size) const;
  imaging::FileWork WorkOf(const std::string& path, const std::vector<RegionCut>& cuts) const;
  RegionSource Open(const std::string& path, const std::vector<RegionCut>& cuts) const;
  // Returns the work file of a cut that replaces its source.
  std::string AsidePath(const std::string& extension) const;
  // The original goes to the trash. Sets note if the result lacks something.
  host::Status CutInPlace(const job::RunFile& file, const RegionCut& cut, base::Size size, std::string& note);
  // Sets outputs to the files of the regions that were cut. What they replace goes to the trash.
  host::Status CutBeside(const job::RunFile& file, const std::vector<RegionCut>& cuts, base::Size size,
                         std::vector<std::string>& outputs);
  job::FileResult Failed(const std::string& path, const host::Status& status) const;

  job::Program& program_;
  WatchCutOptions options_;
  job::RunPrefetch prefetch_;
  job::RunLedger* ledger_ = nullptr;
};

}  // namespace quillon::regions
