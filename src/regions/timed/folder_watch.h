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
// Whether a name passes the filter of an entry. Hidden files never do.
bool PassesType(int type, const std::string& name);

// How a watch speaks to its window.
struct WatchHooks {
  std::function<bool()> goesOn;                  // called before each file
  std::function<void(std::size_t cut)> counted;  // called after each, with the number of pictures cut so far
  // A sentence about what was not cut, "" when the folder is there again.
  std::function<void(const std::string& sentence)> note;
};

// The run over a watched folder, one round at a time: hands each new file to the driver once it has settled. A file
// whose result asks for it is handed over again. Reports each file to the observer.
class FolderWatch {
 public:
  // type: entry of CmbType.
  FolderWatch(const job::RunContext& context, job::FileDriver& driver, const std::string& folder, int type,
              WatchHooks hooks);

  // Looks at the folder once, handles what is ready, and returns when all outputs stand on disk.
  void Round();
  // What became of the files so far.
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
  std::size_t number_ = 0;  // files handed over so far
  bool shownMissing_ = false;
};

}  // namespace quillon::regions
