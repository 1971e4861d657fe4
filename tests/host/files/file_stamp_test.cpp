// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/file_stamp.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

// size, modified, inode, changed, device
constexpr FileStamp kBefore = {1000, 50, 7, 60, 3};

struct Case {
  const char* what;
  FileStamp now;
  bool unchanged;
  bool sameFile;  // over mounts
  bool sameContent;
};

TEST(FileStamp, AnswersEachQuestion) {
  const Case cases[] = {
      {"nothing changed", {1000, 50, 7, 60, 3}, true, true, true},
      {"renamed, or other rights", {1000, 50, 7, 61, 3}, false, true, true},
      {"written to", {1200, 55, 7, 61, 3}, false, true, false},
      {"mounted anew", {1000, 50, 8, 60, 3}, false, true, true},
      {"mounted anew as another device", {1000, 50, 8, 60, 4}, false, true, true},
      {"mounted anew, the time of change is not stored", {1000, 50, 8, 50, 3}, false, true, true},
      {"replaced", {900, 70, 8, 71, 3}, false, false, false},
      {"replaced, and given its time", {900, 50, 8, 70, 3}, false, false, false},
      {"replaced by as many bytes, and given its time", {1000, 50, 8, 70, 3}, false, false, true},
      {"replaced and mounted anew, the time of change is not stored", {900, 50, 8, 50, 3}, false, false, false},
      {"replaced on a disk whose clock stands", {900, 50, 8, 60, 3}, false, false, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(Unchanged(kBefore, c.now), c.unchanged);
    EXPECT_EQ(SameFileOverMounts(kBefore, c.now), c.sameFile);
    EXPECT_EQ(SameContent(kBefore, c.now), c.sameContent);
    EXPECT_EQ(UnchangedOverMounts(kBefore, c.now), c.sameFile && c.sameContent);
  }
}

TEST(FileStamp, FactsOfAnotherKindAreAnotherFile) {
  FileFacts file;
  file.kind = FileKind::File;
  FileFacts folder = file;
  EXPECT_TRUE(Unchanged(file, folder));
  folder.kind = FileKind::Folder;
  EXPECT_FALSE(Unchanged(file, folder));
}

TEST(FileStamp, TextOmitsTheDevice) {
  std::ostringstream text;
  text << kBefore << ' ' << FileStamp{1, -2, 18446744073709551615U, 4, 5};
  EXPECT_EQ(text.str(), "1000 50 7 60 1 -2 18446744073709551615 4");
  std::istringstream in(text.str());
  FileStamp first = {9, 9, 9, 9, 9};
  FileStamp second;
  ASSERT_TRUE(in >> first >> second);
  EXPECT_EQ(first, (FileStamp{1000, 50, 7, 60, 0}));
  EXPECT_EQ(second, (FileStamp{1, -2, 18446744073709551615U, 4, 0}));
  EXPECT_FALSE(in >> first);
  std::istringstream old("1/2/3/4");
  EXPECT_FALSE(old >> first);
}

TEST(FileStamp, IsOfFilesAlone) {
  testing::TestHost world;
  const std::string path = world.folder.Write("a.txt", "four");
  const auto stamp = StampOf(world.files, path);
  ASSERT_TRUE(stamp);
  EXPECT_EQ(stamp->size, 4u);
  EXPECT_EQ(*stamp, StampOf(*world.files.Stat(path)));
  EXPECT_FALSE(StampOf(world.files, world.folder.Path()));
  EXPECT_FALSE(StampOf(world.files, world.folder.Path("none")));
}

// A result that keeps the times of the file that it replaces is another file all the same.
TEST(FileStamp, ASavedFileIsReplacedAndARenumberedOneIsNot) {
  testing::TestHost world;
  const std::string path = world.folder.Write("a.txt", "before");
  const auto before = StampOf(world.files, path);
  world.faults.Renumber(1000);
  EXPECT_TRUE(UnchangedOverMounts(*before, *StampOf(world.files, path)));
  EXPECT_FALSE(Unchanged(*before, *StampOf(world.files, path)));
  ASSERT_TRUE(world.files.Save(path, "after it"));
  EXPECT_FALSE(SameFileOverMounts(*before, *StampOf(world.files, path)));
}

}  // namespace
}  // namespace quillon::host
