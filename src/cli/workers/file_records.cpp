// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/workers/file_records.h"

#include "host/posix/sqlite_journals.h"

namespace quillon::cli {
namespace {

// The keys of a source and of an output. A file can be both.
constexpr const char* kHandled = "handled";
constexpr const char* kSource = "source";
// The value of kHandled if the source has an output; else it is "".
constexpr const char* kWritten = "written";

}  // namespace

FileRecords::FileRecords(const std::string& path) : journal_(host::posix::OpenScratchJournal(path)) {}

FileRecords::~FileRecords() {
  if (journal_) journal_->Remove();
}

bool FileRecords::Handled(const std::string& source) { return journal_ && journal_->Get(source, kHandled); }

bool FileRecords::NoteHandled(const std::string& source, job::Wrote wrote) {
  const bool known = Handled(source);
  if (!known) ++sources_;
  if (journal_ && (!known || wrote == job::Wrote::Yes)) {
    journal_->Set(source, kHandled, wrote == job::Wrote::Yes ? kWritten : "");
  }
  return !known;
}

void FileRecords::EachSource(const std::function<void(const std::string& source, job::Wrote wrote)>& visit) {
  if (!journal_) return;
  journal_->Each(kHandled, [&](const std::string& source) {
    visit(source, journal_->Get(source, kHandled) == kWritten ? job::Wrote::Yes : job::Wrote::No);
  });
}

std::optional<std::string> FileRecords::SourceOf(const std::string& output) {
  return journal_ ? journal_->Get(output, kSource) : std::nullopt;
}

void FileRecords::NoteOutput(const std::string& output, const std::string& source) {
  if (!SourceOf(output)) ++outputs_;
  if (journal_) journal_->Set(output, kSource, source);
}

bool FileRecords::Complete() {
  return journal_ && journal_->Count(kHandled) == sources_ && journal_->Count(kSource) == outputs_;
}

}  // namespace quillon::cli
