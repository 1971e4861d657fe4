// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/posix_disk.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "host/posix/repeat.h"
#include "host/testing/temp_folder.h"

namespace quillon::host::posix {
namespace {

namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::Each;
using ::testing::ElementsAre;
using testing::TempFolder;

// How many of the next calls a signal interrupts.
int interruptedOpens = 0;
int interruptedReads = 0;
// Calls that the file system does not support.
bool noRenameNew = false;
bool noLinks = false;
int links = 0;

}  // namespace

extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  static auto* const next =
      reinterpret_cast<int (*)(int, const char*, int, const char*, unsigned)>(dlsym(RTLD_NEXT, "renameat2"));
  if (!noRenameNew) return next(fromFolder, from, toFolder, to, flags);
  errno = EINVAL;
  return -1;
}

extern "C" int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  static auto* const next =
      reinterpret_cast<int (*)(int, const char*, int, const char*, int)>(dlsym(RTLD_NEXT, "linkat"));
  ++links;
  if (!noLinks) return next(fromFolder, from, toFolder, to, flags);
  errno = EPERM;
  return -1;
}

extern "C" DIR* opendir(const char* path) {
  static auto* const next = reinterpret_cast<DIR* (*)(const char*)>(dlsym(RTLD_NEXT, "opendir"));
  if (interruptedOpens-- <= 0) return next(path);
  errno = EINTR;
  return nullptr;
}

extern "C" dirent* readdir(DIR* folder) {
  static auto* const next = reinterpret_cast<dirent* (*)(DIR*)>(dlsym(RTLD_NEXT, "readdir"));
  if (interruptedReads-- <= 0) return next(folder);
  errno = EINTR;
  return nullptr;
}

