// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/disk_thread.h"
#include "host/files/files.h"
#include "job/list/file_walk.h"
#include "job/settings/shard.h"

namespace quillon::job {

// Counts on a background thread how many files a walk over a folder will hand out. A tree that changes meanwhile is
// counted as it was seen.
class FileCount {
 public:
  // Files of doneElsewhere are not counted; it must outlive this object.
  FileCount(const host::Files& files, std::string root, WalkRule rule, const DoneElsewhere& doneElsewhere);

  // The number, or nothing as long as it is counting.
  std::optional<std::size_t> Result() const;

 private:
  std::shared_ptr<std::size_t> count_;
  host::BackgroundCall call_;
};

}  // namespace quillon::job
