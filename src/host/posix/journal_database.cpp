// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/journal_database.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "host/journal.h"
#include "host/posix/repeat.h"

namespace quillon::host::posix {
namespace {

namespace fs = std::filesystem;

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
    "CREATE TABLE IF NOT EXISTS record (file BLOB NOT NULL, key BLOB NOT NULL, value BLOB NOT NULL, sum INTEGER, "
    "PRIMARY KEY (file, key)) WITHOUT ROWID; COMMIT";
// Earlier versions stored no checksum. Their records are accepted without one.
constexpr const char* kAddSums = "ALTER TABLE record ADD COLUMN sum INTEGER";
constexpr const char* kReadSums = "SELECT sum FROM record";
constexpr const char* kAnyUnfit =
    "SELECT 1 FROM record WHERE NOT (sum IS NULL OR sum IS sum_of(file, key, value)) LIMIT 1";
constexpr const char* kFitForwards =
    "SELECT file, key, value FROM record WHERE sum IS NULL OR sum IS sum_of(file, key, value) ORDER BY file, key";
constexpr const char* kFitBackwards =
    "SELECT file, key, value FROM record WHERE sum IS NULL OR sum IS sum_of(file, key, value) "
    "ORDER BY file DESC, key DESC";

// FNV-1a, with the length of each part before it.
std::uint64_t Mix(std::uint64_t hash, std::string_view part) {
  constexpr std::uint64_t kPrime = 0x100000001B3;
  hash = (hash ^ part.size()) * kPrime;
  for (const char byte : part) hash = (hash ^ static_cast<unsigned char>(byte)) * kPrime;
  return hash;
}

// sum_of(file, key, value): depends on the job too, so that records of another job do not fit.
void SumOf(sqlite3_context* context, int count, sqlite3_value** values) {
  std::uint64_t hash = Mix(0xCBF29CE484222325, *static_cast<const std::string*>(sqlite3_user_data(context)));
  for (int i = 0; i < count; ++i) {
    const void* bytes = sqlite3_value_blob(values[i]);
    const auto size = static_cast<std::size_t>(sqlite3_value_bytes(values[i]));
    hash = Mix(hash, size > 0 ? std::string_view(static_cast<const char*>(bytes), size) : std::string_view());
  }
  sqlite3_result_int64(context, static_cast<sqlite3_int64>(hash));
}

bool DefineSum(sqlite3* database, const std::string& job) {
  return sqlite3_create_function_v2(database, "sum_of", 3, SQLITE_UTF8 | SQLITE_DETERMINISTIC, new std::string(job),
                                    SumOf, nullptr, nullptr,
                                    [](void* text) { delete static_cast<std::string*>(text); }) == SQLITE_OK;
}

enum class State { Ours, Gone, Damaged, OutOfReach };

// SQLITE_ERROR: SQLite does not know the format that the header names, or the tables are not those of a journal.
State StateOf(sqlite3* database) {
  const int why = database ? sqlite3_errcode(database) & 0xFF : SQLITE_CANTOPEN;
  const bool damaged = why == SQLITE_NOTADB || why == SQLITE_CORRUPT || why == SQLITE_ERROR;
  return damaged ? State::Damaged : State::OutOfReach;
}

// Gone: removed by another process while waiting for the lock. OutOfReach: locked by another process, or not
// accessible.
State SetUp(sqlite3* database, const char* pragmas) {
  if (!database || !Run(database, pragmas) || !Run(database, kTables)) return StateOf(database);
  if (!Prepare(database, kReadSums) && !Run(database, kAddSums)) return StateOf(database);
  int moved = 0;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved != 0 ? State::Gone : State::Ours;
}

Database OpenAt(const std::string& path, const std::string& job) {
  sqlite3* raw = nullptr;
  const int opened = sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr);
  Database database(raw);
  if (opened != SQLITE_OK || !DefineSum(raw, job)) return nullptr;
  sqlite3_busy_timeout(raw, kBusyTimeoutMs);
  return database;
}

// Creates an empty file that only the user can read, so that SQLite does not create one for everybody. Returns false if
// there was a file.
bool Create(const std::string& path) {
  const int file = Repeat([&] { return open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR); });
  if (file >= 0) close(file);
  return file >= 0;
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = Repeat([&] { return write(file, bytes.data(), bytes.size()); });
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void Store(sqlite3_stmt* store, const std::string& file, const std::string& key, const std::string& value) {
  Bind(store, 1, file);
  Bind(store, 2, key);
  Bind(store, 3, value);
  sqlite3_step(store);
  sqlite3_reset(store);
}

bool Mark(sqlite3* database) {
  const Statement store = Prepare(database, kStoreRecord);
  if (store) Store(store.get(), "", kTornKey, "1");
  return store != nullptr;
}

bool WriteJob(sqlite3* database, const std::string& job) {
  const Statement write =
      Run(database, "DELETE FROM job") ? Prepare(database, "INSERT INTO job (text) VALUES (?1)") : nullptr;
  if (!write) return false;
  Bind(write.get(), 1, job);
  return sqlite3_step(write.get()) == SQLITE_DONE;
}

// Returns the bytes of a database of the job without records, "" if SQLite cannot make one.
std::string EmptyDatabase(const std::string& job) {
  const Database database = OpenAt(":memory:", job);
  if (SetUp(database.get(), kFast) != State::Ours || !WriteJob(database.get(), job)) return "";
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
      sqlite3_serialize(database.get(), "main", &size, 0), &sqlite3_free);
  return bytes ? std::string(reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)) : "";
}

