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

// Finds files that are new and unchanged between two polls. It remembers the handled names, and of all others only
// those that are not ready yet.
class FolderPoller {
 public:
  // Returns whether files of that name are wanted.
  using Accepts = std::function<bool(const std::string& name)>;

  FolderPoller(host::Host& host, std::string folder, Accepts accepts);

  // Polls once. Returns the names that are ready, sorted. A folder that has not changed for a while is listed only
  // every ten seconds.
  std::vector<std::string> Poll();
  // Returns false if the last poll could not read the folder.
  bool FolderThere() const { return there_; }
  // Marks the name as handled. Later files of that name are ignored.
  void MarkHandled(const std::string& name);
  // Marks the file as incomplete. It is ready again after it has changed and settled once more.
  void Refuse(const std::string& name);
  // Returns the stamp of a file at the last poll; nothing if the name is not waiting.
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
