// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>

#include "host/host.h"

struct sqlite3;
struct sqlite3_stmt;

namespace quillon::host::posix {

// The settings in a database "settings.db" that several programs may use at once; a value is seen by all of them as
// soon as Set comes back. A damaged database is set aside under another name and begun anew. Where none can be used,
// values live as long as this object and others do not see them. Nothing here fails or throws. Every call may come
// from any thread.
class SqliteSettings final : public Settings {
 public:
  // In $XDG_CONFIG_HOME/quillon, else ~/.config/quillon.
  SqliteSettings();
  explicit SqliteSettings(std::string folder);
  ~SqliteSettings() override;
  SqliteSettings(const SqliteSettings&) = delete;
  SqliteSettings& operator=(const SqliteSettings&) = delete;

  std::string Get(const std::string& application, const std::string& section, const std::string& key) override;
  void Set(const std::string& application, const std::string& section, const std::string& key,
           const std::string& value) override;

 private:
  using Key = std::tuple<std::string, std::string, std::string>;

  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };
  struct EndStatement {
    void operator()(sqlite3_stmt* statement) const;
  };

  int Open();
  int Open(const std::string& place, int flags);
  void OpenSound();
  void Drop();
  int Prepare();
  void SetAside();
  int Read(const Key& key, std::string& value);
  int Write(const Key& key, const std::string& value);
  int Step(sqlite3_stmt* statement, const Key& key);

  std::string folder_;
  std::mutex mutex_;
  std::unique_ptr<sqlite3, CloseDatabase> database_;
  std::unique_ptr<sqlite3_stmt, EndStatement> get_;
  std::unique_ptr<sqlite3_stmt, EndStatement> set_;
  std::map<Key, std::string> unsaved_;  // what the database would not take
};

// The folder of the settings that a helper run in this program folder shares: the program folder itself where it holds
// a database, as that of a private run does, else the user's.
std::string SettingsFolder(const std::string& programFolder);

}  // namespace quillon::host::posix
