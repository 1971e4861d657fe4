// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "job/list/run_context.h"
#include "job/run/driver.h"
#include "job/run/run_ledger.h"
#include "regions/timed/folder_poller.h"

namespace quillon::regions {

// The filters of CmbType, by entry.
std::vector<std::string> WatchTypes();
// Returns whether a name passes the filter of an entry. Hidden files never do.
bool PassesType(int type, const std::string& name);

// What a watch calls in its window.
struct WatchHooks {
  std::function<bool()> goesOn;                  // called before each file; false ends the round
  std::function<void(std::size_t cut)> counted;  // called when the number of cut pictures may have changed
  // Called with a sentence about a file that was not cut, a result that lacks something, or a folder that is missing;
  // "" when the folder is back.
  std::function<void(const std::string& sentence)> note;
};

// The run over a watched folder, one round at a time. Passes each settled file to the driver, and again later if its
// result asks for it (Retry). Reports each file to the observer.
class FolderWatch {
 public:
  // type: entry of CmbType.
  FolderWatch(const job::RunContext& context, job::FileDriver& driver, const std::string& folder, int type,
              WatchHooks hooks);

  // Polls the folder once and handles the files that are ready. Returns after their outputs are synced.
  void Round();
  // Returns the results of the files so far.
  job::RunLedger& Ledger() { return ledger_; }

 private:
  void ShowWhetherThere();
  void Prefetch(const std::vector<std::string>& ready, std::size_t next);
  void Handle(const std::string& name);
  void Report(const job::FileResult& result);
  void Flush();
  void Note(const std::string& path, const std::string& why);

  const job::RunContext& context_;
  job::FileDriver& driver_;
  std::string folder_;
  WatchHooks hooks_;
  FolderPoller poller_;
  job::RunLedger ledger_;
  std::size_t number_ = 0;  // files passed to the driver so far
  bool shownMissing_ = false;
};

}  // namespace quillon::regions
