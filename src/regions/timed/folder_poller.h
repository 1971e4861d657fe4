// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/host.h"

namespace quillon::regions {

// What a file was at a look.
struct Stamp {
  std::uint64_t size = 0;
  std::int64_t modified = 0;
  std::int64_t changed = 0;
  std::uint64_t inode = 0;
  bool operator==(const Stamp&) const = default;
};

// Nothing where no file stands under the path.
std::optional<Stamp> StampOf(const host::Files& files, const std::string& path);

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
  // The names that are done with: what is in here is not new.
  const std::unordered_set<std::string>& SeenNames() const { return seenNames_; }
  // The file is not whole: it is ready again when it has changed and settled once more.
  void Refuse(const std::string& name);
  std::optional<Stamp> StampOf(const std::string& name) const;

 private:
  struct Waiting {
    Stamp stamp;
    bool refused = false;
  };

  bool ListingNeeded();
  void List();

  host::Host& host_;
  std::string folder_;
  Accepts accepts_;
  std::unordered_set<std::string> seenNames_;
  std::map<std::string, Waiting> waiting_;
  bool there_ = false;
  std::optional<Stamp> folderStamp_;
  double stampSince_ = 0;  // when the folder was first seen with that stamp
  double listedAt_ = 0;
};

}  // namespace quillon::regions
