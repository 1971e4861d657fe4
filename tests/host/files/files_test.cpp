// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/files.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;
using testing::DiskCall;
using ::testing::ElementsAre;
using testing::TestHost;
using ::testing::UnorderedElementsAre;

class FilesTest : public ::testing::Test {
 protected:
  std::vector<std::string> Listed(const std::string& path) {
    std::vector<std::string> names;
    EXPECT_TRUE(world.files.ListFolder(path, [&](const FolderEntry& entry) {
      names.push_back(entry.name);
      return true;
    }));
    return names;
  }

  TestHost world;
  testing::TempFolder& folder = world.folder;
  Files& files = world.files;
};

TEST_F(FilesTest, LooksThroughLinks) {
  const std::string file = folder.Write("a.txt", "12345");
  fs::create_symlink(file, folder.Path("link"));
  fs::create_symlink(folder.Path("nowhere"), folder.Path("broken"));
  const auto facts = files.Stat(folder.Path("link"));
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->kind, FileKind::File);
  EXPECT_EQ(facts->size, 5u);
  EXPECT_TRUE(files.IsFile(folder.Path("link")));
  EXPECT_TRUE(files.IsFolder(folder.Path()));
  EXPECT_FALSE(files.IsFile(folder.Path()));
  EXPECT_FALSE(files.Stat(folder.Path("broken")));
  EXPECT_FALSE(files.Stat(folder.Path("a.txt/b")));
  EXPECT_FALSE(files.Stat(""));
}

TEST_F(FilesTest, ReturnsTimes) {
  const std::string file = folder.Write("a.txt", "1");
  const timespec times[2] = {{100, 5}, {-2, 250}};
  ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
  const auto facts = files.Stat(file);
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->modified, -2'000'000'000 + 250);
  EXPECT_GT(facts->changed, 1'600'000'000'000'000'000);
}

TEST_F(FilesTest, RecognisesTheSameFileUnderTwoNames) {
  const std::string file = folder.Write("a.txt", "1");
  fs::create_symlink(file, folder.Path("link"));
  fs::create_hard_link(file, folder.Path("twin"));
  folder.Write("other.txt", "1");
  EXPECT_TRUE(files.SameFile(file, folder.Path("link")));
  EXPECT_TRUE(files.SameFile(file, folder.Path("twin")));
  EXPECT_TRUE(files.SameFile(file, folder.Path("./a.txt")));
  EXPECT_FALSE(files.SameFile(file, folder.Path("other.txt")));
  EXPECT_FALSE(files.SameFile(folder.Path("none"), folder.Path("none")));
}

// A caller that replaces or removes the other file must never get the wrong answer for one and the same path.
TEST_F(FilesTest, RecognisesTheSamePathIfItCannotBeRead) {
  const std::string file = folder.Write("a.txt", "1");
  for (const int error : {EACCES, EIO}) {
    world.faults.Set({.call = DiskCall::Stat, .error = error, .length = testing::Fault::Length::ForEver});
    EXPECT_TRUE(files.SameFile(file, file));
    EXPECT_FALSE(files.SameFile(file, folder.Path("other.txt")));
  }
}

TEST_F(FilesTest, ListsNamesAsBytesAndNoDrafts) {
  const std::string names[] = {"a.jpg", "-rf", "line\nbreak", "\xCD\xBC\xC6\xAC.jpg", "[1] %d", std::string(255, 'x')};
  for (const std::string& name : names) folder.Write("in/" + name, "");
  folder.Write("in/.a.jpg.quillon-0abc9z", "");
  EXPECT_THAT(Listed(folder.Path("in")), ::testing::UnorderedElementsAreArray(names));
}

TEST_F(FilesTest, ListedLinksCountAsWhatTheyPointTo) {
  fs::create_directories(folder.Path("in/sub"));
  folder.Write("in/file", "");
  fs::create_symlink(folder.Path("in/sub"), folder.Path("in/toSub"));
  fs::create_symlink(folder.Path("in/file"), folder.Path("in/toFile"));
  fs::create_symlink(folder.Path("in/none"), folder.Path("in/broken"));
  ASSERT_EQ(mkfifo(folder.Path("in/pipe").c_str(), 0600), 0);
  std::map<std::string, FileKind> kinds;
  ASSERT_TRUE(files.ListFolder(folder.Path("in"), [&](const FolderEntry& entry) {
    kinds[entry.name] = entry.kind;
    return true;
  }));
  const std::map<std::string, FileKind> expected{{"sub", FileKind::Folder},   {"toSub", FileKind::Folder},
                                                 {"file", FileKind::File},    {"toFile", FileKind::File},
                                                 {"broken", FileKind::Other}, {"pipe", FileKind::Other}};
  EXPECT_EQ(kinds, expected);
}

