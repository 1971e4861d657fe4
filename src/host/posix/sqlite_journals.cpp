// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/sqlite_journals.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <utility>

#include "base/path_text.h"
#include "host/posix/environment.h"
#include "host/posix/journal_database.h"

namespace quillon::host::posix {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::hours kMaxAge{24 * 60};
constexpr const char* kExtension = ".db";
constexpr char kSeparator = '-';
class SqliteJournal final : public Journal {
 public:
  SqliteJournal(Database database, std::string path) : path_(std::move(path)), database_(std::move(database)) {
    get_ = Prepare(Raw(), "SELECT value FROM record WHERE file = ?1 AND key = ?2");
    set_ = Prepare(Raw(), kStoreRecord);
    count_ = Prepare(Raw(), "SELECT count(*) FROM record WHERE key = ?1");
  }
  // An empty journal leaves no file.
  ~SqliteJournal() override {
    static_cast<void>(Commit());
    if (database_ && Empty()) Remove();
  }

  std::optional<std::string> Get(const std::string& file, const std::string& key) override {
    if (!get_) return std::nullopt;
    Bind(get_.get(), 1, file);
    Bind(get_.get(), 2, key);
    return ValueOf(get_.get());
  }

  void Set(const std::string& file, const std::string& key, const std::string& value) override {
    if (!set_) {
      stored_ = false;
      return;
    }
    if (sqlite3_get_autocommit(Raw()) != 0) {
      // Values of a transaction that SQLite has rolled back are lost.
      if (std::exchange(pending_, true)) stored_ = false;
      if (!Run(Raw(), "BEGIN")) stored_ = false;
    }
    Bind(set_.get(), 1, file);
    Bind(set_.get(), 2, key);
    Bind(set_.get(), 3, value);
    if (sqlite3_step(set_.get()) != SQLITE_DONE) stored_ = false;
    sqlite3_reset(set_.get());
  }

  std::size_t Count(const std::string& key) override {
    if (!count_) return 0;
    Bind(count_.get(), 1, key);
    std::size_t count = 0;
    if (sqlite3_step(count_.get()) == SQLITE_ROW)
      count = static_cast<std::size_t>(sqlite3_column_int64(count_.get(), 0));
    sqlite3_reset(count_.get());
    return count;
  }

  void Each(const std::string& key, const std::function<void(const std::string& file)>& visit) override {
    const Statement each = Prepare(Raw(), "SELECT file FROM record WHERE key = ?1");
    if (!each) return;
    Bind(each.get(), 1, key);
    while (sqlite3_step(each.get()) == SQLITE_ROW) visit(BlobAt(each.get(), 0));
  }

  bool Commit() override {
    if (database_ && std::exchange(pending_, false)) {
      if (sqlite3_get_autocommit(Raw()) != 0 || !Run(Raw(), "COMMIT")) stored_ = false;
    }
    return std::exchange(stored_, true);
  }

  void Clear() override { Run(Raw(), "DELETE FROM record"); }
  bool Empty() const {
    const Statement any = Prepare(Raw(), "SELECT 1 FROM record LIMIT 1");
    return any && sqlite3_step(any.get()) == SQLITE_DONE;
  }

  // The file is removed while its lock is still held. A process that waits for the lock notices the removal and creates
  // another file.
  void Remove() override {
    static_cast<void>(Commit());
    std::error_code ignored;
    fs::remove(path_ + "-journal", ignored);
    fs::remove(path_, ignored);
    get_.reset();
    set_.reset();
    count_.reset();
    database_.reset();
  }

 private:
  sqlite3* Raw() const { return database_.get(); }

  std::string path_;
  Database database_;
  Statement get_;
  Statement set_;
  Statement count_;
  bool pending_ = false;  // values were set since the last Commit
  bool stored_ = true;    // all of them could be stored so far
};

// Returns a short file name for the text of a job. The text itself is stored in the database, in case two jobs get the
// same name.
std::string NameOf(const std::string& job) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : job) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  std::string name;
  for (int i = 0; i < 16; ++i, hash >>= 4) name += "0123456789abcdef"[hash & 15];
  return name;
}

