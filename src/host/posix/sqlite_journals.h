// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/journal.h"

namespace quillon::host::posix {

// Keeps each journal as a SQLite database of its own in one folder, which only the user can read. What can still be
// read of a damaged one is kept (kTornKey). A journal that another process has open is waited for briefly. Journals
// that have not been written for 60 days are deleted when another one is opened.
class SqliteJournals final : public Journals {
 public:
  // Uses the folder "journals" beside the user's settings.
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

// Opens a temporary journal in a work file of the program. It is removed when it is closed, and nothing is synced.
// Returns nullptr if the file cannot be created.
std::unique_ptr<Journal> OpenScratchJournal(const std::string& path);

}  // namespace quillon::host::posix
