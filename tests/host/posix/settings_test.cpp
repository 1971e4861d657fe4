// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <thread>

#include "host/posix/sqlite_settings.h"
#include "host/testing/temp_folder.h"

namespace quillon::host::posix {
namespace {

namespace fs = std::filesystem;
using testing::TempFolder;

class SettingsTest : public ::testing::Test {
 protected:
  // The exit code of act in a process of its own.
  int InChild(const std::function<int()>& act) {
    const pid_t child = fork();
    if (child == 0) _exit(act());
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  TempFolder folder;
};

// Another program at the database.
class Intruder {
 public:
  explicit Intruder(const std::string& path) {
    if (sqlite3_open(path.c_str(), &database_) != SQLITE_OK) throw std::runtime_error("cannot open " + path);
  }
  ~Intruder() { sqlite3_close(database_); }
  Intruder(const Intruder&) = delete;
  Intruder& operator=(const Intruder&) = delete;

  void Does(const char* statement) {
    const int result = sqlite3_exec(database_, statement, nullptr, nullptr, nullptr);
    EXPECT_EQ(result, SQLITE_OK) << statement << ": " << sqlite3_errmsg(database_);
  }

 private:
  sqlite3* database_ = nullptr;
};

// Two programs that do not wait long.
class SharedSettingsTest : public SettingsTest {
 protected:
  static constexpr int kImpatient = 1;

  static bool Set(SqliteSettings& settings, const std::string& value) {
    return settings.Set("Quillon", "Default", "QxBackImg", value);
  }
  static std::string Get(SqliteSettings& settings) { return settings.Get("Quillon", "Default", "QxBackImg"); }

