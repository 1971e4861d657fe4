// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>

#include "host/host.h"

struct sqlite3;
struct sqlite3_stmt;

namespace quillon::host::posix {

// Settings in a database "settings.db", shared by several programs at once. Others see a value as soon as Set returns.
//
// Nothing here throws, and every method may be called from any thread. Failures are handled as follows:
// - A damaged database is renamed, and a new one is created with the values that this object knows.
// - If no database can be used, or only for reading, values are kept in this object and others do not see them.
// - A value that could not be written because of a lock is written again by each Get of it and by the destructor,
//   unless another program has written the key since.
// - A read that fails returns the value that was read or set last.
class SqliteSettings final : public Settings {
 public:
  // Uses $XDG_CONFIG_HOME/quillon, otherwise ~/.config/quillon.
  SqliteSettings();
  // The time in milliseconds that Set waits while other programs are writing.
  static constexpr int kBusyTimeoutMs = 5000;
  explicit SqliteSettings(std::string folder, int busyTimeoutMs = kBusyTimeoutMs);
  ~SqliteSettings() override;
  SqliteSettings(const SqliteSettings&) = delete;
  SqliteSettings& operator=(const SqliteSettings&) = delete;

  std::string Get(const std::string& application, const std::string& section, const std::string& key) override;
  bool Set(const std::string& application, const std::string& section, const std::string& key,
           const std::string& value) override;

 private:
  using Key = std::tuple<std::string, std::string, std::string>;

  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };
  struct EndStatement {
    void operator()(sqlite3_stmt* statement) const;
  };

  // A value as this object knows it.
  struct Known {
    std::string value;
    bool shared = true;                                // stored in the database, so that others see it
    std::optional<std::string> before = std::nullopt;  // the shared value when it was set, if that could be read
  };

  int Open();
  int Open(const std::string& place, int flags);
  void OpenOrReplace();
  void Disconnect();
  int Prepare();
  void SetAside();
  int Read(const Key& key, std::string& value);
  int Write(const Key& key, const std::string& value);
  int Step(sqlite3_stmt* statement, const Key& key);
  int RetryIfDamaged(const std::function<int()>& act);
  std::optional<std::string> SharedValue(const Key& key);
  std::string RetryWrite(const Key& key, Known& known);

  std::string folder_;
  int busyTimeoutMs_;
  bool writable_ = false;  // the database is open for writing
  std::mutex mutex_;
  std::unique_ptr<sqlite3, CloseDatabase> database_;
  std::unique_ptr<sqlite3_stmt, EndStatement> get_;
  std::unique_ptr<sqlite3_stmt, EndStatement> set_;
  std::map<Key, Known> known_;
};

// Returns the folder of the settings for a helper in this program folder: the program folder itself if it contains a
// database, as in a private run, otherwise the user's folder.
std::string SettingsFolder(const std::string& programFolder);

}  // namespace quillon::host::posix
