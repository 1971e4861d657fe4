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

// The settings in a database "settings.db" that several programs may use at once; a value is seen by all of them as
// soon as Set comes back. A damaged database is set aside under another name and begun anew, with the values that this
// object knows. Where none can be used, or it can only be read, values live as long as this object and others do not
// see them. A value that a lock kept out is tried again by each Get of it and at the end, unless another program has
// written the key since. A read that fails answers what was read or set last. Nothing here throws. Every call may come
// from any thread.
class SqliteSettings final : public Settings {
 public:
  // In $XDG_CONFIG_HOME/quillon, else ~/.config/quillon.
  SqliteSettings();
  // A Set waits as many milliseconds for other programs that are writing.
  static constexpr int kPatience = 5000;
  explicit SqliteSettings(std::string folder, int patience = kPatience);
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
    bool stands = true;
    std::optional<std::string> before = std::nullopt;  // what others saw when it was set, where that could be read
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
  int Sound(const std::function<int()>& act);
  std::optional<std::string> Standing(const Key& key);
  std::string TryAgain(const Key& key, Known& known);

  std::string folder_;
  int patience_;
  bool shared_ = false;  // opened so that others see what is written
  std::mutex mutex_;
  std::unique_ptr<sqlite3, CloseDatabase> database_;
  std::unique_ptr<sqlite3_stmt, EndStatement> get_;
  std::unique_ptr<sqlite3_stmt, EndStatement> set_;
  std::map<Key, Known> known_;
};

// The folder of the settings that a helper run in this program folder shares: the program folder itself where it holds
// a database, as that of a private run does, else the user's.
std::string SettingsFolder(const std::string& programFolder);

}  // namespace quillon::host::posix
