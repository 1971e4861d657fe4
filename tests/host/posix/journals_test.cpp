// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <set>
#include <thread>

#include "host/posix/sqlite_journals.h"
#include "host/testing/temp_folder.h"

namespace quillon::host {
namespace {

class JournalsTest : public ::testing::Test {
 protected:
  host::testing::TempFolder folder;
  posix::SqliteJournals journals{folder.Path("journals")};
};

TEST_F(JournalsTest, RememberBeyondTheirEnd) {
  const std::string file = "/a/\xFF\n照片.jpg";
  const std::string value("1\0\n2", 4);
  {
    const auto journal = journals.Open({"job"});
    ASSERT_TRUE(journal);
    EXPECT_EQ(journal->Get(file, "done"), std::nullopt);
    journal->Set(file, "done", "0");
    journal->Set(file, "done", value);
    journal->Set(file, "frame", "x");
    EXPECT_EQ(journal->Get(file, "done"), value);
    journal->Commit();
  }
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_EQ(journal->Get(file, "done"), value);
  EXPECT_EQ(journal->Get(file, "frame"), "x");
  EXPECT_EQ(journal->Get(file, "other"), std::nullopt);
  EXPECT_EQ(journal->Get("/a/b", "done"), std::nullopt);
  EXPECT_EQ(journal->Count("done"), 1u);
  journal->Set("/b", "done", "");
  std::set<std::string> files;
  journal->Each("done", [&](const std::string& one) { files.insert(one); });
  EXPECT_EQ(files, (std::set<std::string>{file, "/b"}));
  journal->Clear();
  EXPECT_EQ(journal->Count("done"), 0u);
}

TEST_F(JournalsTest, EachJobHasItsOwn) {
  journals.Open({"one"})->Set("f", "k", "1");
  EXPECT_EQ(journals.Open({"two"})->Get("f", "k"), std::nullopt);
  EXPECT_EQ(journals.Open({"one"})->Get("f", "k"), "1");
}

TEST_F(JournalsTest, AFinishedJobLeavesNothing) {
  const auto journal = journals.Open({"job"});
  journal->Set("f", "k", "1");
  journal->Commit();
  EXPECT_FALSE(folder.Names("journals").empty());
  journal->Remove();
  EXPECT_TRUE(folder.Names("journals").empty());
  EXPECT_EQ(journals.Open({"job"})->Get("f", "k"), std::nullopt);
}

TEST_F(JournalsTest, OneProcessAtATime) {
  const auto mine = journals.Open({"job"});
  ASSERT_TRUE(mine);
  posix::SqliteJournals others(folder.Path("journals"));
  EXPECT_EQ(others.Open({"job"}), nullptr);
  EXPECT_NE(others.Open({"another"}), nullptr);
}

TEST_F(JournalsTest, EachPartOfAJobHasItsOwn) {
  journals.Open({"job", 0, 2})->Set("f", "k", "1");
  for (const JobPart& other : {JobPart{"job", 1, 2}, JobPart{"job", 0, 3}, JobPart{"job"}}) {
    EXPECT_EQ(journals.Open(other)->Get("f", "k"), std::nullopt) << other.index << "/" << other.count;
  }
  EXPECT_EQ(journals.Open({"job", 0, 2})->Get("f", "k"), "1");
}

TEST_F(JournalsTest, APartIsUnfinishedAsLongAsItsJournalHoldsAnything) {
  const auto any = [](const JobPart&) { return true; };
  const JobPart part{"job", 10, 12};
  EXPECT_EQ(journals.FindUnfinished("job", any), std::nullopt);
  // Of a run that was killed before it did anything.
  auto killed = journals.Open({"job", 0, 3});
  const std::string left = folder.Path("journals/" + folder.Names("journals").at(0));
  std::filesystem::copy_file(left, folder.Path("copy"));
  killed.reset();
  std::filesystem::rename(folder.Path("copy"), left);
  journals.Open({"other", 1, 12})->Set("f", "k", "1");
  EXPECT_EQ(journals.FindUnfinished("job", any), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(left));
  journals.Open(part)->Set("f", "k", "1");
  EXPECT_EQ(journals.FindUnfinished("job", any), part);
  EXPECT_EQ(journals.FindUnfinished("job", [](const JobPart& one) { return one.count != 12; }), std::nullopt);
  EXPECT_EQ(journals.FindUnfinished("job", any), part) << "found, and not changed";
  journals.Open(part)->Remove();
  EXPECT_EQ(journals.FindUnfinished("job", any), std::nullopt);
  const auto used = journals.Open(part);
  EXPECT_EQ(posix::SqliteJournals(folder.Path("journals")).FindUnfinished("job", any), part);
}

TEST_F(JournalsTest, PartsAreForgottenAllOrNone) {
  const auto ofFour = [](const JobPart& part) { return part.count == 4; };
  for (const JobPart& part : {JobPart{"job", 0, 4}, JobPart{"job", 3, 4}, JobPart{"job", 0, 2}, JobPart{"two", 0, 4}}) {
    journals.Open(part)->Set("f", "k", "1");
  }
  auto used = journals.Open({"job", 3, 4});
  EXPECT_FALSE(journals.Forget("job", ofFour));
  EXPECT_EQ(journals.Open({"job", 0, 4})->Get("f", "k"), "1");
  used.reset();
  EXPECT_TRUE(journals.Forget("job", ofFour));
  EXPECT_EQ(journals.FindUnfinished("job", ofFour), std::nullopt);
  EXPECT_EQ(folder.Names("journals").size(), 2u);
  EXPECT_EQ(journals.Open({"job", 0, 2})->Get("f", "k"), "1");
  EXPECT_EQ(journals.Open({"two", 0, 4})->Get("f", "k"), "1");
}

// A journal is lost only if nothing in it can be read.
TEST_F(JournalsTest, OneThatIsOutOfReachIsNotRemoved) {
  journals.Open({"job"})->Set("a", "k", "1");
  const std::string path = folder.Path("journals/" + folder.Names("journals").at(0));
  std::filesystem::rename(path, folder.Path("aside"));
  std::filesystem::create_directories(path);
  EXPECT_EQ(journals.Open({"job"}), nullptr);
  EXPECT_TRUE(journals.FindUnfinished("job", [](const JobPart&) { return true; }));
  ASSERT_TRUE(std::filesystem::is_directory(path));
  std::filesystem::remove(path);
  std::filesystem::rename(folder.Path("aside"), path);
  EXPECT_EQ(journals.Open({"job"})->Get("a", "k"), "1");
}

// It would be kept in a file that has no name any more.
TEST_F(JournalsTest, OneThatIsRemovedWhileItIsWaitedForIsBegunAnew) {
  for (int i = 0; i < 20; ++i) {
    auto used = journals.Open({"job"});
    ASSERT_TRUE(used);
    used->Set("a", "k", "1");
    used->Commit();
    std::thread waits([&] {
      posix::SqliteJournals others(folder.Path("journals"));
      std::unique_ptr<Journal> journal;
      while (!journal) journal = others.Open({"job"});
      EXPECT_EQ(journal->Get("a", "k"), std::nullopt);
      journal->Set("b", "k", "2");
    });
    used->Remove();
    waits.join();
    const auto journal = journals.Open({"job"});
    ASSERT_TRUE(journal);
    EXPECT_EQ(journal->Get("b", "k"), "2");
    journal->Remove();
  }
}

TEST_F(JournalsTest, OneThatHoldsNothingLeavesNothing) {
  journals.Open({"job"})->Commit();
  EXPECT_TRUE(folder.Names("journals").empty());
}

TEST_F(JournalsTest, WhatWasCommittedSurvivesAKill) {
  const pid_t child = fork();
  if (child == 0) {
    const auto journal = journals.Open({"job"});
    journal->Set("a", "k", "1");
    journal->Commit();
    journal->Set("b", "k", "2");
    kill(getpid(), SIGKILL);
  }
  waitpid(child, nullptr, 0);
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_EQ(journal->Get("a", "k"), "1");
  EXPECT_EQ(journal->Get("b", "k"), std::nullopt);
}

// Also for a transaction that is larger than what SQLite keeps in memory, a part of which is written before the commit.
TEST_F(JournalsTest, ACommitThatFailsIsReported) {
  for (const int values : {1, 60'000}) {
    SCOPED_TRACE(values);
    const pid_t child = fork();
    if (child == 0) {
      const auto journal = journals.Open({"job"});
      journal->Set("a", "k", "1");
      const bool before = journal->Commit();
      signal(SIGXFSZ, SIG_IGN);
      const rlimit none{1, RLIM_INFINITY};
      setrlimit(RLIMIT_FSIZE, &none);
      for (int i = 0; i < values; ++i) journal->Set("/folder/" + std::to_string(i), "k", "2");
      _exit(before && !journal->Commit() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
}

// --- Damaged files.

class TornJournalsTest : public JournalsTest {
 protected:
  static constexpr int kRecords = 3000;

  static std::string FileName(int number) { return "/pictures/" + std::to_string(100'000 + number); }
  static std::string Value(int number) { return "value of " + std::to_string(100'000 + number); }

  void SetUp() override {
    const auto journal = journals.Open({"job"});
    for (int i = 0; i < kRecords; ++i) journal->Set(FileName(i), "k", Value(i));
  }
  std::string Path() const { return "journals/" + folder.Names("journals").at(0); }
  static bool Torn(Journal& journal) { return journal.Get("", kTornKey) == "1"; }
  // Returns how many records are left; each of them is as it was stored.
  static int Readable(Journal& journal) {
    int count = 0;
    for (int i = 0; i < kRecords; ++i) {
      const auto value = journal.Get(FileName(i), "k");
      if (!value) continue;
      EXPECT_EQ(value, Value(i));
      ++count;
    }
    return count;
  }
};

TEST_F(TornJournalsTest, AWholeOneIsNotMarked) {
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_FALSE(Torn(*journal));
  EXPECT_EQ(Readable(*journal), kRecords);
}

TEST_F(TornJournalsTest, OneThatIsNoDatabaseAnyMoreIsEmptyAndMarked) {
  folder.Write(Path(), std::string(5000, 'x'));
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
  EXPECT_EQ(Readable(*journal), 0);
  journal->Set("a", "k", "2");
  EXPECT_EQ(journal->Get("a", "k"), "2");
}

// SQLite refuses both with the result for an error in a statement.
TEST_F(TornJournalsTest, OneOfAnUnknownFormatIsEmptyAndMarked) {
  constexpr std::size_t kFormat = 47;  // the last byte of the number of the format of its schema
  std::string bytes = folder.Read(Path());
  bytes.at(kFormat) = 99;
  folder.Write(Path(), bytes);
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
  EXPECT_EQ(Readable(*journal), 0);
}

// Nothing is found by its key in such a table, and what is stored in it is lost.
TEST_F(TornJournalsTest, RecordsOutOfOrderAreSorted) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(folder.Path(Path()).c_str(), &database), SQLITE_OK);
  const auto run = [&](const char* text) {
    EXPECT_EQ(sqlite3_exec(database, text, nullptr, nullptr, nullptr), SQLITE_OK) << text;
  };
  // The schema says that the keys are sorted in ascending order, as they are not.
  run("CREATE TABLE copy (file BLOB NOT NULL, key BLOB NOT NULL, value BLOB NOT NULL, sum INTEGER, "
      "PRIMARY KEY (file DESC, key)) WITHOUT ROWID");
  run("INSERT INTO copy SELECT * FROM record");
  run("DROP TABLE record");
  run("PRAGMA writable_schema = ON");
  run("UPDATE sqlite_master SET name = 'record', tbl_name = 'record', sql = replace(replace(sql, 'copy', 'record'), "
      "'file DESC', 'file') WHERE name = 'copy'");
  sqlite3_close(database);
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
  EXPECT_EQ(Readable(*journal), kRecords);
}

TEST_F(TornJournalsTest, OneWithOtherTablesIsEmptyAndMarked) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(folder.Path(Path()).c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, "ALTER TABLE record RENAME COLUMN file TO name", nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(database);
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
  EXPECT_EQ(Readable(*journal), 0);
}

TEST_F(TornJournalsTest, AnEmptiedOneIsMarked) {
  folder.Write(Path(), "");
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
}

// From both ends: one page in the middle is overwritten.
TEST_F(TornJournalsTest, WhatCanBeReadOnBothSidesOfADamagedPageIsKept) {
  std::string bytes = folder.Read(Path());
  bytes.replace(bytes.size() / 2 / 4096 * 4096, 4096, std::string(4096, '\xA5'));
  folder.Write(Path(), bytes);
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
  const int left = Readable(*journal);
  EXPECT_GT(left, kRecords * 9 / 10);
  EXPECT_LT(left, kRecords);
  EXPECT_EQ(journal->Get(FileName(0), "k"), Value(0));
  EXPECT_EQ(journal->Get(FileName(kRecords - 1), "k"), Value(kRecords - 1));
}

TEST_F(TornJournalsTest, ATruncatedOneKeepsItsBeginning) {
  const std::string bytes = folder.Read(Path());
  folder.Write(Path(), bytes.substr(0, bytes.size() / 2));
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
  EXPECT_LT(Readable(*journal), kRecords);
}

// The database is sound, but a byte of a value is not the one that was stored.
TEST_F(TornJournalsTest, ARecordThatDoesNotFitItsChecksumIsRemoved) {
  std::string bytes = folder.Read(Path());
  const std::size_t at = bytes.find(Value(77));
  ASSERT_NE(at, std::string::npos);
  bytes[at] = 'V';
  folder.Write(Path(), bytes);
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
  EXPECT_EQ(journal->Get(FileName(77), "k"), std::nullopt);
  EXPECT_EQ(Readable(*journal), kRecords - 1);
}

TEST_F(TornJournalsTest, RecordsOfAnotherJobDoNotFit) {
  const std::string other = Path();
  journals.Open({"other"})->Set("a", "k", "1");
  const std::vector<std::string> names = folder.Names("journals");
  const std::string own = "journals/" + (other == "journals/" + names[0] ? names[1] : names[0]);
  folder.Write(other, folder.Read(own));
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_TRUE(Torn(*journal));
  EXPECT_EQ(journal->Get("a", "k"), std::nullopt);
}

TEST_F(TornJournalsTest, TheMarkStaysUntilItIsRemoved) {
  folder.Write(Path(), "");
  static_cast<void>(journals.Open({"job"}));
  {
    const auto journal = journals.Open({"job"});
    ASSERT_TRUE(Torn(*journal));
    journal->Set("a", "k", "1");
    journal->Set("", kTornKey, "");
  }
  EXPECT_FALSE(Torn(*journals.Open({"job"})));
}

TEST_F(TornJournalsTest, RecordsOfEarlierVersionsHaveNoChecksum) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(folder.Path(Path()).c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, "ALTER TABLE record DROP COLUMN sum", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(database);
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_FALSE(Torn(*journal));
  EXPECT_EQ(Readable(*journal), kRecords);
  journal->Set("a", "k", "1");
  EXPECT_EQ(journal->Get("a", "k"), "1");
}

// They name the user's files.
TEST_F(JournalsTest, OnlyTheirUserCanReadThem) {
  const mode_t before = umask(0);
  const auto journal = journals.Open({"job"});
  journal->Set("a", "k", "1");
  std::vector<std::string> names = folder.Names("journals");  // with the rollback journal
  umask(before);
  const auto access = [](const std::string& path) { return std::filesystem::status(path).permissions(); };
  EXPECT_EQ(access(folder.Path("journals")), std::filesystem::perms::owner_all);
  for (const std::string& name : names) {
    EXPECT_EQ(access(folder.Path("journals/" + name)),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write)
        << name;
  }
}

TEST_F(JournalsTest, OldOnesAreSwept) {
  journals.Open({"old"})->Set("a", "k", "1");
  const std::string old = folder.Path("journals/" + folder.Names("journals").at(0));
  std::filesystem::last_write_time(old, std::filesystem::file_time_type::clock::now() - std::chrono::hours(24 * 61));
  journals.Open({"new"})->Set("a", "k", "1");
  EXPECT_FALSE(std::filesystem::exists(old));
  EXPECT_EQ(folder.Names("journals").size(), 1u);
}

// Also one of another part of the job: a run that splits its files into another number of parts asks about it.
TEST_F(JournalsTest, OldOnesOfTheJobThatStartsAreKept) {
  for (const JobPart& part : {JobPart{"job"}, JobPart{"job", 1, 2}}) journals.Open(part)->Set("a", "k", "1");
  const auto age = std::filesystem::file_time_type::clock::now() - std::chrono::hours(24 * 61);
  for (const std::string& name : folder.Names("journals"))
    std::filesystem::last_write_time(folder.Path("journals/" + name), age);
  EXPECT_EQ(journals.Open({"job"})->Get("a", "k"), "1");
  EXPECT_EQ(journals.Open({"job", 1, 2})->Get("a", "k"), "1");
}

TEST_F(JournalsTest, AScratchOneLastsAsLongAsItIsOpen) {
  const std::string path = folder.Path("scratch");
  const auto journal = posix::OpenScratchJournal(path);
  ASSERT_TRUE(journal);
  for (int i = 0; i < 60'000; ++i) journal->Set("/folder/" + std::to_string(i), "k", std::to_string(i * 7));
  EXPECT_EQ(journal->Get("/folder/0", "k"), "0");
  EXPECT_EQ(journal->Get("/folder/59999", "k"), "419993");
  EXPECT_EQ(journal->Get("/folder/60000", "k"), std::nullopt);
  EXPECT_EQ(journal->Count("k"), 60'000u);
  EXPECT_GT(std::filesystem::file_size(path), 1'000'000u) << "not in memory";
  journal->Remove();
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(posix::OpenScratchJournal(folder.Path("missing/scratch")), nullptr);
}

// A process that is not allowed to write a byte stands for one that is killed before its first byte.
TEST_F(JournalsTest, OneThatCouldNotBeBegunIsNotTakenForADamagedOne) {
  rlimit usual{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &usual), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit none{0, usual.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
  const auto begun = journals.Open({"job"});
  setrlimit(RLIMIT_FSIZE, &usual);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(begun, nullptr);
  EXPECT_TRUE(folder.Names("journals").empty());
  const auto journal = journals.Open({"job"});
  ASSERT_TRUE(journal);
  EXPECT_EQ(journal->Get("", kTornKey), std::nullopt);
}

TEST_F(JournalsTest, ThereIsNoneIfNoneCanBeKept) {
  folder.Write("file", "x");
  EXPECT_EQ(posix::SqliteJournals(folder.Path("file/below")).Open({"job"}), nullptr);
}

}  // namespace
}  // namespace quillon::host
