// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/sqlite_journals.h"

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <sstream>

#include "base/path_text.h"
#include "host/posix/environment.h"

namespace quillon::host::posix {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::hours kMaxAge{24 * 60};
constexpr const char* kExtension = ".db";
constexpr char kSeparator = '-';
// Long enough for a process that only inspects a journal, or repairs one after a crash.
constexpr int kBusyTimeoutMs = 1000;
constexpr int kAttempts = 5;

// The cache is small, so that a journal of any length needs little memory.
constexpr const char* kSafe = "PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL; PRAGMA cache_size = -512";
constexpr const char* kFast = "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA cache_size = -512";
// The exclusive lock is taken at once and kept until the journal is closed, so that one process owns it. BEGIN
// EXCLUSIVE holds no other lock while it waits, so two waiting processes cannot block each other.
constexpr const char* kTables =
    "BEGIN EXCLUSIVE; PRAGMA locking_mode = EXCLUSIVE; "
    "CREATE TABLE IF NOT EXISTS job (text BLOB NOT NULL); "
    "CREATE TABLE IF NOT EXISTS record (file BLOB NOT NULL, key BLOB NOT NULL, value BLOB NOT NULL, "
    "PRIMARY KEY (file, key)) WITHOUT ROWID; COMMIT";

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct EndStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, EndStatement>;

bool Run(sqlite3* database, const char* text) {
  return sqlite3_exec(database, text, nullptr, nullptr, nullptr) == SQLITE_OK;
}

Statement Prepare(sqlite3* database, const char* text) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
  return Statement(statement);
}

void Bind(sqlite3_stmt* statement, int place, const std::string& bytes) {
  sqlite3_bind_blob(statement, place, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
}

std::string BlobAt(sqlite3_stmt* statement, int column) {
  const void* bytes = sqlite3_column_blob(statement, column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
  return bytes ? std::string(static_cast<const char*>(bytes), size) : std::string();
}

// Returns the value of the first row, nullopt if there is none.
std::optional<std::string> ValueOf(sqlite3_stmt* statement) {
  std::optional<std::string> value;
  if (sqlite3_step(statement) == SQLITE_ROW) value = BlobAt(statement, 0);
  sqlite3_reset(statement);
  return value;
}

class SqliteJournal final : public Journal {
 public:
  SqliteJournal(Database database, std::string path) : path_(std::move(path)), database_(std::move(database)) {
    get_ = Prepare(Raw(), "SELECT value FROM record WHERE file = ?1 AND key = ?2");
    set_ = Prepare(Raw(), "INSERT OR REPLACE INTO record (file, key, value) VALUES (?1, ?2, ?3)");
    count_ = Prepare(Raw(), "SELECT count(*) FROM record WHERE key = ?1");
  }
  // An empty journal leaves no file.
  ~SqliteJournal() override {
    Commit();
    if (database_ && Empty()) Remove();
  }

  std::optional<std::string> Get(const std::string& file, const std::string& key) override {
    if (!get_) return std::nullopt;
    Bind(get_.get(), 1, file);
    Bind(get_.get(), 2, key);
    return ValueOf(get_.get());
  }

  void Set(const std::string& file, const std::string& key, const std::string& value) override {
    if (!set_) return;
    if (sqlite3_get_autocommit(Raw()) != 0) Run(Raw(), "BEGIN");
    Bind(set_.get(), 1, file);
    Bind(set_.get(), 2, key);
    Bind(set_.get(), 3, value);
    sqlite3_step(set_.get());
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

  void Commit() override {
    if (database_ && sqlite3_get_autocommit(Raw()) == 0) Run(Raw(), "COMMIT");
  }

  void Clear() override { Run(Raw(), "DELETE FROM record"); }
  bool Empty() const {
    const Statement any = Prepare(Raw(), "SELECT 1 FROM record LIMIT 1");
    return any && sqlite3_step(any.get()) == SQLITE_DONE;
  }

  // The file is removed while its lock is still held. A process that waits for the lock notices the removal and creates
  // another file.
  void Remove() override {
    Commit();
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

void SweepOld(const std::string& folder) {
  std::error_code ignored;
  const auto now = fs::file_time_type::clock::now();
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    if (now - entry.last_write_time(ignored) > kMaxAge) fs::remove(entry.path(), ignored);
  }
}

enum class State { Ours, Gone, Damaged, OutOfReach };

// Gone: removed by another process while waiting for the lock. OutOfReach: locked by another process, or not
// accessible.
State SetUp(sqlite3* database, const char* pragmas) {
  if (database && Run(database, pragmas) && Run(database, kTables)) {
    int moved = 0;
    sqlite3_file_control(database, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0 ? State::Gone : State::Ours;
  }
  const int why = database ? sqlite3_errcode(database) & 0xFF : SQLITE_CANTOPEN;
  return why == SQLITE_NOTADB || why == SQLITE_CORRUPT ? State::Damaged : State::OutOfReach;
}

Database OpenAt(const std::string& path) {
  sqlite3* raw = nullptr;
  const int opened = sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  Database database(raw);
  if (opened != SQLITE_OK) return nullptr;
  sqlite3_busy_timeout(raw, kBusyTimeoutMs);
  return database;
}

// Discards the records if they belong to another job, and stores the text of this one.
void AdoptJob(sqlite3* database, const std::string& job) {
  const Statement read = Prepare(database, "SELECT text FROM job");
  if (read && ValueOf(read.get()) == job) return;
  Run(database, "DELETE FROM record; DELETE FROM job");
  const Statement write = Prepare(database, "INSERT INTO job (text) VALUES (?1)");
  if (!write) return;
  Bind(write.get(), 1, job);
  sqlite3_step(write.get());
}

// Returns nullptr if another process has the journal open, or if no journal can be kept.
std::unique_ptr<SqliteJournal> OpenKept(const std::string& path, const std::string& job) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    Database database = OpenAt(path);
    const State state = SetUp(database.get(), kSafe);
    if (state == State::OutOfReach) break;
    if (state == State::Ours) {
      AdoptJob(database.get(), job);
      return std::make_unique<SqliteJournal>(std::move(database), path);
    }
    std::error_code ignored;
    if (state == State::Damaged) fs::remove(path, ignored);
  }
  return nullptr;
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
  SweepOld(folder_);
  return OpenKept(PathOf(part), part.job);
}

std::vector<JobPart> SqliteJournals::PartsOf(const std::string& job, const Wanted& wanted) const {
  std::vector<JobPart> parts;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder_, ignored)) {
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
  Database database = OpenAt(path);
  if (SetUp(database.get(), kFast) != State::Ours) return nullptr;
  return std::make_unique<SqliteJournal>(std::move(database), path);
}

}  // namespace quillon::host::posix
