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

constexpr std::chrono::hours kKept{24 * 60};
constexpr const char* kExtension = ".db";
constexpr char kParting = '-';
// Others that only look into a journal, or repair one of a killed process, are done with it sooner.
constexpr int kWaitMilliseconds = 1000;
constexpr int kAttempts = 5;

// Little is held in memory, however long a journal grows.
constexpr const char* kSafe = "PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL; PRAGMA cache_size = -512";
constexpr const char* kFast = "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA cache_size = -512";
// One process has the journal for itself. It keeps no lock while it waits for that, so that of two who wait none keeps
// the other waiting.
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

// The first value of the only row, nothing without a row.
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
  // One that holds nothing leaves nothing.
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

  void Each(const std::string& key, const std::function<void(const std::string& file)>& take) override {
    const Statement each = Prepare(Raw(), "SELECT file FROM record WHERE key = ?1");
    if (!each) return;
    Bind(each.get(), 1, key);
    while (sqlite3_step(each.get()) == SQLITE_ROW) take(BlobAt(each.get(), 0));
  }

  void Commit() override {
    if (database_ && sqlite3_get_autocommit(Raw()) == 0) Run(Raw(), "COMMIT");
  }

  void Clear() override { Run(Raw(), "DELETE FROM record"); }
  bool Empty() const {
    const Statement any = Prepare(Raw(), "SELECT 1 FROM record LIMIT 1");
    return any && sqlite3_step(any.get()) == SQLITE_DONE;
  }

  // The file goes while it is still ours: one who waits for it notices, and makes another.
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

// A short name for a long text. The text itself stands in the database, should two ever meet in one name.
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
    if (now - entry.last_write_time(ignored) > kKept) fs::remove(entry.path(), ignored);
  }
}

enum class State { Ours, Gone, Damaged, OutOfReach };

// Gone is one that was removed while it was waited for, out of reach what another process has, and what cannot be read
// or written now.
State SetUp(sqlite3* database, const char* manner) {
  if (database && Run(database, manner) && Run(database, kTables)) {
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
  sqlite3_busy_timeout(raw, kWaitMilliseconds);
  return database;
}

void ReadJob(sqlite3* database, const std::string& job) {
  const Statement read = Prepare(database, "SELECT text FROM job");
  if (read && ValueOf(read.get()) == job) return;
  Run(database, "DELETE FROM record; DELETE FROM job");
  const Statement write = Prepare(database, "INSERT INTO job (text) VALUES (?1)");
  if (!write) return;
  Bind(write.get(), 1, job);
  sqlite3_step(write.get());
}

// nullptr where another process has it, or none can be kept.
std::unique_ptr<SqliteJournal> OpenKept(const std::string& path, const std::string& job) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    Database database = OpenAt(path);
    const State state = SetUp(database.get(), kSafe);
    if (state == State::OutOfReach) break;
    if (state == State::Ours) {
      ReadJob(database.get(), job);
      return std::make_unique<SqliteJournal>(std::move(database), path);
    }
    std::error_code ignored;
    if (state == State::Damaged) fs::remove(path, ignored);
  }
  return nullptr;
}

// The part of the job that a journal of that name is of; nothing where it is of another job, or is no journal.
std::optional<JobPart> PartNamed(const std::string& name, const std::string& job) {
  const std::string begin = NameOf(job) + kParting;
  if (!name.starts_with(begin) || !name.ends_with(kExtension)) return std::nullopt;
  std::istringstream rest(name.substr(begin.size()));
  JobPart part{job, 0, 0};
  char parting = 0;
  const bool read = rest >> part.index >> parting >> part.count && parting == kParting && part.count > 0;
  return read ? std::optional(part) : std::nullopt;
}

}  // namespace

SqliteJournals::SqliteJournals()
    : folder_(base::JoinPath(BaseFolder("XDG_CONFIG_HOME", ".config"), "quillon/journals")) {}

std::string SqliteJournals::PathOf(const JobPart& part) const {
  const std::string name =
      NameOf(part.job) + kParting + std::to_string(part.index) + kParting + std::to_string(part.count) + kExtension;
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
  // Processes that take several must take them in one order.
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
