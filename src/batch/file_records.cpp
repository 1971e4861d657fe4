// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/file_records.h"

#include "host/posix/sqlite_journals.h"

namespace quillon::batch {
namespace {

// Keys.
constexpr const char* kOutput = "output";
constexpr const char* kSource = "source";
constexpr const char* kLost = "lost";

}  // namespace

FileRecords::FileRecords(const std::string& path) : journal_(host::posix::OpenScratchJournal(path)) {}

FileRecords::~FileRecords() {
  if (journal_) journal_->Remove();
}

std::optional<std::string> FileRecords::OutputOf(const std::string& source) {
  return journal_ ? journal_->Get(source, kOutput) : std::nullopt;
}

void FileRecords::Tell(const std::string& source, const std::string& output) {
  if (!OutputOf(source)) ++sources_;
  if (journal_) journal_->Set(source, kOutput, output);
}

void FileRecords::EachSource(const std::function<void(const std::string& source)>& take) {
  if (journal_) journal_->Each(kOutput, take);
}

std::optional<std::string> FileRecords::SourceOf(const std::string& output) {
  return journal_ ? journal_->Get(output, kSource) : std::nullopt;
}

void FileRecords::TellMade(const std::string& output, const std::string& source) {
  if (!SourceOf(output)) ++outputs_;
  if (journal_) journal_->Set(output, kSource, source);
}

void FileRecords::Lose(const std::string& source) {
  if (journal_) journal_->Set(source, kLost, "1");
}

bool FileRecords::TakeLost(const std::string& source) {
  if (!journal_ || journal_->Get(source, kLost).value_or("").empty()) return false;
  journal_->Set(source, kLost, "");
  return true;
}

bool FileRecords::Complete() {
  return journal_ && journal_->Count(kOutput) == sources_ && journal_->Count(kSource) == outputs_;
}

}  // namespace quillon::batch
