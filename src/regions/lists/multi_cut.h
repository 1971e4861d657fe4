// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "job/cut/conversions.h"
#include "job/program.h"
#include "job/run/driver.h"
#include "job/run/run_prefetch.h"
#include "regions/lists/region_editor.h"
#include "regions/lists/region_source.h"

namespace quillon::regions {

// Cuts all regions out of every picture: of the list, or in large-capacity mode of the input folder. A picture gives
// one result, whose outputs are those of its regions. If only some of them could be made, the result is one without
// output that names these as more.
class MultiCut final : public job::RunDriver {
 public:
  // onStart is called when everything that the run needs is there and the run starts.
  MultiCut(job::Program& program, const RegionEditor& editor, std::function<void()> onStart);

  job::RunNeeds Needs() const override;
  bool Prepare() override;
  void Begin(job::RunLedger& ledger) override;
  std::string Name() const override { return "FMultCut " + ListText(); }
  std::vector<std::string> Outputs(const std::string& path) const override;
  bool ShowsProgress() const override { return true; }
  void Cut(const job::RunFile& file, const Report& report) override;
  void PrefetchFrom(std::size_t row) override { prefetch_->Prefetch(row); }
  std::size_t Lookahead() const override { return prefetch_->Lookahead(); }
  void Prefetch(const std::vector<std::string>& paths) override { prefetch_->Prefetch(paths); }
  void EndPrefetch() override { prefetch_.reset(); }
  job::RunEnd End(job::RunSource source) override;
  void Release() override;

  // Cuts a file that is not listed, during a run; its size is read from the file. text is shown as what was done so
  // far. Does nothing if no run goes on.
  void LargeMulCut(const std::string& path, const std::string& text);
  // Returns the work that Cut requests for a picture of that size, with the present options; nothing if the picture is
  // skipped or no region has an area.
  std::optional<imaging::FileWork> Foresee(const std::string& path, base::Size size) const;

 private:
  struct Source {
    std::size_t row = 0;
    std::string path;
    base::Size size;
    std::string progress;  // shown after the region's number
  };
  // What became of the regions of a source.
  struct Made {
    std::vector<std::string> outputs;
    std::string failures;  // the regions that gave no output, with the reasons
    std::string notes;     // what the outputs lack
    std::string kept;      // the regions without output because an existing file is kept
    bool begun = false;    // false if the run was stopped before the first region
  };

  void CutUnlisted(const std::string& path, const std::string& text);
  // Returns the regions of a picture of that size with the files that their crops write: the outputs, or if they are
  // converted a work file.
  std::vector<RegionCut> CutsOf(const std::string& path, base::Size size) const;
  imaging::FileWork WorkOf(const std::string& path, const std::vector<RegionCut>& cuts) const;
  // Returns the regions as text, which is part of the identity of the job.
  std::string ListText() const;
  void CutSource(const Source& source);
  Made CutAll(const Source& source, std::vector<RegionCut> cuts);
  // Returns why the region gave no output, "" if it did. Sets output to the path under which it is saved; to "" if an
  // existing file is kept instead.
  std::string CutRegion(RegionSource& picture, const Source& source, RegionCut& cut, std::string& output,
                        std::string& notes);
  // Finishes a region that was cut into the work file.
  host::Status Convert(const Source& source, const RegionCut& cut, const std::string& output, std::string& notes);
  void ShowRegion(const Source& source, std::size_t number);
  // Returns why a source cannot be cut; "" if it can.
  std::string Refusal(const Source& source);
  // Returns a note if the source has several pages, of which the first one alone is cut.
  std::string PagesNote(const std::string& path);
  std::string OutputFolder(const std::string& baseName) const;
  // Removes the drafts that a killed run left in the folder, before the first output of this run goes there.
  void SweepDrafts(const std::string& folder);
  void ReportRegions(const Source& source, const Made& made);
  void ReportWithout(const Source& source, job::Result result, const std::string& why);

  job::Program& program_;
  std::vector<Margins> regions_;
  Unit unit_;
  std::string extension_;         // of the outputs, with its point
  std::string workFile_;          // the crop of a region that is converted
  job::Conversions conversions_;  // of each region
  bool perImageFolder_ = false;
  std::function<void()> onStart_;
  std::optional<job::RunPrefetch> prefetch_;
  job::RunLedger* ledger_ = nullptr;  // of the present run
  const Report* report_ = nullptr;    // of the present file
  std::string swept_;                 // the folder that was swept last
};

}  // namespace quillon::regions