  SqliteSettings program{folder.Path("q"), kImpatient};
  SqliteSettings helper{folder.Path("q"), kImpatient};
  Intruder intruder{folder.Path("q/settings.db")};
};

TEST_F(SharedSettingsTest, AValueThatALockKeptOutIsWrittenByALaterGet) {
  EXPECT_TRUE(Set(program, "old"));
  intruder.Does("BEGIN IMMEDIATE");
  EXPECT_FALSE(Set(program, "command"));
  EXPECT_EQ(Get(program), "command");
  EXPECT_EQ(Get(helper), "old");
  intruder.Does("COMMIT");
  EXPECT_EQ(Get(program), "command");
  EXPECT_EQ(Get(helper), "command");
  EXPECT_TRUE(Set(helper, "1"));
  EXPECT_EQ(Get(program), "1");
}

TEST_F(SharedSettingsTest, AValueThatALockKeptOutIsWrittenAtTheEnd) {
  {
    SqliteSettings brief(folder.Path("q"), kImpatient);
    intruder.Does("BEGIN IMMEDIATE");
    EXPECT_FALSE(Set(brief, "answer"));
    intruder.Does("COMMIT");
    EXPECT_EQ(Get(program), "");
  }
  EXPECT_EQ(Get(program), "answer");
}

TEST_F(SharedSettingsTest, AnAnswerGivenMeanwhileStands) {
  for (const char* before : {"", "old"}) {
    if (*before != '\0') Set(helper, before);
    intruder.Does("BEGIN IMMEDIATE");
    EXPECT_FALSE(Set(program, "command"));
    intruder.Does("COMMIT");
    EXPECT_TRUE(Set(helper, "answer"));
    EXPECT_EQ(Get(program), "answer");
    EXPECT_EQ(Get(helper), "answer");
  }
}

// Nothing is ever deleted, so a value that is gone went with a database that somebody set aside.
TEST_F(SharedSettingsTest, AValueIsPutIntoADatabaseBegunAnew) {
  EXPECT_TRUE(Set(program, "/a.jpg"));
  intruder.Does("DELETE FROM setting");
  EXPECT_EQ(Get(helper), "");
  EXPECT_EQ(Get(program), "/a.jpg");
  EXPECT_EQ(Get(helper), "/a.jpg");
}

TEST_F(SharedSettingsTest, AReadThatFailsAnswersWhatWasKnown) {
  EXPECT_TRUE(Set(program, "/a.jpg"));
  EXPECT_EQ(Get(helper), "/a.jpg");
  intruder.Does("ALTER TABLE setting RENAME TO elsewhere");
  EXPECT_EQ(Get(program), "/a.jpg");
  EXPECT_EQ(Get(helper), "/a.jpg");
  EXPECT_EQ(helper.Get("Quillon", "Default", "Other"), "");
  intruder.Does("ALTER TABLE elsewhere RENAME TO setting");
  EXPECT_TRUE(Set(helper, ""));
  EXPECT_EQ(Get(program), "");
}

TEST_F(SettingsTest, ADatabaseThatIsLockedAtTheStartIsSharedLater) {
  SqliteSettings(folder.Path("q")).Set("Quillon", "Default", "Key", "old");
  std::optional<Intruder> intruder(folder.Path("q/settings.db"));
  intruder->Does("PRAGMA locking_mode = EXCLUSIVE");
  intruder->Does("BEGIN EXCLUSIVE");
  SqliteSettings settings(folder.Path("q"), 1);
  EXPECT_FALSE(settings.Set("Quillon", "Default", "Key", "new"));
  EXPECT_EQ(settings.Get("Quillon", "Default", "Key"), "new");
  intruder->Does("COMMIT");
  intruder.reset();
  EXPECT_TRUE(settings.Set("Quillon", "Default", "Key", "newer"));
  EXPECT_EQ(SqliteSettings(folder.Path("q")).Get("Quillon", "Default", "Key"), "newer");
}

TEST_F(SettingsTest, AMissingValueIsEmpty) {
  SqliteSettings settings(folder.Path("q"));
  EXPECT_EQ(settings.Get("Quillon", "Default", "InDir"), "");
}

TEST_F(SettingsTest, KeepsValuesByAllThreeNames) {
  {
    SqliteSettings settings(folder.Path("q"));
    settings.Set("Quillon", "Default", "InDir", "/a");
    settings.Set("Quillon", "Default", "OutDir", "/b");
    settings.Set("PicsCut", "Default", "InDir", "/c");
    settings.Set("Quillon", "Other", "InDir", "/d");
    settings.Set("Quillon", "Default", "OutDir", "/e");
  }
  SqliteSettings settings(folder.Path("q"));
  EXPECT_EQ(settings.Get("Quillon", "Default", "InDir"), "/a");
  EXPECT_EQ(settings.Get("Quillon", "Default", "OutDir"), "/e");
  EXPECT_EQ(settings.Get("PicsCut", "Default", "InDir"), "/c");
  EXPECT_EQ(settings.Get("Quillon", "Other", "InDir"), "/d");
  EXPECT_EQ(settings.Get("quillon", "Default", "InDir"), "");
}

TEST_F(SettingsTest, KeepsTextsAsTheyAre) {
  SqliteSettings settings(folder.Path("q"));
  for (const std::string& text : {std::string(""), std::string("图 'x' \"y\"; --"), std::string("\xCD\xBC/\xC6"),
                                  std::string("a\0b", 3), std::string(100'000, 'z')}) {
    settings.Set("Quillon", "Default", "Key", text);
    EXPECT_EQ(settings.Get("Quillon", "Default", "Key"), text);
  }
}

TEST_F(SettingsTest, AnotherProcessSeesAValueAtOnce) {
  SqliteSettings settings(folder.Path("q"));
  settings.Set("Quillon", "Default", "SplitPdf", "");
  for (int i = 1; i <= 5; ++i) {
    const std::string text = std::to_string(i);
    settings.Set("Quillon", "Default", "SplitPdf", text);
    EXPECT_EQ(InChild([&] {
                SqliteSettings other(folder.Path("q"));
                if (other.Get("Quillon", "Default", "SplitPdf") != text) return 1;
                other.Set("Quillon", "Default", "CutPdf", "answer " + text);
                return 0;
              }),
              0);
    EXPECT_EQ(settings.Get("Quillon", "Default", "CutPdf"), "answer " + text);
  }
}

TEST_F(SettingsTest, ProcessesThatWriteAtOnceLoseNothing) {
  std::vector<pid_t> children;
  for (int c = 0; c < 4; ++c) {
    const pid_t child = fork();
    if (child == 0) {
      SqliteSettings settings(folder.Path("q"));
      for (int i = 0; i < 100; ++i) {
        settings.Set("Quillon", "Default", std::to_string(c) + "-" + std::to_string(i), "x" + std::to_string(i));
      }
      _exit(0);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  SqliteSettings settings(folder.Path("q"));
  for (int c = 0; c < 4; ++c) {
    for (int i = 0; i < 100; ++i) {
      ASSERT_EQ(settings.Get("Quillon", "Default", std::to_string(c) + "-" + std::to_string(i)),
                "x" + std::to_string(i));
    }
  }
}

TEST_F(SettingsTest, ThreadsMayShareOne) {
  SqliteSettings settings(folder.Path("q"));
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 50; ++i) {
        settings.Set("Quillon", "Default", std::to_string(t), std::to_string(i));
        EXPECT_EQ(settings.Get("Quillon", "Default", std::to_string(t)), std::to_string(i));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST_F(SettingsTest, ADamagedDatabaseIsSetAside) {
  const std::string rubbish(5000, 'x');
  folder.Write("q/settings.db", rubbish);
  {
    SqliteSettings settings(folder.Path("q"));
    EXPECT_EQ(settings.Get("Quillon", "Default", "Key"), "");
    settings.Set("Quillon", "Default", "Key", "new");
    EXPECT_EQ(settings.Get("Quillon", "Default", "Key"), "new");
  }
  EXPECT_EQ(folder.Read("q/settings.damaged-1.db"), rubbish);
  EXPECT_EQ(SqliteSettings(folder.Path("q")).Get("Quillon", "Default", "Key"), "new");
}

TEST_F(SettingsTest, ADatabaseDamagedInTheMiddleIsSetAside) {
  {
    SqliteSettings settings(folder.Path("q"));
    for (int i = 0; i < 2000; ++i) settings.Set("Quillon", "Default", std::to_string(i), std::string(50, 'v'));
  }
  std::string bytes = folder.Read("q/settings.db");
  ASSERT_GT(bytes.size(), 40'000u);
  for (std::size_t i = 8192; i < 30'000; ++i) bytes[i] = static_cast<char>(i * 31);
  folder.Write("q/settings.db", bytes);
  SqliteSettings settings(folder.Path("q"));
  settings.Set("Quillon", "Default", "Key", "new");
  EXPECT_EQ(settings.Get("Quillon", "Default", "Key"), "new");
  EXPECT_EQ(folder.Read("q/settings.damaged-1.db"), bytes);
}

// SQLite refuses it with the result for an error in a statement.
TEST_F(SettingsTest, ADatabaseOfAnUnknownFormatIsSetAside) {
  constexpr std::size_t kFormat = 47;  // the last byte of the number of the format of its schema
  SqliteSettings(folder.Path("q")).Set("Quillon", "Default", "Key", "old");
  std::string bytes = folder.Read("q/settings.db");
  ASSERT_GT(bytes.size(), kFormat);
  bytes[kFormat] = 99;
  folder.Write("q/settings.db", bytes);
  EXPECT_TRUE(SqliteSettings(folder.Path("q")).Set("Quillon", "Default", "Key", "new"));
  EXPECT_EQ(SqliteSettings(folder.Path("q")).Get("Quillon", "Default", "Key"), "new");
  EXPECT_EQ(folder.Read("q/settings.damaged-1.db"), bytes);
}

TEST_F(SettingsTest, ASecondDamageKeepsTheFirst) {
  for (const char* rubbish : {"first rubbish that is no database", "second rubbish that is no database"}) {
    folder.Write("q/settings.db", std::string(rubbish) + std::string(600, '.'));
    for (const char* tail : {"-wal", "-shm"}) fs::remove(folder.Path("q/settings.db") + tail);
    SqliteSettings(folder.Path("q")).Set("Quillon", "Default", "Key", "new");
  }
  EXPECT_TRUE(folder.Read("q/settings.damaged-1.db").starts_with("first"));
  EXPECT_TRUE(folder.Read("q/settings.damaged-2.db").starts_with("second"));
}

TEST_F(SettingsTest, WithoutAPlaceValuesLiveOnInMemory) {
  folder.Write("file", "");
  SqliteSettings settings(folder.Path("file/q"));
  EXPECT_EQ(settings.Get("Quillon", "Default", "Key"), "");
  EXPECT_FALSE(settings.Set("Quillon", "Default", "Key", "kept"));
  EXPECT_EQ(settings.Get("Quillon", "Default", "Key"), "kept");
}

TEST_F(SettingsTest, AReadOnlyDatabaseIsReadAndChangesLiveOnInMemory) {
  SqliteSettings(folder.Path("q")).Set("Quillon", "Default", "Key", "stored");
  EXPECT_EQ(InChild([&] {
              fs::permissions(folder.Path(), fs::perms::group_all | fs::perms::others_all, fs::perm_options::add);
              fs::permissions(folder.Path("q"), fs::perms(0555));
              fs::permissions(folder.Path("q/settings.db"), fs::perms(0444));
              if (geteuid() == 0 && setuid(65534) != 0) return 9;
              SqliteSettings settings(folder.Path("q"));
              if (settings.Get("Quillon", "Default", "Key") != "stored") return 1;
              if (settings.Set("Quillon", "Default", "Key", "changed")) return 3;
              return settings.Get("Quillon", "Default", "Key") == "changed" ? 0 : 2;
            }),
            0);
  EXPECT_EQ(SqliteSettings(folder.Path("q")).Get("Quillon", "Default", "Key"), "stored");
}

TEST_F(SettingsTest, LiesInTheUsersConfiguration) {
  EXPECT_EQ(InChild([&] {
              setenv("XDG_CONFIG_HOME", folder.Path("config").c_str(), 1);
              SqliteSettings().Set("Quillon", "Default", "Key", "a");
              unsetenv("XDG_CONFIG_HOME");
              setenv("HOME", folder.Path("home").c_str(), 1);
              SqliteSettings().Set("Quillon", "Default", "Key", "b");
              return 0;
            }),
            0);
  EXPECT_EQ(SqliteSettings(folder.Path("config/quillon")).Get("Quillon", "Default", "Key"), "a");
  EXPECT_EQ(SqliteSettings(folder.Path("home/.config/quillon")).Get("Quillon", "Default", "Key"), "b");
}

}  // namespace
}  // namespace quillon::host::posix
