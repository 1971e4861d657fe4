// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <string>

// The SQLite database of a journal: the text of its job, and a table of records (file, key, value) with a checksum
// each.
//
// OpenJournalDatabase reads all records of an existing database. If SQLite cannot read it to its end, or a record does
// not fit its checksum, the file is replaced by a new database with the records that can be read. The new one has the
// mark host::kTornKey, which stays until the owner removes it.
namespace quillon::host::posix {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct EndStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, EndStatement>;

// Stores the record that is bound to 1, 2 and 3.
inline constexpr const char* kStoreRecord =
    "INSERT OR REPLACE INTO record (file, key, value, sum) VALUES (?1, ?2, ?3, sum_of(?1, ?2, ?3))";

// Returns false if any of the statements failed.
bool Run(sqlite3* database, const char* text);
// Returns nullptr if the database is not as expected.
Statement Prepare(sqlite3* database, const char* text);
void Bind(sqlite3_stmt* statement, int place, const std::string& bytes);
std::string BlobAt(sqlite3_stmt* statement, int column);
// Returns the value of the first row, nullopt if there is none.
std::optional<std::string> ValueOf(sqlite3_stmt* statement);

// Opens the journal of the job, or creates an empty one that only its user can read.
// Returns nullptr if another process has it open, or if no journal can be kept.
Database OpenJournalDatabase(const std::string& path, const std::string& job);
// Creates a temporary one. Nothing is synced. Returns nullptr if the file cannot be created.
Database OpenScratchDatabase(const std::string& path);

}  // namespace quillon::host::posix
