// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/files/file_stamp.h"
#include "host/host.h"

namespace quillon::regions {

// The files of a folder that are new and have settled: unchanged between two looks. It remembers the names that were
// taken, and of all others only those it waits for.
class FolderPoller {
 public:
  // Whether a name is of a kind that is looked for.
  using Accepts = std::function<bool(const std::string& name)>;

  FolderPoller(host::Host& host, std::string folder, Accepts accepts);

  // One look: the names that are ready, sorted. A folder that has not changed for a while is only listed now and then.
  std::vector<std::string> Poll();
  // False after a look that could not list the folder.
  bool FolderThere() const { return there_; }
  // The name is done with, whatever comes under it.
  void Take(const std::string& name);
  // The file is not whole: it is ready again when it has changed and settled once more.
  void Refuse(const std::string& name);
  std::optional<host::FileStamp> StampOf(const std::string& name) const;

 private:
  struct Waiting {
    host::FileStamp stamp;
    bool refused = false;
  };

  bool ListingNeeded();
  void List();

  host::Host& host_;
  std::string folder_;
  Accepts accepts_;
  std::unordered_set<std::string> seenNames_;  // the names that are done with: what is in here is not new
  std::map<std::string, Waiting> waiting_;
  bool there_ = false;
  std::optional<host::FileStamp> folderStamp_;
  double stampSince_ = 0;  // when the folder was first seen with that stamp
  double listedAt_ = 0;
};

}  // namespace quillon::regions