namespace {

class PosixDiskTest : public ::testing::Test {
 protected:
  TempFolder folder;
  PosixDisk disk{folder.Path("data")};
};

TEST_F(PosixDiskTest, ANewFileReplacesNoOther) {
  folder.Write("a", "x");
  fs::create_symlink("none", folder.Path("dangling"));
  EXPECT_EQ(disk.OpenNew(folder.Path("a"), 0600), -EEXIST);
  EXPECT_EQ(disk.OpenNew(folder.Path("dangling"), 0600), -EEXIST);
  EXPECT_EQ(disk.OpenNew(folder.Path("none/a"), 0600), -ENOENT);
  EXPECT_FALSE(folder.Exists("none"));
}

TEST_F(PosixDiskTest, OpensOnlyRegularFiles) {
  folder.Write("a", "x");
  fs::create_symlink("a", folder.Path("link"));
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  const int handle = disk.OpenRead(folder.Path("link"));
  EXPECT_GE(handle, 0);
  EXPECT_EQ(fcntl(handle, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  disk.Close(handle);
  EXPECT_EQ(disk.OpenOwn(folder.Path("link")), -ELOOP);
  EXPECT_EQ(disk.OpenRead(folder.Path("pipe")), -ENXIO);
  EXPECT_EQ(disk.OpenOwn(folder.Path("pipe")), -ENXIO);
  EXPECT_EQ(disk.OpenRead(folder.Path()), -EISDIR);
  EXPECT_EQ(disk.OpenRead(folder.Path("none")), -ENOENT);
}

TEST_F(PosixDiskTest, ListsWhatIsInAFolder) {
  folder.Write("in/file", "x");
  fs::create_directory(folder.Path("in/folder"));
  fs::create_symlink("file", folder.Path("in/to file"));
  fs::create_symlink("folder", folder.Path("in/to folder"));
  fs::create_symlink("nothing", folder.Path("in/to nothing"));
  ASSERT_EQ(mkfifo(folder.Path("in/pipe").c_str(), 0600), 0);
  std::map<std::string, std::pair<FileKind, bool>> found;
  const auto note = [&](const FolderEntry& entry) {
    found[entry.name] = {entry.kind, entry.link};
    return true;
  };
  EXPECT_EQ(disk.List(folder.Path("in"), note), 0);
  const std::map<std::string, std::pair<FileKind, bool>> wanted = {
      {"file", {FileKind::File, false}},       {"folder", {FileKind::Folder, false}},
      {"pipe", {FileKind::Other, false}},      {"to file", {FileKind::File, true}},
      {"to folder", {FileKind::Folder, true}}, {"to nothing", {FileKind::Other, true}}};
  EXPECT_EQ(found, wanted);
  int visited = 0;
  EXPECT_EQ(disk.List(folder.Path("in"), [&](const FolderEntry&) { return ++visited < 2; }), 0);
  EXPECT_EQ(visited, 2);
  EXPECT_EQ(disk.List(folder.Path("none"), note), -ENOENT);
  EXPECT_EQ(disk.List(folder.Path("in/file"), note), -ENOTDIR);
}

TEST_F(PosixDiskTest, ListsAFolderAlthoughSignalsInterruptIt) {
  folder.Write("in/a", "x");
  interruptedOpens = 2;
  interruptedReads = 2;
  std::vector<std::string> names;
  const int listed = disk.List(folder.Path("in"), [&](const FolderEntry& entry) {
    names.push_back(entry.name);
    return true;
  });
  EXPECT_EQ(listed, 0);
  EXPECT_THAT(names, ElementsAre("a"));
  EXPECT_LE(interruptedOpens, 0);
  EXPECT_LE(interruptedReads, 0);
}

TEST(Repeat, RepeatsOnlyWhatASignalInterrupts) {
  for (const int error : {EINTR, EIO}) {
    int calls = 0;
    const int result = Repeat([&] {
      errno = error;
      return ++calls == 3 ? 7 : -1;
    });
    EXPECT_EQ(result, error == EINTR ? 7 : -EIO);
    EXPECT_EQ(calls, error == EINTR ? 3 : 1);
  }
}

TEST_F(PosixDiskTest, AnswersForItsOwnDisks) {
  for (const char* place : {"/proc", "/", "/nowhere"}) EXPECT_TRUE(disk.IsLocalDisk(place)) << place;
}

TEST_F(PosixDiskTest, ALockIsHeldByOneHandleAtATime) {
  folder.Write("a", "x");
  const int one = disk.OpenOwn(folder.Path("a"));
  const int other = disk.OpenOwn(folder.Path("a"));
  EXPECT_EQ(disk.Lock(one), 0);
  EXPECT_EQ(disk.Lock(other), -EWOULDBLOCK);
  EXPECT_EQ(disk.Unlock(one), 0);
  EXPECT_EQ(disk.Lock(other), 0);
  disk.Close(other);
  EXPECT_EQ(disk.Lock(one), 0);
  disk.Close(one);
}

TEST_F(PosixDiskTest, RenamingToAFreeNameRefusesAUsedOne) {
  folder.Write("a", "a");
  folder.Write("b", "b");
  fs::create_symlink("none", folder.Path("dangling"));
  EXPECT_EQ(disk.RenameNew(folder.Path("a"), folder.Path("b")), -EEXIST);
  EXPECT_EQ(disk.RenameNew(folder.Path("a"), folder.Path("dangling")), -EEXIST);
  EXPECT_EQ(disk.RenameNew(folder.Path("none"), folder.Path("c")), -ENOENT);
  EXPECT_EQ(disk.RenameNew(folder.Path("a"), folder.Path("c")), 0);
  EXPECT_EQ(folder.Read("b"), "b");
  EXPECT_EQ(folder.Read("c"), "a");
}

// Network disks, and old ones without hard links.
TEST_F(PosixDiskTest, RenamingToAFreeNameRefusesAUsedOneOnEveryDisk) {
  noRenameNew = true;
  for (const bool linksMissing : {false, true}) {
    SCOPED_TRACE(linksMissing);
    noLinks = linksMissing;
    links = 0;
    fs::remove(folder.Path("c"));
    fs::remove_all(folder.Path("moved"));
    folder.Write("a", "a");
    folder.Write("b", "b");
    folder.Write("folder/file", "in it");
    EXPECT_EQ(disk.RenameNew(folder.Path("a"), folder.Path("b")), -EEXIST);
    EXPECT_EQ(disk.RenameNew(folder.Path("none"), folder.Path("c")), -ENOENT);
    EXPECT_EQ(disk.RenameNew(folder.Path("a"), folder.Path("c")), 0);
    EXPECT_EQ(folder.Read("b"), "b");
    EXPECT_EQ(folder.Read("c"), "a");
    EXPECT_FALSE(folder.Exists("a"));
    EXPECT_EQ(disk.RenameNew(folder.Path("folder"), folder.Path("moved")), 0);
    EXPECT_EQ(folder.Read("moved/file"), "in it");
    EXPECT_EQ(links, 4) << "which is the only call that refuses a used name in one step";
  }
  noRenameNew = noLinks = false;
}

TEST_F(PosixDiskTest, TimesGoBothWaysAndBefore1970) {
  const int handle = disk.OpenNew(folder.Path("a"), 0600);
  for (const std::int64_t time : {std::int64_t{1'700'000'000'123'456'789}, std::int64_t{0}, std::int64_t{-1},
                                  std::int64_t{-1'000'000'000}, std::int64_t{-1'500'000'000}}) {
    EXPECT_EQ(disk.SetTimes(handle, time, time), 0);
    DiskFacts facts;
    EXPECT_EQ(disk.StatOpen(handle, facts), 0);
    EXPECT_EQ(facts.modified, time);
    EXPECT_EQ(facts.accessed, time);
  }
  disk.Close(handle);
}

TEST_F(PosixDiskTest, PositionsBeyondEveryFileAreRefused) {
  const int handle = disk.OpenNew(folder.Path("a"), 0600);
  EXPECT_EQ(disk.Seek(handle, std::uint64_t{1} << 63), -EFBIG);
  EXPECT_EQ(disk.Seek(handle, 7), 0);
  disk.Close(handle);
}

TEST_F(PosixDiskTest, SyncsAllAndReturnsEachResult) {
  for (const int count : {1, 3, 4, 40}) {
    std::vector<int> handles;
    for (int i = 0; i < count; ++i) {
      const int handle = disk.OpenNew(folder.Path(std::to_string(count) + "-" + std::to_string(i)), 0600);
      ASSERT_EQ(disk.Write(handle, "x", 1), 1);
      EXPECT_EQ(disk.StartSync(handle), 0);
      handles.push_back(handle);
    }
    EXPECT_THAT(disk.SyncAll(handles), Each(AnyOf(0, Disk::kSyncedWithName)));
    for (const int handle : handles) EXPECT_EQ(disk.Close(handle), 0);
    // Closed ones cannot be synced, and each says so.
    EXPECT_THAT(disk.SyncAll(handles), Each(-EBADF));
    EXPECT_EQ(disk.SyncAll(handles).size(), handles.size());
  }
  EXPECT_TRUE(disk.SyncAll({}).empty());
}

TEST_F(PosixDiskTest, SyncLeavesNoOpenHandle) {
  const int handle = disk.OpenNew(folder.Path("a"), 0600);
  EXPECT_EQ(disk.Sync(handle), 0);
  EXPECT_EQ(disk.SyncFolder(folder.Path()), 0);
  const int next = disk.OpenNew(folder.Path("b"), 0600);
  EXPECT_EQ(next, handle + 1);
  disk.Close(next);
  disk.Close(handle);
  EXPECT_EQ(disk.SyncFolder(folder.Path("none")), -ENOENT);
  EXPECT_EQ(disk.Sync(handle), -EBADF);
}

TEST_F(PosixDiskTest, LinksAndRealPaths) {
  fs::create_directory(folder.Path("a"));
  fs::create_symlink("a/../a", folder.Path("link"));
  std::string text;
  EXPECT_EQ(disk.ReadLink(folder.Path("link"), text), 0);
  EXPECT_EQ(text, "a/../a");
  EXPECT_EQ(disk.RealPath(folder.Path("link/."), text), 0);
  EXPECT_EQ(text, folder.Path("a"));
  EXPECT_EQ(disk.ReadLink(folder.Path("a"), text), -EINVAL);
  EXPECT_EQ(disk.RealPath(folder.Path("none"), text), -ENOENT);
}

TEST_F(PosixDiskTest, ReturnsItsSurroundings) {
  EXPECT_EQ(disk.DataHome(), folder.Path("data"));
  EXPECT_EQ(disk.User(), geteuid());
  EXPECT_TRUE(std::regex_match(disk.TimeStamp(), std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d")));
}

class ScratchTest : public PosixDiskTest {
 protected:
  ScratchTest() {
    if (const char* set = std::getenv("TMPDIR")) before = set;
    fs::create_directory(folder.Path("tmp"));
    setenv("TMPDIR", folder.Path("tmp").c_str(), 1);
  }
  ~ScratchTest() override { before.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", before.c_str(), 1); }

  std::string before;
};

TEST_F(ScratchTest, AScratchFileHasNoName) {
  const int handle = disk.OpenScratch(1000);
  ASSERT_GE(handle, 0);
  EXPECT_EQ(fcntl(handle, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  EXPECT_TRUE(fs::is_empty(folder.Path("tmp")));
  DiskFacts facts;
  DiskFacts place;
  ASSERT_EQ(disk.StatOpen(handle, facts), 0);
  ASSERT_EQ(disk.Stat(folder.Path("tmp"), place), 0);
  EXPECT_EQ(facts.device, place.device);
  EXPECT_EQ(facts.links, 0u);
  EXPECT_EQ(facts.mode, 0600u);
  EXPECT_EQ(disk.Write(handle, "abcdef", 6), 6);
  char read[4] = {};
  EXPECT_EQ(disk.ReadAt(handle, 2, read, 3), 3);
  EXPECT_STREQ(read, "cde");
  EXPECT_EQ(disk.ReadAt(handle, 6, read, 3), 0);
  EXPECT_EQ(disk.Close(handle), 0);
}

TEST_F(ScratchTest, AScratchFileNeedsRoomAndAFolder) {
  struct statvfs info {};
  ASSERT_EQ(statvfs(folder.Path("tmp").c_str(), &info), 0);
  EXPECT_EQ(disk.OpenScratch(std::uint64_t{info.f_blocks} * info.f_frsize), -ENOSPC);
  EXPECT_EQ(disk.OpenScratch(UINT64_MAX), -ENOSPC);
  fs::remove(folder.Path("tmp"));
  EXPECT_EQ(disk.OpenScratch(1), -ENOENT);
  setenv("TMPDIR", "relative", 1);
  const int handle = disk.OpenScratch(1);
  EXPECT_GE(handle, 0);
  disk.Close(handle);
}

}  // namespace
}  // namespace quillon::host::posix
