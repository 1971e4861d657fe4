// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/sqlite_settings.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>

#include "base/path_text.h"
#include "host/files/percent.h"
#include "host/posix/environment.h"

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

std::string UserFolder() { return base::JoinPath(BaseFolder("XDG_CONFIG_HOME", ".config"), "quillon"); }

int Run(sqlite3* database, const char* statement) {
  return sqlite3_exec(database, statement, nullptr, nullptr, nullptr);
}

// SQLITE_CORRUPT where the database says of itself that it is not sound.
int Check(sqlite3* database) {
  sqlite3_stmt* check = nullptr;
  int result = sqlite3_prepare_v2(database, "PRAGMA quick_check(1)", -1, &check, nullptr);
  if (result == SQLITE_OK) {
    const int step = sqlite3_step(check);
    const unsigned char* told = step == SQLITE_ROW ? sqlite3_column_text(check, 0) : nullptr;
    const bool sound = told && std::string(reinterpret_cast<const char*>(told)) == "ok";
    if (step == SQLITE_ROW && !sound) result = SQLITE_CORRUPT;
    if (step != SQLITE_ROW) result = step;
  }
  sqlite3_finalize(check);
  return result;
}

void Bind(sqlite3_stmt* statement, int place, const std::string& text) {
  sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

// Lets one program at a time judge a database and set it aside, so that nobody sets the new one aside too.
class JudgeLock {
 public:
  explicit JudgeLock(const std::string& folder)
      : handle_(open(base::JoinPath(folder, "settings.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (handle_ >= 0) flock(handle_, LOCK_EX);
  }
  ~JudgeLock() {
    if (handle_ >= 0) close(handle_);
  }
  JudgeLock(const JudgeLock&) = delete;
  JudgeLock& operator=(const JudgeLock&) = delete;

 private:
  int handle_;
};

// Lets nothing wait for a lock meanwhile.
class Impatient {
 public:
  Impatient(sqlite3* database, int patience) : database_(database), patience_(patience) {
    if (database_) sqlite3_busy_timeout(database_, 0);
  }
  ~Impatient() {
    if (database_) sqlite3_busy_timeout(database_, patience_);
  }
  Impatient(const Impatient&) = delete;
  Impatient& operator=(const Impatient&) = delete;

 private:
  sqlite3* database_;
  int patience_;
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

SqliteSettings::SqliteSettings(std::string folder, int patience) : folder_(std::move(folder)), patience_(patience) {
  std::error_code ignored;
  fs::create_directories(folder_, ignored);
  OpenSound();
}

SqliteSettings::~SqliteSettings() {
  for (auto& [key, known] : known_) {
    if (!known.stands) TryAgain(key, known);
  }
}

void SqliteSettings::OpenSound() {
  if (!Damaged(Open())) return;
  const JudgeLock lock(folder_);
  // Another program may have begun it anew meanwhile.
  if (!Damaged(Open())) return;
  SetAside();
  Open();
}

void SqliteSettings::Drop() {
  get_.reset();
  set_.reset();
  database_.reset();
}

int SqliteSettings::Open() {
  const std::string path = base::JoinPath(folder_, kDatabase);
  const int result = Open(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  shared_ = result == SQLITE_OK;
  if (shared_ || Damaged(result)) return result;
  // Where nothing may be written, not even beside the database, what stands in it can still be read.
  return Open("file:" + PercentEncoded(path) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

int SqliteSettings::Open(const std::string& place, int flags) {
  Drop();
  sqlite3* opened = nullptr;
  int result = sqlite3_open_v2(place.c_str(), &opened, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
  database_.reset(opened);
  if (result == SQLITE_OK) {
    sqlite3_busy_timeout(opened, patience_);
    result = Prepare();
  }
  if (result != SQLITE_OK) Drop();
  return result;
}

int SqliteSettings::Prepare() {
  sqlite3* database = database_.get();
  if (const int sound = Check(database); sound != SQLITE_OK) return sound;
  // Disks that cannot share memory between programs keep the older journal, which serves as well, only slower.
  Run(database, "PRAGMA journal_mode = WAL");
  Run(database, "PRAGMA synchronous = NORMAL");
  // A database that may only be read has its table already.
  const int made = Run(database, kTable);
  if (Damaged(made)) return made;
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
    // The journal belongs to the damaged one and would spoil the next.
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

// Does it once more where it found damage, in the database begun anew.
int SqliteSettings::Sound(const std::function<int()>& act) {
  const int result = act();
  if (!Damaged(result)) return result;
  OpenSound();
  return act();
}

std::optional<std::string> SqliteSettings::Standing(const Key& key) {
  const Impatient impatient(database_.get(), patience_);
  std::string value;
  const int result = Read(key, value);
  return result == SQLITE_ROW || result == SQLITE_DONE ? std::optional(std::move(value)) : std::nullopt;
}

// For a value that others do not see yet.
std::string SqliteSettings::TryAgain(const Key& key, Known& known) {
  const auto now = Standing(key);
  if (now && known.before && *now != *known.before) {
    known = {*now};
    return known.value;
  }
  const Impatient impatient(database_.get(), patience_);
  known.stands = Write(key, known.value) == SQLITE_DONE;
  return known.value;
}

std::string SqliteSettings::Get(const std::string& application, const std::string& section, const std::string& key) {
  const std::lock_guard lock(mutex_);
  const Key place{application, section, key};
  const auto known = known_.find(place);
  if (known != known_.end() && !known->second.stands) return TryAgain(place, known->second);
  std::string value;
  const int result = Sound([&] { return Read(place, value); });
  if (result == SQLITE_ROW) {
    known_[place] = {value};
    return value;
  }
  if (known == known_.end()) return "";
  // Nobody deletes a value: without one the database was begun anew.
  if (result == SQLITE_DONE) Write(place, known->second.value);
  return known->second.value;
}

bool SqliteSettings::Set(const std::string& application, const std::string& section, const std::string& key,
                         const std::string& value) {
  const std::lock_guard lock(mutex_);
  const Key place{application, section, key};
  if (!shared_) OpenSound();
  Known known{value, false, Standing(place)};
  known.stands = Sound([&] { return Write(place, value); }) == SQLITE_DONE;
  const bool stands = known.stands;
  known_[place] = std::move(known);
  return stands;
}

}  // namespace quillon::host::posix