TEST_F(FilesTest, ListingEndsEarlyAndReturnsFailures) {
  for (int i = 0; i < 10; ++i) folder.Write("in/" + std::to_string(i), "");
  int seen = 0;
  EXPECT_TRUE(files.ListFolder(folder.Path("in"), [&](const FolderEntry&) { return ++seen < 3; }));
  EXPECT_EQ(seen, 3);
  const auto acceptAll = [](const FolderEntry&) { return true; };
  EXPECT_EQ(files.ListFolder(folder.Path("none"), acceptAll).GetProblem(), Problem::Missing);
  EXPECT_EQ(files.ListFolder(folder.Path("in/1"), acceptAll).GetProblem(), Problem::Missing);
}

TEST_F(FilesTest, ReadsWholeFiles) {
  std::string content(3'000'000, '\0');
  for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
  std::string read;
  EXPECT_TRUE(files.ReadFile(folder.Write("a", content), read));
  EXPECT_EQ(read, content);
  EXPECT_LT(read.capacity(), content.size() + 1000) << "nothing is taken on for what does not follow";
  EXPECT_TRUE(files.ReadFile(folder.Write("b", ""), read));
  EXPECT_EQ(read, "");
  // The system reports no size for this file.
  EXPECT_TRUE(files.ReadFile("/proc/self/status", read));
  EXPECT_NE(read.find("Pid:"), std::string::npos);
}

TEST_F(FilesTest, ReadingKeepsToTheLimit) {
  const std::string file = folder.Write("a", "12345");
  std::string read = "old";
  EXPECT_EQ(files.ReadFile(file, read, 4).GetProblem(), Problem::TooLarge);
  EXPECT_EQ(read, "");
  EXPECT_TRUE(files.ReadFile(file, read, 5));
  EXPECT_EQ(read, "12345");
  EXPECT_EQ(files.ReadFile("/proc/self/status", read, 10).GetProblem(), Problem::TooLarge);
}

TEST_F(FilesTest, ReadingRefusesWhatIsNoFile) {
  std::string read;
  EXPECT_EQ(files.ReadFile(folder.Path("none"), read).GetProblem(), Problem::Missing);
  EXPECT_EQ(files.ReadFile(folder.Path(), read).Why(), "此路径是文件夹，不是文件");
  // Nobody writes into the pipe: reading it must not wait.
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_FALSE(files.ReadFile(folder.Path("pipe"), read));
}

