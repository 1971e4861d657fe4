// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <unordered_set>

#include "host/status.h"

namespace quillon::job {

struct RunContext;

// The folders that ChOmitFolds passes over, kept in \OmitSubfolds.dat, one a line. Flags::OmittedFolders holds the same
// lines, each with CR LF. A folder counts as done from its first file on, also within the same run: of a folder that is
// new, one file is handled.
class OmittedFolders {
 public:
  explicit OmittedFolders(const RunContext& context);

  void Clear();
  // Adds the lines of the file that still are folders, and the folders of what an earlier process in the place of this
  // one has written.
  void Read();
  // True if the folder is new, which adds it; false if it is to be passed over.
  bool Add(const std::string& folder);
  // Writes the file anew and empties the list.
  host::Status WriteBack();

 private:
  const RunContext& context_;
  std::unordered_set<std::string> folders_;
};

}  // namespace quillon::job
