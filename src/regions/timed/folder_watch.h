// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "job/program.h"
#include "job/run/discard_queue.h"
#include "job/run/run_ledger.h"
#include "regions/lists/region.h"
#include "regions/lists/region_source.h"
#include "regions/timed/folder_poller.h"

namespace quillon::regions {

// The filters of CmbType, by entry.
std::vector<std::string> WatchTypes();
// Whether a name passes the filter of an entry. Hidden files never do.
bool PassesType(int type, const std::string& name);

struct WatchOptions {
  std::string folder;
  int type = 0;       // CmbType
  bool fast = false;  // ChFast: transparency goes, laid on white
  bool sizeFilter = false;
  bool both = false;
  int smallWidth = 0;  // TW
  int smallHeight = 0;
  bool several = false;  // ChMul: regions go beside the source, which goes when all of them stand; else in its place
  std::vector<Margins> regions;
  Unit unit = Unit::Pixels;
};

// How a watch speaks to its window.
struct WatchHooks {
  std::function<bool()> goesOn;                  // called before each file
  std::function<void(std::size_t cut)> counted;  // called after each, with the number of pictures cut so far
  // A sentence about what was not cut, "" when the folder is there again.
  std::function<void(const std::string& sentence)> note;
};

// The work of the timed cut, one round at a time.
class FolderWatch {
 public:
  FolderWatch(job::Program& program, WatchOptions options, WatchHooks hooks);

  // Looks at the folder once and cuts what is ready.
  void Round();
  // What became of the files so far.
  job::RunLedger& Ledger() { return ledger_; }

 private:
  void Work(const std::string& name);
  bool IsSmall(const imaging::ImageFacts& facts) const;
  std::vector<RegionCut> CutsOf(const std::string& path, base::Size size) const;
  RegionSource Open(const std::string& path) const;
  bool IsStill(const std::string& path, const host::FileStamp& stamp) const;
  // The one region, in the place of the source.
  host::Status CutInPlace(const std::string& path, const host::FileStamp& stamp, const RegionCut& cut);
  host::Status CutBeside(const std::string& name, const host::FileStamp& stamp, const std::vector<RegionCut>& cuts);
  host::Status MakeRoom(const std::string& target);
  void DiscardSources();
  job::DiscardQueue::Verdict Judge(const job::DiscardQueue::Source& source, const host::Status& read);
  void Report(const std::string& name, job::Result result, const std::string& why, const std::string& output);
  std::string PathOf(const std::string& name) const;

  job::Program& program_;
  WatchOptions options_;
  WatchHooks hooks_;
  FolderPoller looks_;
  job::RunLedger ledger_;
  job::DiscardQueue discards_;                     // sources whose regions were all cut
  std::map<std::string, host::FileStamp> stamps_;  // what those were when they were cut, by path
  bool toldMissing_ = false;
};

}  // namespace quillon::regions