TEST_F(FilesTest, ReadingReturnsAFailure) {
  const std::string file = folder.Write("a", "12345");
  world.faults.Set({.call = DiskCall::Read, .error = EIO});
  std::string read;
  EXPECT_EQ(files.ReadFile(file, read).Why(), "磁盘读写出错");
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(FilesTest, ShortReadsAreContinued) {
  const std::string file = folder.Write("a", "1234567890");
  world.faults.Set(
      {.call = DiskCall::Read, .length = testing::Fault::Length::ForEver, .kind = testing::Fault::Kind::Short});
  std::string read;
  EXPECT_TRUE(files.ReadFile(file, read));
  EXPECT_EQ(read, "1234567890");
  EXPECT_GT(world.faults.Fired(), 1);
}

TEST_F(FilesTest, MakesFoldersWithAllAbove) {
  EXPECT_TRUE(files.MakeFolders(folder.Path("a/b/c/")));
  EXPECT_TRUE(files.IsFolder(folder.Path("a/b/c")));
  EXPECT_TRUE(files.MakeFolders(folder.Path("a/b/c")));
  fs::create_symlink(folder.Path("a"), folder.Path("link"));
  EXPECT_TRUE(files.MakeFolders(folder.Path("link/d")));
  EXPECT_TRUE(files.IsFolder(folder.Path("a/d")));
  EXPECT_TRUE(files.Flush().empty());
}

TEST_F(FilesTest, MakingFoldersReturnsFailures) {
  folder.Write("file", "");
  EXPECT_EQ(files.MakeFolders(folder.Path("file")).Why(), "路径中有一级不是文件夹");
  EXPECT_EQ(files.MakeFolders(folder.Path("file/a")).GetProblem(), Problem::Missing);
  EXPECT_FALSE(files.MakeFolders(""));
  EXPECT_EQ(files.MakeFolders(folder.Path(std::string(256, 'x'))).Why(), "文件名或路径太长");
  world.faults.Set({.call = DiskCall::MakeFolder, .nth = 2, .error = ENOSPC});
  EXPECT_TRUE(files.MakeFolders(folder.Path("x/y")).DiskFull());
  EXPECT_EQ(world.faults.Fired(), 1);
}

TEST_F(FilesTest, AFolderMadeByAnotherMeanwhileIsFine) {
  world.faults.Before(DiskCall::MakeFolder, 1, [&] { fs::create_directory(folder.Path("a")); });
  EXPECT_TRUE(files.MakeFolders(folder.Path("a/b")));
  EXPECT_TRUE(files.IsFolder(folder.Path("a/b")));
}

TEST_F(FilesTest, RemovesTreesWithoutFollowingLinks) {
  folder.Write("keep/precious.jpg", "x");
  folder.Write("work/deep/er/a.jpg", "x");
  folder.Write("work/.b.jpg.quillon-000000", "x");
  folder.Write("work/-rf\n", "x");
  fs::create_symlink(folder.Path("keep"), folder.Path("work/toKeep"));
  fs::create_symlink(folder.Path("keep/precious.jpg"), folder.Path("work/deep/link"));
  EXPECT_TRUE(files.RemoveOwn(folder.Path("work")));
  EXPECT_FALSE(folder.Exists("work"));
  EXPECT_EQ(folder.Read("keep/precious.jpg"), "x");
}

TEST_F(FilesTest, RemovesLinksThemselves) {
  folder.Write("keep/precious.jpg", "x");
  fs::create_symlink(folder.Path("keep"), folder.Path("link"));
  EXPECT_TRUE(files.RemoveOwn(folder.Path("link")));
  EXPECT_FALSE(folder.Exists("link"));
  EXPECT_TRUE(folder.Exists("keep/precious.jpg"));
}

// A run lists its folders anyway; the drafts of a killed run are found in the same listing.
TEST_F(FilesTest, SweepingNeedsNoOtherCallThanTheListing) {
  for (int i = 0; i < 20; ++i) folder.Write("in/" + std::to_string(i) + ".jpg", "x");
  world.faults.Clear();
  EXPECT_EQ(Listed(folder.Path("in")).size(), 20u);
  EXPECT_THAT(world.faults.Calls(), ElementsAre(DiskCall::List));
  folder.Write("in/.1.jpg.quillon-ab3de9", "half a picture");
  world.faults.Clear();
  EXPECT_EQ(Listed(folder.Path("in")).size(), 20u);
  EXPECT_EQ(world.faults.Count(DiskCall::List), 1);
  EXPECT_LE(world.faults.Calls().size(), 5u) << "open, lock, remove and close of the draft";
  EXPECT_FALSE(folder.Exists("in/.1.jpg.quillon-ab3de9"));
}

TEST_F(FilesTest, RemovingWhatIsNotThereIsFine) {
  EXPECT_TRUE(files.RemoveOwn(folder.Path("none")));
  EXPECT_TRUE(files.RemoveOwn(folder.Path("none/none")));
  EXPECT_FALSE(files.RemoveOwn(""));
  EXPECT_FALSE(files.RemoveOwn("/"));
  EXPECT_FALSE(files.RemoveOwn("//"));
}

TEST_F(FilesTest, RemovingReturnsFailures) {
  folder.Write("work/a", "x");
  world.faults.Set({.call = DiskCall::Remove, .error = EACCES});
  EXPECT_EQ(files.RemoveOwn(folder.Path("work")).GetProblem(), Problem::Denied);
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_TRUE(folder.Exists("work/a"));
}

}  // namespace
}  // namespace quillon::host