// Creates a journal that is whole from the moment when it has its name: if a kill or a full disk could leave a part of
// one, the next call would ask the user about a damaged journal. Returns false if there was a file, or if none could be
// created. A disk that has no files without a name gets an empty file, which Check completes.
bool CreateWhole(const std::string& path, const std::string& job) {
  std::error_code error;
  if (fs::exists(path, error)) return false;
  const std::string folder = fs::path(path).parent_path();
  const int file = Repeat([&] { return open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR); });
  if (file < 0) return Create(path);
  const std::string bytes = EmptyDatabase(job);
  const bool whole = !bytes.empty() && WriteAll(file, bytes) && Repeat([&] { return fsync(file); }) == 0;
  const std::string unnamed = "/proc/self/fd/" + std::to_string(file);
  const bool named = whole && linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
  close(file);
  return named;
}

enum class Found { Created, Existing };

// Returns false for a database in which records that are stored might not be found again. A quick check would not find
// records that are out of order.
bool Sound(sqlite3* database) {
  const Statement check = Prepare(database, "PRAGMA integrity_check(1)");
  return check && ValueOf(check.get()) == "ok";
}

// Checks that the database is sound and belongs to the job, and that all records fit. A wrong byte in a key would also
// lead searches for other records astray, so a database with a single record that does not fit is replaced as a whole.
State Check(sqlite3* database, const std::string& job, Found found) {
  const Statement text = Prepare(database, "SELECT text FROM job");
  if (!text || ValueOf(text.get()) != job) {
    if (found == Found::Existing) return State::Damaged;
    return WriteJob(database, job) ? State::Ours : StateOf(database);
  }
  if (found == Found::Existing && !Sound(database)) return State::Damaged;
  const Statement unfit = Prepare(database, kAnyUnfit);
  const int step = unfit ? sqlite3_step(unfit.get()) : SQLITE_ERROR;
  if (step == SQLITE_ROW) return State::Damaged;
  return step == SQLITE_DONE ? State::Ours : StateOf(database);
}

// Stores the records that can be read in that order, up to the first damaged place.
void CopyReadable(sqlite3* from, const char* order, sqlite3* to) {
  const Statement read = Prepare(from, order);
  const Statement store = Prepare(to, kStoreRecord);
  if (!read || !store) return;
  while (sqlite3_step(read.get()) == SQLITE_ROW)
    Store(store.get(), BlobAt(read.get(), 0), BlobAt(read.get(), 1), BlobAt(read.get(), 2));
}

// Replaces a damaged database by a marked one with the records that can be read. Returns false if that fails; the
// damaged one is unchanged then.
bool Rebuild(const std::string& path, const std::string& job) {
  const std::string aside = path + ".new";
  std::error_code error;
  fs::remove(aside, error);
  fs::remove(aside + "-journal", error);
  if (!Create(aside)) return false;
  {
    const Database from = OpenAt(path, job);
    const Database to = OpenAt(aside, job);
    if (!from || SetUp(to.get(), kSafe) != State::Ours || !Run(to.get(), "BEGIN")) return false;
    CopyReadable(from.get(), kFitForwards, to.get());
    CopyReadable(from.get(), kFitBackwards, to.get());
    if (!WriteJob(to.get(), job) || !Mark(to.get()) || !Run(to.get(), "COMMIT")) return false;
  }
  // SQLite would apply the old rollback journal to the new database.
  fs::remove(path + "-journal", error);
  fs::rename(aside, path, error);
  return !error;
}

}  // namespace

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

std::optional<std::string> ValueOf(sqlite3_stmt* statement) {
  std::optional<std::string> value;
  if (sqlite3_step(statement) == SQLITE_ROW) value = BlobAt(statement, 0);
  sqlite3_reset(statement);
  return value;
}

Database OpenJournalDatabase(const std::string& path, const std::string& job) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const Found found = CreateWhole(path, job) ? Found::Created : Found::Existing;
    Database database = OpenAt(path, job);
    State state = SetUp(database.get(), kSafe);
    if (state == State::Ours) state = Check(database.get(), job, found);
    if (state == State::Ours) return database;
    database.reset();
    if (state == State::OutOfReach || (state == State::Damaged && !Rebuild(path, job))) break;
  }
  return nullptr;
}

Database OpenScratchDatabase(const std::string& path) {
  Create(path);
  Database database = OpenAt(path, "");
  return SetUp(database.get(), kFast) == State::Ours ? std::move(database) : nullptr;
}

}  // namespace quillon::host::posix