// Removes journals that nobody has continued for a long time. Those of the job that is about to start stay, because it
// may be continued now.
void SweepOld(const std::string& folder, const std::string& job) {
  const std::string own = NameOf(job) + kSeparator;
  std::error_code ignored;
  const auto now = fs::file_time_type::clock::now();
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    if (entry.path().filename().native().starts_with(own)) continue;
    if (now - entry.last_write_time(ignored) > kMaxAge) fs::remove(entry.path(), ignored);
  }
}

// Returns nullptr if another process has the journal open, or if no journal can be kept.
std::unique_ptr<SqliteJournal> OpenKept(const std::string& path, const std::string& job) {
  Database database = OpenJournalDatabase(path, job);
  return database ? std::make_unique<SqliteJournal>(std::move(database), path) : nullptr;
}

// Opens the folder; without entries if that fails.
fs::directory_iterator EntriesOf(const std::string& folder) {
  std::error_code error;
  for (;;) {
    fs::directory_iterator entries(folder, error);
    if (error != std::errc::interrupted) return entries;
  }
}

// Returns the part that a journal file of that name belongs to; nullopt if it belongs to another job or is no journal.
std::optional<JobPart> PartNamed(const std::string& name, const std::string& job) {
  const std::string begin = NameOf(job) + kSeparator;
  if (!name.starts_with(begin) || !name.ends_with(kExtension)) return std::nullopt;
  std::istringstream rest(name.substr(begin.size()));
  JobPart part{job, 0, 0};
  char separator = 0;
  const bool read = rest >> part.index >> separator >> part.count && separator == kSeparator && part.count > 0;
  return read ? std::optional(part) : std::nullopt;
}

}  // namespace

SqliteJournals::SqliteJournals()
    : folder_(base::JoinPath(BaseFolder("XDG_CONFIG_HOME", ".config"), "quillon/journals")) {}

std::string SqliteJournals::PathOf(const JobPart& part) const {
  const std::string name =
      NameOf(part.job) + kSeparator + std::to_string(part.index) + kSeparator + std::to_string(part.count) + kExtension;
  return base::JoinPath(folder_, name);
}

std::unique_ptr<Journal> SqliteJournals::Open(const JobPart& part) {
  std::error_code error;
  fs::create_directories(folder_, error);
  if (error) return nullptr;
  fs::permissions(folder_, fs::perms::owner_all, error);
  SweepOld(folder_, part.job);
  return OpenKept(PathOf(part), part.job);
}

std::vector<JobPart> SqliteJournals::PartsOf(const std::string& job, const Wanted& wanted) const {
  std::vector<JobPart> parts;
  for (const auto& entry : EntriesOf(folder_)) {
    const auto part = PartNamed(entry.path().filename().native(), job);
    if (part && wanted(*part)) parts.push_back(*part);
  }
  // Processes that lock several journals must do so in one order, or each could wait for the other.
  std::sort(parts.begin(), parts.end());
  return parts;
}

std::optional<JobPart> SqliteJournals::FindUnfinished(const std::string& job, const Wanted& wanted) {
  for (const JobPart& part : PartsOf(job, wanted)) {
    const auto journal = OpenKept(PathOf(part), job);
    if (!journal || !journal->Empty()) return part;
  }
  return std::nullopt;
}

bool SqliteJournals::Forget(const std::string& job, const Wanted& wanted) {
  std::vector<std::unique_ptr<Journal>> journals;
  for (const JobPart& part : PartsOf(job, wanted)) {
    journals.push_back(OpenKept(PathOf(part), job));
    if (!journals.back()) return false;
  }
  for (const auto& journal : journals) journal->Remove();
  return true;
}

std::unique_ptr<Journal> OpenScratchJournal(const std::string& path) {
  Database database = OpenScratchDatabase(path);
  return database ? std::make_unique<SqliteJournal>(std::move(database), path) : nullptr;
}

}  // namespace quillon::host::posix
