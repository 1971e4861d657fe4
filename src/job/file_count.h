// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "host/errand.h"
#include "host/files.h"
#include "job/file_walk.h"
#include "job/handled.h"

namespace quillon::job {

// Counts behind the run how many files a walk over a folder will hand out. A tree that changes meanwhile is counted as
// it was seen.
class FileCount {
 public:
  // What was handled already is none of them; it has to live as long as this.
  FileCount(const host::Files& files, std::string root, WalkRule rule, const Handled& handled);

  // Nothing as long as it is counting.
  std::optional<std::size_t> Result() const;

 private:
  std::shared_ptr<std::size_t> count_;
  host::Errand errand_;
};

}  // namespace quillon::job
