// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "job/program.h"
#include "job/run/driver.h"
#include "job/run/run_ledger.h"
#include "regions/lists/region_editor.h"
#include "regions/lists/region_source.h"

namespace quillon::regions {

// One run that cuts all regions out of every picture: of the list, or in large-capacity mode of the input folder.
class MultiCut final : public job::FileDriver {
 public:
  MultiCut(job::Program& program, const RegionEditor& editor);

  // Whether there is something to cut and somewhere to put it, asking for what is missing.
  bool Ready();
  void Run();
  // As Run does with one row; the size comes from the file. text is told as what was done so far.
  void LargeMulCut(const std::string& path, const std::string& text);

  // --- For the walk of the folder run.
  std::string Name() const override { return "FMultCut " + ListText(); }
  void Cut(const std::string& path, std::size_t number, std::vector<job::FileResult>& results) override;
  std::vector<std::string> Outputs(const std::string& path) const override;

 private:
  struct Source {
    std::size_t row = 0;
    std::string path;
    base::Size size;
    std::string progress;  // told behind the region's number
  };

  void RunList();
  void CutRows();
  // The regions as text: another list is another job.
  std::string ListText() const;
  void CutSource(const Source& source);
  void CutAll(const Source& source, const std::vector<RegionCut>& cuts);
  // Why the region gave no output, "" where it did.
  std::string CutRegion(RegionSource& picture, const Source& source, const RegionCut& cut);
  // Why a source cannot be cut at all; "" for one that can.
  std::string Refusal(const Source& source);
  std::string OutputFolder(const std::string& baseName) const;
  void Tell(const Source& source, const std::string& output, job::Result result, const std::string& why);
  void TellAll(const Source& source, job::Result result, const std::string& why);
  void MarkRow(const Source& source, const std::string& why);
  void ReportEnd();

  job::Program& program_;
  std::vector<Margins> regions_;
  Unit unit_;
  std::string extension_;
  bool perImageFolder_ = false;
  job::RunLedger ledger_;
  std::vector<job::FileResult>* results_ = nullptr;  // of the file that the folder run handles
};

}  // namespace quillon::regions
