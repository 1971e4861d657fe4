// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <regex>

#include "base/path_text.h"
#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;
using testing::DiskCall;
using ::testing::ElementsAre;
using testing::Fault;
using ::testing::IsEmpty;
using testing::TestHost;
using ::testing::UnorderedElementsAre;

TEST(Trash, NotesHavePathsInPercentEncoding) {
  EXPECT_EQ(base::PercentEncoded("/a/b-c_d.e~1"), "/a/b-c_d.e~1");
  EXPECT_EQ(base::PercentEncoded("/a b%"), "/a%20b%25");
  EXPECT_EQ(base::PercentEncoded("图\n\xFF[1]"), "%E5%9B%BE%0A%FF%5B1%5D");
}

class TrashTest : public ::testing::Test {
 protected:
  std::string Note(const std::string& name) { return folder.Read("data/Trash/info/" + name + ".trashinfo"); }

  TestHost world;
  testing::TempFolder& folder = world.folder;
  Files& files = world.files;
};

TEST_F(TrashTest, AFileGoesToTheHomeTrashAndCanBeBroughtBack) {
  const std::string file = folder.Write("in/图 1.jpg", "picture");
  EXPECT_TRUE(files.Discard(file));
  EXPECT_THAT(folder.Names("in"), IsEmpty());
  EXPECT_EQ(folder.Read("data/Trash/files/图 1.jpg"), "picture");
  const std::string note = Note("图 1.jpg");
  std::smatch parts;
  ASSERT_TRUE(std::regex_match(
      note, parts, std::regex("\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n")))
      << note;
  EXPECT_EQ(parts[1], base::PercentEncoded(file));
  struct stat facts {};
  ASSERT_EQ(stat(folder.Path("data/Trash").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0700u);
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(TrashTest, CanBePreparedForAFileThatIsDiscardedLater) {
  const std::string file = folder.Write("in/a.jpg", "picture");
  std::string trash;
  ASSERT_TRUE(files.PrepareTrash(file, trash));
  EXPECT_EQ(trash, folder.Path("data/Trash"));
  EXPECT_THAT(folder.Names("data/Trash"), UnorderedElementsAre("files", "info"));
  EXPECT_TRUE(folder.Exists("in/a.jpg"));
  EXPECT_EQ(files.PrepareTrash(folder.Path("missing"), trash).GetProblem(), Problem::Missing);
}

TEST_F(TrashTest, UsedNamesAreNumbered) {
  for (int i = 1; i <= 3; ++i) {
    EXPECT_TRUE(files.Discard(folder.Write(std::to_string(i) + "/a.tar.gz", std::to_string(i))));
  }
  EXPECT_EQ(folder.Read("data/Trash/files/a.tar.gz"), "1");
  EXPECT_EQ(folder.Read("data/Trash/files/a.tar 2.gz"), "2");
  EXPECT_EQ(folder.Read("data/Trash/files/a.tar 3.gz"), "3");
  EXPECT_NE(Note("a.tar 3.gz").find("/3/a.tar.gz\n"), std::string::npos);
}

TEST_F(TrashTest, AFileInTheTrashWithoutANoteIsNotOverwritten) {
  folder.Write("data/Trash/files/a.jpg", "older");
  EXPECT_TRUE(files.Discard(folder.Write("a.jpg", "newer")));
  EXPECT_EQ(folder.Read("data/Trash/files/a.jpg"), "older");
  EXPECT_EQ(folder.Read("data/Trash/files/a 2.jpg"), "newer");
  EXPECT_THAT(folder.Names("data/Trash/info"), ElementsAre("a 2.jpg.trashinfo"));
}

TEST_F(TrashTest, FoldersAndLinksGoAsTheyAre) {
  folder.Write("keep", "x");
  folder.Write("dir.d/a", "x");
  fs::create_symlink(folder.Path("keep"), folder.Path("link"));
  EXPECT_TRUE(files.Discard(folder.Path("dir.d/")));
  EXPECT_TRUE(files.Discard(folder.Path("link")));
  EXPECT_EQ(folder.Read("keep"), "x");
  EXPECT_EQ(folder.Read("data/Trash/files/dir.d/a"), "x");
  EXPECT_TRUE(fs::is_symlink(folder.Path("data/Trash/files/link")));
}

TEST_F(TrashTest, NotesHaveTheRealFolder) {
  folder.Write("real/a.jpg", "x");
  fs::create_symlink(folder.Path("real"), folder.Path("link"));
  EXPECT_TRUE(files.Discard(folder.Path("link/../link/a.jpg")));
  EXPECT_NE(Note("a.jpg").find("Path=" + base::PercentEncoded(folder.Path("real/a.jpg")) + "\n"), std::string::npos);
}

TEST_F(TrashTest, AnyNameCanBeDiscarded) {
  const std::string names[] = {"line\nbreak.jpg", "\xCD\xBC.jpg",        "-rf",
                               ".hidden",         std::string(255, 'x'), std::string(251, 'y') + ".jpg"};
  for (const std::string& name : names) EXPECT_TRUE(files.Discard(folder.Write("in/" + name, "x"))) << name;
  EXPECT_THAT(folder.Names("in"), IsEmpty());
  EXPECT_EQ(folder.Names("data/Trash/files").size(), 6u);
  EXPECT_EQ(folder.Names("data/Trash/info").size(), 6u);
  EXPECT_TRUE(folder.Exists("data/Trash/files/" + std::string(241, 'y') + ".jpg"));
}

TEST_F(TrashTest, WhatIsNotThereIsMissing) {
  EXPECT_EQ(files.Discard(folder.Path("none")).GetProblem(), Problem::Missing);
  EXPECT_FALSE(files.Discard(""));
  EXPECT_FALSE(files.Discard("/"));
  EXPECT_FALSE(files.Discard(folder.Path("app/..")));
  EXPECT_TRUE(folder.Exists("app"));
}

TEST_F(TrashTest, TheTrashAtTheTopIsTheSecondChoice) {
  world.faults.Set({.call = DiskCall::RenameNew, .error = EXDEV});
  EXPECT_TRUE(files.Discard(folder.Write("in/a.jpg", "x")));
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(folder.Read(".Trash-" + std::to_string(geteuid()) + "/files/a.jpg"), "x");
  EXPECT_THAT(folder.Names("data/Trash/info"), IsEmpty());
}

TEST_F(TrashTest, WithoutATrashTheFileStays) {
  const std::string file = folder.Write("a.jpg", "x");
  world.faults.Set({.call = DiskCall::RenameNew, .error = EXDEV, .length = Fault::Length::ForEver});
  world.faults.Set(
      {.call = DiskCall::MakeFolder, .error = EROFS, .length = Fault::Length::ForEver, .pathHolds = ".Trash"});
  const Status status = files.Discard(file);
  EXPECT_GE(world.faults.Fired(), 2);
  EXPECT_EQ(status.GetProblem(), Problem::Denied);
  EXPECT_EQ(status.Why(), "无法移入回收站，文件保留原处（磁盘是只读的）");
  EXPECT_EQ(folder.Read("a.jpg"), "x");
  EXPECT_THAT(folder.Names("data/Trash/info"), IsEmpty());
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(TrashTest, EveryCallFailingLosesNothing) {
  int tried = 0;
  // The trash at the top of the disk cannot be used, so there is no second one for the file.
  const Fault noShared{
      .call = DiskCall::MakeFolder, .error = EROFS, .length = Fault::Length::ForEver, .pathHolds = ".Trash"};
  std::map<DiskCall, int> counts;
  {
    TestHost fine;
    ASSERT_TRUE(fine.files.Discard(fine.folder.Write("in/a.jpg", "x")));
    for (const DiskCall call : fine.faults.Calls()) ++counts[call];
  }
  for (const auto& [call, count] : counts) {
    for (int nth = 1; nth <= count; ++nth) {
      for (const int error : {ENOSPC, EIO}) {
        SCOPED_TRACE(std::string(NameOf(call)) + " " + std::to_string(nth) + " " + std::to_string(error));
        TestHost one;
        const std::string file = one.folder.Write("in/a.jpg", "x");
        one.faults.Set(noShared);
        one.faults.Set({.call = call, .nth = nth, .error = error});
        const Status status = one.files.Discard(file);
        one.files.Flush();
        EXPECT_GE(one.faults.Fired(), 1);
        EXPECT_EQ(one.folder.Exists("in/a.jpg"), !status);
        EXPECT_EQ(one.folder.Exists("data/Trash/files/a.jpg"), static_cast<bool>(status));
        EXPECT_EQ(one.folder.Exists("data/Trash/info/a.jpg.trashinfo"), static_cast<bool>(status));
        EXPECT_EQ(one.faults.OpenHandles(), 0);
        ++tried;
      }
    }
  }
  EXPECT_GT(tried, 20);
}

// A second disk with a trash of its own at its top.
class OtherDisk : public TrashTest {
 protected:
  void SetUp() override {
    fs::create_directory(folder.Path("disk"));
    mounted_ = mount("tmpfs", folder.Path("disk").c_str(), "tmpfs", 0, "mode=0777") == 0;
    if (!mounted_) GTEST_SKIP() << "no right to mount a disk: " << std::strerror(errno);
    own_ = ".Trash-" + std::to_string(geteuid());
  }
  void TearDown() override {
    if (mounted_) umount2(folder.Path("disk").c_str(), MNT_DETACH);
  }

  bool mounted_ = false;
  std::string own_;
};

TEST_F(OtherDisk, AFileGoesToTheTrashOfItsDisk) {
  EXPECT_TRUE(files.Discard(folder.Write("disk/in/a b.jpg", "x")));
  EXPECT_EQ(folder.Read("disk/" + own_ + "/files/a b.jpg"), "x");
  EXPECT_NE(folder.Read("disk/" + own_ + "/info/a b.jpg.trashinfo").find("\nPath=in/a%20b.jpg\n"), std::string::npos);
  EXPECT_FALSE(folder.Exists("data/Trash/files/a b.jpg"));
}

TEST_F(OtherDisk, TheAdministratorsTrashComesFirst) {
  fs::create_directory(folder.Path("disk/.Trash"));
  ASSERT_EQ(chmod(folder.Path("disk/.Trash").c_str(), 01777), 0);
  EXPECT_TRUE(files.Discard(folder.Write("disk/a.jpg", "x")));
  EXPECT_EQ(folder.Read("disk/.Trash/" + std::to_string(geteuid()) + "/files/a.jpg"), "x");
}

TEST_F(OtherDisk, ASharedTrashWithoutTheStickyBitIsNotTrusted) {
  fs::create_directory(folder.Path("disk/.Trash"));
  ASSERT_EQ(chmod(folder.Path("disk/.Trash").c_str(), 0777), 0);
  EXPECT_TRUE(files.Discard(folder.Write("disk/a.jpg", "x")));
  EXPECT_THAT(folder.Names("disk/.Trash"), IsEmpty());
  EXPECT_EQ(folder.Read("disk/" + own_ + "/files/a.jpg"), "x");
}

TEST_F(OtherDisk, ATrashThatLeadsElsewhereIsNotTrusted) {
  fs::create_directory(folder.Path("disk/elsewhere"));
  fs::create_symlink("elsewhere", folder.Path("disk/" + own_));
  EXPECT_FALSE(files.Discard(folder.Write("disk/a.jpg", "x")));
  EXPECT_EQ(folder.Read("disk/a.jpg"), "x");
  EXPECT_THAT(folder.Names("disk/elsewhere"), IsEmpty());
}

}  // namespace
}  // namespace quillon::host
