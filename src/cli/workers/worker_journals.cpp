// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/workers/worker_journals.h"

#include <utility>

namespace quillon::cli {

// A journal whose Remove() keeps it on disk.
class WorkerJournals::Kept final : public host::Journal {
 public:
  Kept(WorkerJournals& owner, host::JobPart part, std::unique_ptr<host::Journal> journal)
      : owner_(owner), part_(std::move(part)), journal_(std::move(journal)) {}

  std::optional<std::string> Get(const std::string& file, const std::string& key) override {
    return journal_->Get(file, key);
  }
  void Set(const std::string& file, const std::string& key, const std::string& value) override {
    journal_->Set(file, key, value);
  }
  std::size_t Count(const std::string& key) override { return journal_->Count(key); }
  void Each(const std::string& key, const std::function<void(const std::string& file)>& visit) override {
    journal_->Each(key, visit);
  }
  bool Commit() override { return journal_->Commit(); }
  void Clear() override { journal_->Clear(); }
  void Remove() override {
    static_cast<void>(journal_->Commit());
    journal_.reset();
    owner_.done_.insert(part_);
    owner_.reporter_.JournalDone(part_);
  }

 private:
  WorkerJournals& owner_;
  host::JobPart part_;
  std::unique_ptr<host::Journal> journal_;
};

std::unique_ptr<host::Journal> WorkerJournals::Open(const host::JobPart& part) {
  std::unique_ptr<host::Journal> journal = journals_.Open(part);
  reporter_.JournalOpened(part);
  if (!journal) return nullptr;
  // The same worker does the same job once more: that is a fresh run, for which the journal must be empty.
  if (done_.erase(part) > 0) journal->Clear();
  return std::make_unique<Kept>(*this, part, std::move(journal));
}

}  // namespace quillon::cli
