// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>

#include "host/files/files.h"
#include "host/posix/process_setup.h"
#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;
using testing::DiskCall;
using ::testing::ElementsAre;
using testing::FaultyDisk;
using ::testing::IsEmpty;
using testing::TempFolder;

// Runs act in a child process and returns its wait status.
int InChild(const std::function<int()>& act) {
  const pid_t child = fork();
  if (child == 0) {
    rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    _exit(act());
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return status;
}

// Runs save on a disk that kills its process before the nth call of a kind; true when it was killed.
bool KilledBefore(posix::PosixDisk& disk, DiskCall call, int nth, const std::function<void(Files&)>& save) {
  const int status = InChild([&] {
    FaultyDisk faulty(disk);
    faulty.Before(call, nth, [] { kill(getpid(), SIGKILL); });
    {
      Files files(faulty);
      save(files);
    }
    return 0;
  });
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

class CrashTest : public ::testing::Test {
 protected:
  TempFolder folder;
  posix::PosixDisk disk{folder.Path("data")};
};

TEST_F(CrashTest, KilledAnywhereInAnOverwriteTheFileIsWhole) {
  const std::string oldContent(100'000, 'o');
  const std::string newContent(120'000, 'n');
  const auto save = [&](Files& files) {
    (void)files.Save(folder.Path("out/a.jpg"), [&](Draft& draft) {
      for (std::size_t at = 0; at < newContent.size(); at += 30'000) {
        if (Status written = draft.Write(newContent.data() + at, 30'000); !written) return written;
      }
      return Status::Ok();
    });
  };
  int kills = 0;
  for (const DiskCall call : {DiskCall::StatLink, DiskCall::OpenNew, DiskCall::Lock, DiskCall::Write,
                              DiskCall::StatOpen, DiskCall::SetMode, DiskCall::SetTimes, DiskCall::Sync,
                              DiskCall::Rename, DiskCall::Unlock, DiskCall::Close, DiskCall::SyncFolder}) {
    for (int nth = 1;; ++nth) {
      SCOPED_TRACE(std::string(NameOf(call)) + " " + std::to_string(nth));
      folder.Write("out/a.jpg", oldContent);
      const bool killed = KilledBefore(disk, call, nth, save);
      const std::string standing = folder.Read("out/a.jpg");
      EXPECT_TRUE(standing == newContent || (killed && standing == oldContent));
      Files(disk).SweepDrafts(folder.Path("out"));
      EXPECT_THAT(folder.Names("out"), ElementsAre("a.jpg"));
      if (!killed) break;
      ++kills;
    }
  }
  EXPECT_GE(kills, 15);
}

TEST_F(CrashTest, KilledAnywhereInAFreshSaveNothingTornIsSeen) {
  fs::create_directory(folder.Path("out"));
  const auto save = [&](Files& files) { (void)files.Save(folder.Path("out/a.jpg"), std::string(50'000, 'n')); };
  int kills = 0;
  for (const DiskCall call :
       {DiskCall::OpenNew, DiskCall::Lock, DiskCall::Write, DiskCall::RenameNew, DiskCall::Unlock, DiskCall::Sync}) {
    SCOPED_TRACE(std::string(NameOf(call)));
    kills += KilledBefore(disk, call, 1, save);
    Files(disk).SweepDrafts(folder.Path("out"));
    const auto names = folder.Names("out");
    if (!names.empty()) {
      EXPECT_THAT(names, ElementsAre("a.jpg"));
      EXPECT_EQ(folder.Read("out/a.jpg"), std::string(50'000, 'n'));
      fs::remove(folder.Path("out/a.jpg"));
    }
  }
  EXPECT_EQ(kills, 6);
}

TEST_F(CrashTest, AKilledRunLeavesADraftThatTheNextOneSweeps) {
  folder.Write("out/a.jpg", "old");
  const auto save = [&](Files& files) { (void)files.Save(folder.Path("out/a.jpg"), "new"); };
  ASSERT_TRUE(KilledBefore(disk, DiskCall::Rename, 1, save));
  EXPECT_EQ(folder.Names("out").size(), 2u);
  Files files(disk);
  std::vector<std::string> listed;
  EXPECT_TRUE(files.ListFolder(folder.Path("out"), [&](const FolderEntry& entry) {
    listed.push_back(entry.name);
    return true;
  }));
  EXPECT_THAT(listed, ElementsAre("a.jpg"));
  files.SweepDrafts(folder.Path("out"));
  EXPECT_THAT(folder.Names("out"), ElementsAre("a.jpg"));
  EXPECT_EQ(folder.Read("out/a.jpg"), "old");
}

TEST_F(CrashTest, AFileOverTheSizeLimitIsAFullDisk) {
  folder.Write("out/a.jpg", "old");
  const int status = InChild([&] {
    posix::IgnoreSignals();
    rlimit limit{10'000, 10'000};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 9;
    Files files(disk);
    const std::string content(20'000, 'x');
    if (!files.Save(folder.Path("out/a.jpg"), content).DiskFull()) return 1;
    if (!files.Save(folder.Path("out/b.jpg"), content).DiskFull()) return 2;
    if (!files.Save(folder.Path("out/c.jpg"), "small")) return 3;
    return files.Flush().empty() ? 0 : 4;
  });
  ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(folder.Read("out/a.jpg"), "old");
  EXPECT_THAT(folder.Names("out"), ElementsAre("a.jpg", "c.jpg"));
}

// A disk in memory with so many bytes and entries, for as long as this lives.
class SmallDisk {
 public:
  explicit SmallDisk(const std::string& place, const std::string& options) : place_(place) {
    mounted_ = mount("tmpfs", place.c_str(), "tmpfs", 0, options.c_str()) == 0;
  }
  ~SmallDisk() {
    if (mounted_) umount2(place_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  bool Mounted() const { return mounted_; }

 private:
  std::string place_;
  bool mounted_;
};

TEST_F(CrashTest, AReallyFullDiskLosesNothing) {
  fs::create_directory(folder.Path("small"));
  const SmallDisk small(folder.Path("small"), "size=64k,mode=0777");
  if (!small.Mounted()) GTEST_SKIP() << "no right to mount a disk: " << std::strerror(errno);
  const std::string oldContent(8192, 'o');
  const std::string newContent(20'480, 'n');
  int full = 0;
  int fine = 0;
  for (int filled = 0; filled <= 14; ++filled) {
    SCOPED_TRACE(filled);
    const bool over = filled % 2 == 0;
    Files files(disk);
    EXPECT_TRUE(files.RemoveOwn(folder.Path("small/ballast")));
    EXPECT_TRUE(files.RemoveOwn(folder.Path("small/fresh")));
    folder.Write("small/a.jpg", oldContent);
    folder.Write("small/ballast", std::string(static_cast<std::size_t>(filled) * 4096, 'b'));
    const Status status = files.Save(folder.Path(over ? "small/a.jpg" : "small/fresh"), [&](Draft& draft) {
      for (std::size_t at = 0; at < newContent.size(); at += 1024) {
        if (Status written = draft.Write(newContent.data() + at, 1024); !written) return written;
      }
      return Status::Ok();
    });
    EXPECT_THAT(files.Flush(), IsEmpty());
    EXPECT_TRUE(status || status.DiskFull()) << status.Why();
    ++(status ? fine : full);
    EXPECT_EQ(folder.Read("small/a.jpg"), over && status ? newContent : oldContent);
    EXPECT_EQ(folder.Exists("small/fresh"), !over && static_cast<bool>(status));
    for (const std::string& name : folder.Names("small")) EXPECT_FALSE(IsDraftName(name)) << name;
  }
  EXPECT_GE(full, 4);
  EXPECT_GE(fine, 4);
}

TEST_F(CrashTest, ADiskWithoutRoomForAnotherEntryIsFull) {
  fs::create_directory(folder.Path("small"));
  const SmallDisk small(folder.Path("small"), "nr_inodes=3,mode=0777");
  if (!small.Mounted()) GTEST_SKIP() << "no right to mount a disk: " << std::strerror(errno);
  folder.Write("small/a", "old");
  folder.Write("small/b", "old");
  Files files(disk);
  EXPECT_TRUE(files.Save(folder.Path("small/c"), "x").DiskFull());
  EXPECT_TRUE(files.Save(folder.Path("small/a"), "x").DiskFull());
  EXPECT_THAT(folder.Names("small"), ElementsAre("a", "b"));
  EXPECT_EQ(folder.Read("small/a"), "old");
}

TEST_F(CrashTest, AReadOnlyDiskIsDenied) {
  fs::create_directory(folder.Path("small"));
  const SmallDisk small(folder.Path("small"), "mode=0777");
  if (!small.Mounted()) GTEST_SKIP() << "no right to mount a disk: " << std::strerror(errno);
  folder.Write("small/a", "old");
  ASSERT_EQ(mount("tmpfs", folder.Path("small").c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, ""), 0);
  Files files(disk);
  EXPECT_EQ(files.Save(folder.Path("small/a"), "x").GetProblem(), Problem::Denied);
  EXPECT_EQ(files.Save(folder.Path("small/b"), "x").Why(), "磁盘是只读的");
  EXPECT_EQ(files.Discard(folder.Path("small/a")).GetProblem(), Problem::Denied);
  EXPECT_EQ(folder.Read("small/a"), "old");
}

TEST_F(CrashTest, AFolderRemovedDuringTheRunIsReportedAndNothingElseHappens) {
  fs::create_directory(folder.Path("out"));
  Files files(disk);
  EXPECT_TRUE(files.Save(folder.Path("out/a"), "x"));
  const Status status = files.Save(folder.Path("out/b"), [&](Draft& draft) {
    fs::remove_all(folder.Path("out"));
    return draft.Write("x", 1);
  });
  EXPECT_EQ(status.Why(), "写入期间临时文件被删除");
  EXPECT_EQ(files.Save(folder.Path("out/c"), "x").Why(), "文件夹不存在");
  EXPECT_THAT(files.Flush(), IsEmpty());
  EXPECT_FALSE(folder.Exists("out"));
}

}  // namespace
}  // namespace quillon::host
