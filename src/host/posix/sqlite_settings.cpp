// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/sqlite_settings.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

#include "base/path_text.h"
#include "host/posix/environment.h"
#include "host/posix/repeat.h"

namespace quillon::host::posix {
namespace {

namespace fs = std::filesystem;

constexpr int kMostAside = 1000;

constexpr const char* kDatabase = "settings.db";
constexpr const char* kTable =
    "CREATE TABLE IF NOT EXISTS setting ("
    "application TEXT NOT NULL, section TEXT NOT NULL, key TEXT NOT NULL, value TEXT NOT NULL, "
    "PRIMARY KEY (application, section, key)) WITHOUT ROWID";
constexpr const char* kGet = "SELECT value FROM setting WHERE application = ?1 AND section = ?2 AND key = ?3";
constexpr const char* kSet =
    "INSERT INTO setting (application, section, key, value) VALUES (?1, ?2, ?3, ?4) "
    "ON CONFLICT (application, section, key) DO UPDATE SET value = excluded.value";

bool Damaged(int result) { return (result & 0xFF) == SQLITE_CORRUPT || (result & 0xFF) == SQLITE_NOTADB; }

// Returns true if a database cannot be opened for good. SQLITE_ERROR: SQLite does not know the format that the header
// names, or the table is not that of the settings.
bool Unusable(int result) { return Damaged(result) || (result & 0xFF) == SQLITE_ERROR; }

std::string UserFolder() { return base::JoinPath(BaseFolder("XDG_CONFIG_HOME", ".config"), "quillon"); }

int Run(sqlite3* database, const char* statement) {
  return sqlite3_exec(database, statement, nullptr, nullptr, nullptr);
}

// Returns SQLITE_CORRUPT if the integrity check of the database fails.
int Check(sqlite3* database) {
  sqlite3_stmt* check = nullptr;
  int result = sqlite3_prepare_v2(database, "PRAGMA integrity_check(1)", -1, &check, nullptr);
  if (result == SQLITE_OK) {
    const int step = sqlite3_step(check);
    const unsigned char* report = step == SQLITE_ROW ? sqlite3_column_text(check, 0) : nullptr;
    const bool sound = report && std::string(reinterpret_cast<const char*>(report)) == "ok";
    if (step == SQLITE_ROW && !sound) result = SQLITE_CORRUPT;
    if (step != SQLITE_ROW) result = step;
  }
  sqlite3_finalize(check);
  return result;
}

void Bind(sqlite3_stmt* statement, int place, const std::string& text) {
  sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

// Lets only one program at a time check and replace a damaged database; a second one could set the new database aside.
class RepairLock {
 public:
  explicit RepairLock(const std::string& folder)
      : handle_(Repeat([path = base::JoinPath(folder, "settings.lock")] {
          return open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        })) {
    if (handle_ >= 0) Repeat([this] { return flock(handle_, LOCK_EX); });
  }
  ~RepairLock() {
    if (handle_ >= 0) close(handle_);
  }
  RepairLock(const RepairLock&) = delete;
  RepairLock& operator=(const RepairLock&) = delete;

 private:
  int handle_;
};

// Turns the busy timeout off for a while, so that calls fail at once if the database is locked.
class NoBusyTimeout {
 public:
  NoBusyTimeout(sqlite3* database, int busyTimeoutMs) : database_(database), busyTimeoutMs_(busyTimeoutMs) {
    if (database_) sqlite3_busy_timeout(database_, 0);
  }
  ~NoBusyTimeout() {
    if (database_) sqlite3_busy_timeout(database_, busyTimeoutMs_);
  }
  NoBusyTimeout(const NoBusyTimeout&) = delete;
  NoBusyTimeout& operator=(const NoBusyTimeout&) = delete;

 private:
  sqlite3* database_;
  int busyTimeoutMs_;
};

}  // namespace

void SqliteSettings::CloseDatabase::operator()(sqlite3* database) const { sqlite3_close_v2(database); }
void SqliteSettings::EndStatement::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

std::string SettingsFolder(const std::string& programFolder) {
  std::error_code ignored;
  if (fs::is_regular_file(base::JoinPath(programFolder, kDatabase), ignored)) return programFolder;
  return UserFolder();
}

SqliteSettings::SqliteSettings() : SqliteSettings(UserFolder()) {}

SqliteSettings::SqliteSettings(std::string folder, int busyTimeoutMs)
    : folder_(std::move(folder)), busyTimeoutMs_(busyTimeoutMs) {
  std::error_code ignored;
  fs::create_directories(folder_, ignored);
  OpenOrReplace();
}

SqliteSettings::~SqliteSettings() {
  for (auto& [key, known] : known_) {
    if (!known.shared) RetryWrite(key, known);
  }
}

void SqliteSettings::OpenOrReplace() {
  if (!Unusable(Open())) return;
  const RepairLock lock(folder_);
  // Another program may have replaced it before this one got the lock.
  if (!Unusable(Open())) return;
  SetAside();
  Open();
}

void SqliteSettings::Disconnect() {
  get_.reset();
  set_.reset();
  database_.reset();
}

int SqliteSettings::Open() {
  const std::string path = base::JoinPath(folder_, kDatabase);
  const int result = Open(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  writable_ = result == SQLITE_OK;
  if (writable_ || Unusable(result)) return result;
  // If the folder is not writable, the stored values can still be read. An immutable database needs no file beside it.
  const std::string immutable = "file:" + base::PercentEncoded(path) + "?immutable=1";
  return Open(immutable, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI) == SQLITE_OK ? SQLITE_OK : result;
}

int SqliteSettings::Open(const std::string& place, int flags) {
  Disconnect();
  sqlite3* opened = nullptr;
  int result = sqlite3_open_v2(place.c_str(), &opened, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
  database_.reset(opened);
  if (result == SQLITE_OK) {
    sqlite3_busy_timeout(opened, busyTimeoutMs_);
    result = Prepare();
  }
  if (result != SQLITE_OK) Disconnect();
  return result;
}

int SqliteSettings::Prepare() {
  sqlite3* database = database_.get();
  if (const int sound = Check(database); sound != SQLITE_OK) return sound;
  // File systems without shared memory keep the rollback journal, which works too but is slower.
  Run(database, "PRAGMA journal_mode = WAL");
  Run(database, "PRAGMA synchronous = NORMAL");
  // This fails for a read-only database, which has its table already.
  const int made = Run(database, kTable);
  if (made != SQLITE_OK && (made & 0xFF) != SQLITE_READONLY) return made;
  sqlite3_stmt* statement = nullptr;
  int result = sqlite3_prepare_v3(database, kGet, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  get_.reset(statement);
  if (result != SQLITE_OK) return result;
  result = sqlite3_prepare_v3(database, kSet, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  set_.reset(statement);
  return result;
}

void SqliteSettings::SetAside() {
  const std::string path = base::JoinPath(folder_, kDatabase);
  std::error_code error;
  for (int number = 1; number <= kMostAside; ++number) {
    const std::string aside = base::JoinPath(folder_, "settings.damaged-" + std::to_string(number) + ".db");
    if (fs::exists(fs::symlink_status(aside, error))) continue;
    fs::rename(path, aside, error);
    // The journal files belong to the damaged database and must not be applied to the new one.
    for (const char* tail : {"-wal", "-shm", "-journal"}) fs::rename(path + tail, aside + tail, error);
    return;
  }
}

int SqliteSettings::Step(sqlite3_stmt* statement, const Key& key) {
  Bind(statement, 1, std::get<0>(key));
  Bind(statement, 2, std::get<1>(key));
  Bind(statement, 3, std::get<2>(key));
  return sqlite3_step(statement);
}

int SqliteSettings::Read(const Key& key, std::string& value) {
  if (!get_) return SQLITE_CANTOPEN;
  const int result = Step(get_.get(), key);
  if (result == SQLITE_ROW) {
    const void* text = sqlite3_column_blob(get_.get(), 0);
    const int size = sqlite3_column_bytes(get_.get(), 0);
    value = text ? std::string(static_cast<const char*>(text), static_cast<std::size_t>(size)) : "";
  }
  sqlite3_reset(get_.get());
  return result;
}

int SqliteSettings::Write(const Key& key, const std::string& value) {
  if (!set_) return SQLITE_CANTOPEN;
  Bind(set_.get(), 4, value);
  const int result = Step(set_.get(), key);
  sqlite3_reset(set_.get());
  return result;
}

// Calls act again in the new database if the first call found damage.
int SqliteSettings::RetryIfDamaged(const std::function<int()>& act) {
  const int result = act();
  if (!Damaged(result)) return result;
  OpenOrReplace();
  return act();
}

std::optional<std::string> SqliteSettings::SharedValue(const Key& key) {
  const NoBusyTimeout noTimeout(database_.get(), busyTimeoutMs_);
  std::string value;
  const int result = Read(key, value);
  return result == SQLITE_ROW || result == SQLITE_DONE ? std::optional(std::move(value)) : std::nullopt;
}

// Writes a value again that is not shared yet. If another program has changed the key since, that value wins.
std::string SqliteSettings::RetryWrite(const Key& key, Known& known) {
  const auto now = SharedValue(key);
  if (now && known.before && *now != *known.before) {
    known = {*now};
    return known.value;
  }
  const NoBusyTimeout noTimeout(database_.get(), busyTimeoutMs_);
  known.shared = Write(key, known.value) == SQLITE_DONE;
  return known.value;
}

std::string SqliteSettings::Get(const std::string& application, const std::string& section, const std::string& key) {
  const std::lock_guard lock(mutex_);
  const Key place{application, section, key};
  const auto known = known_.find(place);
  if (known != known_.end() && !known->second.shared) return RetryWrite(place, known->second);
  std::string value;
  const int result = RetryIfDamaged([&] { return Read(place, value); });
  if (result == SQLITE_ROW) {
    known_[place] = {value};
    return value;
  }
  if (known == known_.end()) return "";
  // Values are never deleted, so a missing one means that the database was replaced.
  if (result == SQLITE_DONE) Write(place, known->second.value);
  return known->second.value;
}

bool SqliteSettings::Set(const std::string& application, const std::string& section, const std::string& key,
                         const std::string& value) {
  const std::lock_guard lock(mutex_);
  const Key place{application, section, key};
  if (!writable_) OpenOrReplace();
  Known known{value, false, SharedValue(place)};
  known.shared = RetryIfDamaged([&] { return Write(place, value); }) == SQLITE_DONE;
  const bool shared = known.shared;
  known_[place] = std::move(known);
  return shared;
}

}  // namespace quillon::host::posix
