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

// Counts on a background thread how many files a walk will visit. The count is approximate if the tree changes.
class FileCount {
 public:
  // Files in doneElsewhere, which must outlive this object, are not counted.
  FileCount(const host::Files& files, std::string root, WalkRule rule, const DoneElsewhere& doneElsewhere);

  // Returns the number; nothing while it is still counting.
  std::optional<std::size_t> Result() const;

 private:
  std::shared_ptr<std::size_t> count_;
  host::BackgroundCall call_;
};

}  // namespace quillon::job
