// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <unordered_set>

#include "host/status.h"

namespace quillon::job {

struct RunContext;

// The folders that ChOmitFolds skips.
// They are stored in \OmitSubfolds.dat, one a line; Flags::OmittedFolders has the same lines, each with CR LF.
// Of each new folder only the first file is handled.
class OmittedFolders {
 public:
  explicit OmittedFolders(const RunContext& context);

  void Clear();
  // Adds the lines of the file that are still folders, and the folders of files that an earlier worker has written.
  void Read();
  // Adds the folder. Returns false if it was in the list already, and is therefore skipped.
  bool Add(const std::string& folder);
  // Replaces the file and empties the list.
  host::Status WriteBack();

 private:
  const RunContext& context_;
  std::unordered_set<std::string> folders_;
};

}  // namespace quillon::job
