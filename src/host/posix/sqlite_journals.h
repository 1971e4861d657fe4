// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/journal.h"

namespace quillon::host::posix {

// Each journal is a database of its own in a folder; a damaged one counts as empty. One that another process holds is
// waited for a moment. Those that nobody has touched for two months are removed when another is opened.
class SqliteJournals final : public Journals {
 public:
  // In the folder "journals" beside the user's settings.
  SqliteJournals();
  explicit SqliteJournals(std::string folder) : folder_(std::move(folder)) {}

  std::unique_ptr<Journal> Open(const JobPart& part) override;
  std::optional<JobPart> FindUnfinished(const std::string& job, const Wanted& wanted) override;
  bool Forget(const std::string& job, const Wanted& wanted) override;

 private:
  std::string PathOf(const JobPart& part) const;
  std::vector<JobPart> PartsOf(const std::string& job, const Wanted& wanted) const;

  std::string folder_;
};

// A journal that lasts no longer than it is open, in a file of the program's own: nothing waits for the disk. nullptr
// where none can be made.
std::unique_ptr<Journal> OpenScratchJournal(const std::string& path);

}  // namespace quillon::host::posix
