// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <future>
#include <thread>

#include "host/files/files.h"
#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;
using testing::DiskCall;
using ::testing::ElementsAre;
using testing::Fault;
using ::testing::IsEmpty;
using testing::TestHost;

struct stat StatOf(const std::string& path) {
  struct stat facts {};
  EXPECT_EQ(lstat(path.c_str(), &facts), 0) << path;
  return facts;
}

void SetTimes(const std::string& path, std::int64_t accessed, std::int64_t modified) {
  const timespec times[2] = {{accessed, 11}, {modified, 22}};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

class SaveTest : public ::testing::Test {
 protected:
  TestHost world;
  testing::TempFolder& folder = world.folder;
  Files& files = world.files;
};

TEST_F(SaveTest, WritesAFreshFile) {
  const mode_t mask = umask(027);
  EXPECT_TRUE(files.Save(folder.Path("out/a.jpg"), "x").GetProblem() == Problem::Missing);
  fs::create_directory(folder.Path("out"));
  EXPECT_TRUE(files.Save(folder.Path("out/a.jpg"), "content"));
  umask(mask);
  EXPECT_EQ(folder.Read("out/a.jpg"), "content");
  EXPECT_EQ(StatOf(folder.Path("out/a.jpg")).st_mode & 07777, 0640u);
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_THAT(folder.Names("out"), ElementsAre("a.jpg"));
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(SaveTest, SaysWhichFolderIsMissing) {
  EXPECT_EQ(files.Save(folder.Path("out/a.jpg"), "x").Why(), "文件夹不存在");
}

TEST_F(SaveTest, IsInvisibleUntilItIsWhole) {
  std::vector<std::string> during;
  EXPECT_TRUE(files.Save(folder.Path("app/a.jpg"), [&](Draft& draft) {
    Status written = draft.Write("half", 4);
    during = folder.Names("app");
    EXPECT_TRUE(draft.Write("whole", 5));
    return written;
  }));
  ASSERT_EQ(during.size(), 1u);
  EXPECT_TRUE(IsDraftName(during[0])) << during[0];
  EXPECT_TRUE(during[0].starts_with(".a.jpg.quillon-")) << during[0];
  EXPECT_EQ(folder.Read("app/a.jpg"), "halfwhole");
}

TEST_F(SaveTest, DraftsSeekAndRead) {
  std::string read(4, ' ');
  std::uint64_t size = 0;
  EXPECT_TRUE(files.Save(folder.Path("a"), [&](Draft& draft) {
    EXPECT_TRUE(draft.Write("0123456789", 10));
    EXPECT_TRUE(draft.Seek(2));
    EXPECT_TRUE(draft.Write("ab", 2));
    EXPECT_EQ(draft.Size(), 10u);
    EXPECT_TRUE(draft.Seek(1));
    EXPECT_EQ(draft.Read(read.data(), 4), 4);
    EXPECT_TRUE(draft.Seek(10));
    EXPECT_EQ(draft.Read(read.data() + 4, 0), 0);
    char end = 0;
    EXPECT_EQ(draft.Read(&end, 1), 0);
    EXPECT_TRUE(draft.Seek(12));
    EXPECT_TRUE(draft.Write("z", 1));
    size = draft.Size();
    return Status::Ok();
  }));
  EXPECT_EQ(read, "1ab4");
  EXPECT_EQ(size, 13u);
  EXPECT_EQ(folder.Read("a"), std::string("01ab456789\0\0z", 13));
}

TEST_F(SaveTest, AFillThatFailsLeavesEverythingAsItWas) {
  folder.Write("in/old.jpg", "old");
  const auto fail = [](Draft& draft) {
    EXPECT_TRUE(draft.Write("new", 3));
    return Status(Problem::Damaged, "坏图");
  };
  EXPECT_EQ(files.Save(folder.Path("in/old.jpg"), fail).Why(), "坏图");
  EXPECT_EQ(files.Save(folder.Path("in/new.jpg"), fail).Why(), "坏图");
  EXPECT_EQ(folder.Read("in/old.jpg"), "old");
  EXPECT_THAT(folder.Names("in"), ElementsAre("old.jpg"));
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(SaveTest, AFillThatThrowsLeavesNoDraft) {
  EXPECT_THROW((void)files.Save(folder.Path("app/a"), [](Draft&) -> Status { throw std::bad_alloc(); }),
               std::bad_alloc);
  EXPECT_THAT(folder.Names("app"), IsEmpty());
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(SaveTest, AFillThatPassesOverAFailureFailsAllTheSame) {
  world.faults.Set({.call = DiskCall::Write, .nth = 2, .error = ENOSPC});
  const Status status = files.Save(folder.Path("app/a"), [](Draft& draft) {
    EXPECT_TRUE(draft.Write("1", 1));
    EXPECT_FALSE(draft.Write("2", 1));
    EXPECT_TRUE(draft.Write("3", 1));
    return Status::Ok();
  });
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_TRUE(status.DiskFull());
  EXPECT_THAT(folder.Names("app"), IsEmpty());
}

TEST_F(SaveTest, TheDisksFailureIsReturnedBeforeTheWriters) {
  world.faults.Set({.call = DiskCall::Write, .error = ENOSPC});
  const Status status = files.Save(folder.Path("app/a"), [](Draft& draft) {
    (void)draft.Write("1", 1);
    return Status(Problem::Other, "编码失败");
  });
  EXPECT_TRUE(status.DiskFull());
}

TEST_F(SaveTest, ShortWritesAreContinued) {
  world.faults.Set({.call = DiskCall::Write, .length = Fault::Length::ForEver, .kind = Fault::Kind::Short});
  EXPECT_TRUE(files.Save(folder.Path("a"), "0123456789"));
  EXPECT_GT(world.faults.Fired(), 2);
  EXPECT_EQ(folder.Read("a"), "0123456789");
}

TEST_F(SaveTest, ADiskThatWroteLessThanItSaidIsDetected) {
  world.faults.Before(DiskCall::StatOpen, 2, [&] {
    for (const std::string& name : folder.Names("app")) fs::resize_file(folder.Path("app/" + name), 3);
  });
  EXPECT_EQ(files.Save(folder.Path("app/a"), "0123456789").Why(), "写入后的文件大小不符");
  EXPECT_THAT(folder.Names("app"), IsEmpty());
}

TEST_F(SaveTest, ReplacingKeepsModeAndTimes) {
  const std::string file = folder.Write("a.jpg", "old");
  ASSERT_EQ(chmod(file.c_str(), 0604), 0);
  SetTimes(file, 1000, 2000);
  const auto before = files.Stat(file);
  EXPECT_TRUE(files.Save(file, "new content"));
  EXPECT_EQ(folder.Read("a.jpg"), "new content");
  const struct stat facts = StatOf(file);
  EXPECT_EQ(facts.st_mode & 07777, 0604u);
  EXPECT_EQ(facts.st_mtim.tv_sec, 2000);
  EXPECT_EQ(facts.st_mtim.tv_nsec, 22);
  const auto after = files.Stat(file);
  ASSERT_TRUE(before && after);
  EXPECT_EQ(after->modified, before->modified);
  EXPECT_TRUE(after->changed != before->changed || after->inode != before->inode);
}

TEST_F(SaveTest, ReplacingKeepsTheLabelsOfOtherPrograms) {
  const std::string file = folder.Write("a.jpg", "old");
  const std::string comment(500, 'c');
  if (setxattr(file.c_str(), "user.baloo.rating", "10", 2, 0) != 0) GTEST_SKIP() << "a disk without labels";
  ASSERT_EQ(setxattr(file.c_str(), "user.xdg.comment", comment.data(), comment.size(), 0), 0);
  ASSERT_EQ(setxattr(file.c_str(), "user.empty", "", 0, 0), 0);
  EXPECT_TRUE(files.Save(file, "new"));
  char value[600];
  EXPECT_EQ(getxattr(file.c_str(), "user.baloo.rating", value, sizeof value), 2);
  EXPECT_EQ(getxattr(file.c_str(), "user.xdg.comment", value, sizeof value), 500);
  EXPECT_EQ(std::string(value, 500), comment);
  EXPECT_EQ(getxattr(file.c_str(), "user.empty", value, sizeof value), 0);
}

TEST_F(SaveTest, ReplacingKeepsTheOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator can give files away";
  const std::string file = folder.Write("a.jpg", "old");
  ASSERT_EQ(chown(file.c_str(), 1234, 4321), 0);
  ASSERT_EQ(chmod(file.c_str(), 02660), 0);
  EXPECT_TRUE(files.Save(file, "new"));
  EXPECT_EQ(StatOf(file).st_uid, 1234u);
  EXPECT_EQ(StatOf(file).st_gid, 4321u);
  EXPECT_EQ(StatOf(file).st_mode & 07777, 02660u);
}

TEST_F(SaveTest, WithoutTheOwnerTheRightsOfTheOwnerGo) {
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator can give files away";
  const std::string file = folder.Write("a.jpg", "old");
  ASSERT_EQ(chown(file.c_str(), 1234, 4321), 0);
  ASSERT_EQ(chmod(file.c_str(), 06755), 0);
  world.faults.Set({.call = DiskCall::SetOwner, .error = EPERM});
  EXPECT_TRUE(files.Save(file, "new"));
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(StatOf(file).st_mode & 07777, 0755u);
}

TEST_F(SaveTest, ADraftOfAPrivateFileIsPrivate) {
  const std::string file = folder.Write("app/a.jpg", "old");
  ASSERT_EQ(chmod(file.c_str(), 0600), 0);
  EXPECT_TRUE(files.Save(file, [&](Draft& draft) {
    for (const std::string& name : folder.Names("app")) {
      EXPECT_EQ(StatOf(folder.Path("app/" + name)).st_mode & 0077, 0u) << name;
    }
    return draft.Write("new", 3);
  }));
}

TEST_F(SaveTest, ReplacingSyncsBeforeItRenames) {
  folder.Write("a.jpg", "old");
  world.faults.Clear();
  EXPECT_TRUE(files.Save(folder.Path("a.jpg"), "new"));
  const auto calls = world.faults.Calls();
  const auto sync = std::find(calls.begin(), calls.end(), DiskCall::Sync);
  const auto rename = std::find(calls.begin(), calls.end(), DiskCall::Rename);
  ASSERT_NE(rename, calls.end());
  EXPECT_LT(sync, rename);
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(world.faults.Count(DiskCall::SyncFolder), 1);
}

TEST_F(SaveTest, FreshFilesAreSyncedLaterInBatches) {
  // The first sync waits until all files are saved, so that the files it does not include make one more batch.
  std::promise<void> saved;
  world.faults.Before(DiskCall::StartSync, 1, [&] { saved.get_future().wait(); });
  for (int i = 0; i < 60; ++i) EXPECT_TRUE(files.Save(folder.Path("app/" + std::to_string(i)), "x"));
  saved.set_value();
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(world.faults.Count(DiskCall::Sync), 60);
  EXPECT_EQ(world.faults.Count(DiskCall::StartSync), 60);
  EXPECT_GE(world.faults.Count(DiskCall::SyncFolder), 1);
  EXPECT_LE(world.faults.Count(DiskCall::SyncFolder), 2);
  EXPECT_EQ(world.faults.OpenHandles(), 0);
  EXPECT_EQ(folder.Names("app").size(), 60u);
}

TEST_F(SaveTest, FoldersAreNotSyncedAgainAfterAWholeDisk) {
  world.faults.SyncNamesWithFiles(true);
  for (const char* name : {"app/a", "app/b", "app/c"}) EXPECT_TRUE(files.Save(folder.Path(name), "x"));
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(world.faults.Count(DiskCall::Sync), 3);
  EXPECT_EQ(world.faults.Count(DiskCall::SyncFolder), 0);
  // A replaced file was synced by itself.
  EXPECT_TRUE(files.Save(folder.Path("app/a"), "new"));
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(world.faults.Count(DiskCall::SyncFolder), 1);
}

TEST_F(SaveTest, AtMostSixtyFourFilesWaitForTheirSync) {
  int most = 0;
  for (int i = 0; i < 300; ++i) {
    ASSERT_TRUE(files.Save(folder.Path("app/" + std::to_string(i)), "x"));
    most = std::max(most, world.faults.OpenHandles());
  }
  EXPECT_LE(most, 64);
  EXPECT_THAT(files.Flush(), IsEmpty());
}

TEST_F(SaveTest, WhatIsRemovedBeforeItsSyncIsNotWaitedFor) {
  EXPECT_TRUE(files.Save(folder.Path("a"), "x"));
  EXPECT_TRUE(files.RemoveOwn(folder.Path("a")));
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(SaveTest, ALateFailureIsReturnedAndTheTornFileRemoved) {
  world.faults.Set({.call = DiskCall::Sync, .error = EIO, .pathHolds = "b.jpg"});
  for (const char* name : {"app/a.jpg", "app/b.jpg", "app/c.jpg"}) EXPECT_TRUE(files.Save(folder.Path(name), "x"));
  const auto failures = files.Flush();
  EXPECT_EQ(world.faults.Fired(), 1);
  ASSERT_EQ(failures.size(), 1u);
  EXPECT_EQ(failures[0].path, folder.Path("app/b.jpg"));
  EXPECT_EQ(failures[0].status.Why(), "磁盘读写出错");
  EXPECT_THAT(folder.Names("app"), ElementsAre("a.jpg", "c.jpg"));
  EXPECT_THAT(files.Flush(), IsEmpty());
}

TEST_F(SaveTest, ALateFailureLeavesAnothersFileAlone) {
  world.faults.Set({.call = DiskCall::Sync, .error = EIO});
  // Moved away and replaced by another while it waits: neither is a torn file under the name.
  world.faults.Before(DiskCall::Sync, 1, [&] {
    fs::rename(folder.Path("a"), folder.Path("moved"));
    folder.Write("a", "somebody else's");
  });
  EXPECT_TRUE(files.Save(folder.Path("a"), "x"));
  EXPECT_EQ(files.Flush().size(), 1u);
  EXPECT_EQ(folder.Read("a"), "somebody else's");
}

TEST_F(SaveTest, AFolderThatCannotBeSyncedIsALateFailure) {
  folder.Write("in/old", "old");
  fs::create_directory(folder.Path("out"));
  world.faults.Set({.call = DiskCall::SyncFolder, .error = EIO, .length = Fault::Length::ForEver});
  EXPECT_TRUE(files.Save(folder.Path("in/old"), "new"));
  EXPECT_TRUE(files.Save(folder.Path("out/fresh"), "new"));
  EXPECT_EQ(files.Flush().size(), 2u);
  // The replaced one stands whole; the fresh one was reported as not written, so it is not there.
  EXPECT_EQ(folder.Read("in/old"), "new");
  EXPECT_FALSE(folder.Exists("out/fresh"));
}

TEST_F(SaveTest, AFileThatAppearsMeanwhileIsNotOverwritten) {
  const Status status = files.Save(folder.Path("app/a.jpg"), [&](Draft& draft) {
    folder.Write("app/a.jpg", "somebody else's");
    return draft.Write("x", 1);
  });
  EXPECT_EQ(status.GetProblem(), Problem::Denied);
  EXPECT_EQ(status.Why(), "保存期间出现了同名文件");
  EXPECT_EQ(folder.Read("app/a.jpg"), "somebody else's");
  EXPECT_THAT(folder.Names("app"), ElementsAre("a.jpg"));
}

TEST_F(SaveTest, WritesThroughLinks) {
  folder.Write("real/a.jpg", "old");
  fs::create_symlink("real/a.jpg", folder.Path("one"));
  fs::create_symlink(folder.Path("one"), folder.Path("two"));
  EXPECT_TRUE(files.Save(folder.Path("two"), "new"));
  EXPECT_TRUE(fs::is_symlink(folder.Path("two")));
  EXPECT_TRUE(fs::is_symlink(folder.Path("one")));
  EXPECT_EQ(folder.Read("real/a.jpg"), "new");
  EXPECT_THAT(folder.Names("real"), ElementsAre("a.jpg"));
}

TEST_F(SaveTest, WritesThroughADanglingLink) {
  fs::create_directory(folder.Path("real"));
  fs::create_symlink("real/a.jpg", folder.Path("link"));
  EXPECT_TRUE(files.Save(folder.Path("link"), "new"));
  EXPECT_TRUE(fs::is_symlink(folder.Path("link")));
  EXPECT_EQ(folder.Read("real/a.jpg"), "new");
}

TEST_F(SaveTest, RefusesLinksInACircle) {
  fs::create_symlink("b", folder.Path("a"));
  fs::create_symlink("a", folder.Path("b"));
  EXPECT_EQ(files.Save(folder.Path("a"), "x").Why(), "链接太多或互相指向");
}

TEST_F(SaveTest, RefusesAReadOnlyFile) {
  const std::string file = folder.Write("app/a.jpg", "old");
  ASSERT_EQ(chmod(file.c_str(), 0444), 0);
  const Status status = files.Save(file, "new");
  EXPECT_EQ(status.GetProblem(), Problem::Denied);
  EXPECT_EQ(status.Why(), "文件是只读的");
  fs::create_symlink(file, folder.Path("link"));
  EXPECT_EQ(files.Save(folder.Path("link"), "new").Why(), "文件是只读的");
  EXPECT_EQ(folder.Read("app/a.jpg"), "old");
  EXPECT_THAT(folder.Names("app"), ElementsAre("a.jpg"));
}

TEST_F(SaveTest, RefusesWhatTheSystemWouldNotLetBeWritten) {
  const std::string file = folder.Write("app/a.jpg", "old");
  world.faults.Set({.call = DiskCall::MayWrite, .error = EACCES});
  EXPECT_EQ(files.Save(file, "new").Why(), "文件是只读的");
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(folder.Read("app/a.jpg"), "old");
}

TEST_F(SaveTest, RefusesWhatIsNoFile) {
  fs::create_directory(folder.Path("x.jpg"));
  EXPECT_EQ(files.Save(folder.Path("x.jpg"), "new").Why(), "此路径是文件夹，不是文件");
  EXPECT_EQ(files.Save(folder.Path("x.jpg/"), "new").Why(), "此路径是文件夹，不是文件");
  EXPECT_EQ(files.Save(folder.Path("none/"), "new").Why(), "此路径是文件夹，不是文件");
  EXPECT_EQ(files.Save("", "new").Why(), "此路径是文件夹，不是文件");
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(files.Save(folder.Path("pipe"), "new").Why(), "不是普通文件");
  folder.Write("file", "");
  EXPECT_EQ(files.Save(folder.Path("file/a"), "new").GetProblem(), Problem::Missing);
}

TEST_F(SaveTest, AcceptsEveryNameThatDisksAccept) {
  const std::string names[] = {"line\nbreak.jpg",     "\xCD\xBC\xC6\xAC.jpg", "-rf",    "a b %d [1].jpg",
                               std::string(255, 'x'), std::string(240, 'y'),  "图.jpg", ".hidden"};
  for (const std::string& name : names) {
    EXPECT_TRUE(files.Save(folder.Path("app/" + name), name)) << name;
    EXPECT_EQ(folder.Read("app/" + name), name);
    EXPECT_TRUE(files.Save(folder.Path("app/" + name), "again")) << name;
    EXPECT_EQ(folder.Read("app/" + name), "again");
  }
  EXPECT_EQ(folder.Names("app").size(), std::size(names));
  EXPECT_EQ(files.Save(folder.Path("app/" + std::string(256, 'x')), "x").Why(), "文件名或路径太长");
  EXPECT_EQ(folder.Names("app").size(), std::size(names));
}

TEST_F(SaveTest, ADiskWithShortNamesGetsAShortDraft) {
  world.faults.Set({.call = DiskCall::OpenNew, .error = ENAMETOOLONG});
  EXPECT_TRUE(files.Save(folder.Path("app/" + std::string(140, 'x')), "x"));
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(world.faults.Count(DiskCall::OpenNew), 2);
}

TEST_F(SaveTest, UsedDraftNamesAreSkipped) {
  world.faults.Set({.call = DiskCall::OpenNew, .error = EEXIST});
  EXPECT_TRUE(files.Save(folder.Path("a"), "x"));
  EXPECT_EQ(world.faults.Count(DiskCall::OpenNew), 2);
  world.faults.Clear();
  world.faults.Set({.call = DiskCall::OpenNew, .error = EEXIST, .length = Fault::Length::ForEver});
  EXPECT_FALSE(files.Save(folder.Path("b"), "x"));
}

TEST_F(SaveTest, DisksWithoutModesOwnersAndTimesAreWrittenTo) {
  folder.Write("a", "old");
  for (const DiskCall call : {DiskCall::SetMode, DiskCall::SetTimes, DiskCall::CopyLabels}) {
    for (const int error : {EPERM, ENOTSUP}) {
      world.faults.Clear();
      world.faults.Set({.call = call, .error = error});
      EXPECT_TRUE(files.Save(folder.Path("a"), "new"));
      EXPECT_EQ(world.faults.Fired(), 1);
    }
  }
}

TEST_F(SaveTest, DisksWithoutLocksAreWrittenTo) {
  world.faults.Set({.call = DiskCall::Lock, .error = ENOLCK, .length = Fault::Length::ForEver});
  EXPECT_TRUE(files.Save(folder.Path("app/a"), "x"));
  EXPECT_EQ(world.faults.Fired(), 1);
  // Without locks nobody knows whether a draft is still being written, so it stays.
  folder.Write("app/.b.quillon-000000", "x");
  files.SweepDrafts(folder.Path("app"));
  EXPECT_THAT(folder.Names("app"), ElementsAre(".b.quillon-000000", "a"));
}

TEST_F(SaveTest, SeveralThreadsSaveAtOnce) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 100; ++i) {
        const std::string name = "app/" + std::to_string(t) + "-" + std::to_string(i % 60);
        EXPECT_TRUE(files.Save(folder.Path(name), name + std::to_string(i)));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(folder.Names("app").size(), 240u);
  EXPECT_EQ(folder.Read("app/3-39"), "app/3-3999");
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(SaveTest, EverythingIsSyncedBeforeTheEnd) {
  {
    Files other(world.faults);
    for (int i = 0; i < 10; ++i) EXPECT_TRUE(other.Save(folder.Path("app/" + std::to_string(i)), "x"));
  }
  EXPECT_EQ(world.faults.Count(DiskCall::Sync), 10);
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(SaveTest, CopiesCarryTimesAndMode) {
  const std::string from = folder.Write("from.dll", std::string(3'000'000, 'q'));
  ASSERT_EQ(chmod(from.c_str(), 0555), 0);
  SetTimes(from, 3000, 4000);
  EXPECT_TRUE(files.Copy(from, folder.Path("to.exe")));
  EXPECT_EQ(folder.Read("to.exe"), std::string(3'000'000, 'q'));
  const struct stat facts = StatOf(folder.Path("to.exe"));
  EXPECT_EQ(facts.st_mtim.tv_sec, 4000);
  EXPECT_EQ(facts.st_mtim.tv_nsec, 22);
  EXPECT_EQ(facts.st_mode & 0700, 0700u);
  EXPECT_TRUE(files.Copy(from, folder.Path("to.exe")));
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(SaveTest, ACopiedProgramIsNotHeldOpenForWriting) {
  const std::string from = folder.Write("from.dll", "x");
  ASSERT_EQ(chmod(from.c_str(), 0755), 0);
  const auto writers = [&] {
    int count = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      if (fs::read_symlink(entry.path(), gone) != folder.Path("to.exe")) continue;
      struct stat facts {};
      count += lstat(entry.path().c_str(), &facts) == 0 && (facts.st_mode & S_IWUSR) != 0;
    }
    return count;
  };
  // The background sync waits until the file has been inspected.
  std::promise<void> looked;
  world.faults.Before(DiskCall::StartSync, 1, [&] { looked.get_future().wait(); });
  EXPECT_TRUE(files.Copy(from, folder.Path("to.exe")));
  EXPECT_EQ(writers(), 0);
  EXPECT_GE(world.faults.OpenHandles(), 1);
  looked.set_value();
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_EQ(world.faults.Count(DiskCall::Sync), 1);
}

TEST_F(SaveTest, ACopyOverAFileKeepsItsModeAndCopiesTheTimes) {
  const std::string from = folder.Write("from", "new");
  const std::string to = folder.Write("to", "old");
  ASSERT_EQ(chmod(to.c_str(), 0600), 0);
  ASSERT_EQ(chmod(from.c_str(), 0644), 0);
  SetTimes(from, 3000, 4000);
  EXPECT_TRUE(files.Copy(from, to));
  EXPECT_EQ(folder.Read("to"), "new");
  EXPECT_EQ(StatOf(to).st_mode & 07777, 0600u);
  EXPECT_EQ(StatOf(to).st_mtim.tv_sec, 4000);
}

TEST_F(SaveTest, ADeliveredCopyKeepsTheTimesOfWhatItReplaces) {
  const std::string from = folder.Write("from", "new");
  const std::string to = folder.Write("to", "old");
  SetTimes(from, 3000, 4000);
  SetTimes(to, 1000, 2000);
  EXPECT_TRUE(files.Copy(from, to, {}, CopyTimes::OfReplaced));
  EXPECT_EQ(StatOf(to).st_atim.tv_sec, 1000);
  EXPECT_EQ(StatOf(to).st_mtim.tv_sec, 2000);
  EXPECT_EQ(StatOf(to).st_mtim.tv_nsec, 22);
  EXPECT_EQ(folder.Read("to"), "new");
  // A new file is as old as it is.
  EXPECT_TRUE(files.Copy(from, folder.Path("fresh"), {}, CopyTimes::OfReplaced));
  EXPECT_GT(StatOf(folder.Path("fresh")).st_mtim.tv_sec, 4000);
}

TEST_F(SaveTest, ACopyOntoItselfDoesNothing) {
  const std::string file = folder.Write("a", "content");
  fs::create_symlink(file, folder.Path("link"));
  EXPECT_TRUE(files.Copy(file, folder.Path("link")));
  EXPECT_TRUE(files.Copy(file, file));
  EXPECT_EQ(folder.Read("a"), "content");
  EXPECT_EQ(world.faults.Count(DiskCall::OpenNew), 0);
}

TEST_F(SaveTest, ACopyOfWhatChangesMeanwhileFails) {
  const std::string from = folder.Write("from", std::string(100, 'a'));
  SetTimes(from, 3000, 4000);
  world.faults.Before(DiskCall::Read, 2, [&] { folder.Write("from", std::string(100, 'b')); });
  EXPECT_EQ(files.Copy(from, folder.Path("to")).Why(), "复制期间源文件有变化");
  EXPECT_FALSE(folder.Exists("to"));
}

TEST_F(SaveTest, CopyingReturnsFailures) {
  EXPECT_EQ(files.Copy(folder.Path("none"), folder.Path("to")).GetProblem(), Problem::Missing);
  EXPECT_FALSE(files.Copy(folder.Path(), folder.Path("to")));
  const std::string from = folder.Write("from", "x");
  world.faults.Set({.call = DiskCall::Read, .error = EIO});
  EXPECT_EQ(files.Copy(from, folder.Path("to")).Why(), "磁盘读写出错");
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_FALSE(folder.Exists("to"));
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

TEST_F(SaveTest, AReplacedFileGoesToTheTrashWhileThatIsWanted) {
  folder.Write("app/a", "old");
  {
    const Files::ReplacedToTrash toTrash(files, folder.Path("app/a"));
    const Files::ReplacedToTrash again(files, folder.Path("app/a"));
    EXPECT_TRUE(files.Save(folder.Path("app/a"), "new"));
    EXPECT_EQ(folder.Read("data/Trash/files/a"), "old");
  }
  EXPECT_TRUE(files.Save(folder.Path("app/a"), "newer"));
  EXPECT_EQ(folder.Read("app/a"), "newer");
  EXPECT_THAT(folder.Names("data/Trash/files"), ElementsAre("a"));
}

TEST_F(SaveTest, AFileThatNoTrashAcceptsIsNotReplaced) {
  folder.Write("app/a", "old");
  const Files::ReplacedToTrash toTrash(files, folder.Path("app/a"));
  world.faults.Set(
      {.call = DiskCall::RenameNew, .error = EACCES, .length = Fault::Length::ForEver, .pathHolds = "app/a"});
  world.faults.Set({.call = DiskCall::Link, .error = EPERM, .length = Fault::Length::ForEver});
  const Status saved = files.Save(folder.Path("app/a"), "new");
  EXPECT_EQ(saved.Why().find("已有同名文件，没能移入回收站，未覆盖："), 0u) << saved.Why();
  EXPECT_EQ(folder.Read("app/a"), "old");
  EXPECT_THAT(folder.Names("app"), ElementsAre("a"));
}

// A run that is killed in between leaves the old file under the name.
TEST_F(SaveTest, AReplacedFileKeepsItsNameUntilTheNewOneGetsIt) {
  folder.Write("app/a", "old");
  const Files::ReplacedToTrash toTrash(files, folder.Path("app/a"));
  world.faults.Before(DiskCall::Rename, 1, [&] {
    EXPECT_EQ(folder.Read("app/a"), "old");
    EXPECT_EQ(folder.Read("data/Trash/files/a"), "old");
  });
  EXPECT_TRUE(files.Save(folder.Path("app/a"), "new"));
  EXPECT_EQ(folder.Read("app/a"), "new");
  EXPECT_EQ(folder.Read("data/Trash/files/a"), "old");
}

TEST_F(SaveTest, AFileThatIsNotReplacedAfterAllComesBackFromTheTrash) {
  for (const bool links : {true, false}) {
    SCOPED_TRACE(links);
    folder.Write("app/a", "old");
    const Files::ReplacedToTrash toTrash(files, folder.Path("app/a"));
    if (!links) world.faults.Set({.call = DiskCall::Link, .error = EPERM, .length = Fault::Length::ForEver});
    world.faults.Set({.call = DiskCall::Rename, .error = EACCES});
    EXPECT_FALSE(files.Save(folder.Path("app/a"), "new"));
    EXPECT_EQ(folder.Read("app/a"), "old");
    EXPECT_THAT(folder.Names("app"), ElementsAre("a"));
    EXPECT_TRUE(folder.Names("data/Trash/files").empty());
    EXPECT_TRUE(folder.Names("data/Trash/info").empty());
    world.faults.Clear();
  }
}

TEST_F(SaveTest, SweepingRemovesOnlyAbandonedDrafts) {
  folder.Write("app/.a.jpg.quillon-000000", "left");
  folder.Write("app/a.jpg", "user's");
  folder.Write("app/.b.jpg.quillon-00000", "user's");
  fs::create_directory(folder.Path("app/.c.quillon-000000"));
  fs::create_symlink(folder.Path("app/a.jpg"), folder.Path("app/.d.quillon-000000"));
  EXPECT_TRUE(files.Save(folder.Path("app/new.jpg"), [&](Draft& draft) {
    EXPECT_TRUE(draft.Write("x", 1));
    Files other(world.disk);
    other.SweepDrafts(folder.Path("app"));
    return Status::Ok();
  }));
  EXPECT_THAT(folder.Names("app"),
              ElementsAre(".b.jpg.quillon-00000", ".c.quillon-000000", ".d.quillon-000000", "a.jpg", "new.jpg"));
}

TEST_F(SaveTest, ADraftSweptBeforeItIsLockedIsMadeAnew) {
  Files other(world.disk);
  world.faults.Before(DiskCall::Lock, 1, [&] { other.SweepDrafts(folder.Path("app")); });
  EXPECT_TRUE(files.Save(folder.Path("app/a"), "x"));
  EXPECT_EQ(world.faults.Count(DiskCall::OpenNew), 2);
  EXPECT_THAT(folder.Names("app"), ElementsAre("a"));
}

TEST_F(SaveTest, ADraftThatIsBeingSweptIsMadeAnew) {
  world.faults.Set({.call = DiskCall::Lock, .error = EWOULDBLOCK});
  EXPECT_TRUE(files.Save(folder.Path("app/a"), "x"));
  EXPECT_EQ(world.faults.Count(DiskCall::OpenNew), 2);
  EXPECT_THAT(folder.Names("app"), ElementsAre("a"));
}

}  // namespace
}  // namespace quillon::host
