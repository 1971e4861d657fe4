// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Copies of our own work files, and sizes of files that are being written.
#include <gtest/gtest.h>

#include <cerrno>

#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

using testing::DiskCall;
using testing::TestHost;

TEST(CopyOwn, IsASecondNameOfTheSameFile) {
  TestHost world;
  const std::string from = world.folder.Write("app/a", "one");
  const std::string to = world.folder.Write("app/b", "old");
  ASSERT_TRUE(world.files.CopyOwn(from, to));
  EXPECT_TRUE(world.files.SameFile(from, to));
  EXPECT_EQ(world.faults.Count(DiskCall::Sync), 0);
  ASSERT_TRUE(world.files.CopyOwn(from, to)) << "already the same";
  EXPECT_EQ(world.folder.Names("app"), (std::vector<std::string>{"a", "b"}));
  ASSERT_TRUE(world.files.RemoveOwn(to));
  EXPECT_EQ(world.folder.Read("app/a"), "one");
}

TEST(CopyOwn, CopiesIfThereCanBeNoSecondName) {
  for (const DiskCall call : {DiskCall::Link, DiskCall::Rename}) {
    TestHost world;
    const std::string from = world.folder.Write("app/a", "one");
    world.faults.Set({.call = call, .error = EXDEV});
    ASSERT_TRUE(world.files.CopyOwn(from, world.folder.Path("app/b")));
    EXPECT_FALSE(world.files.SameFile(from, world.folder.Path("app/b")));
    EXPECT_EQ(world.folder.Read("app/b"), "one");
    EXPECT_EQ(world.folder.Names("app"), (std::vector<std::string>{"a", "b"}));
  }
}

TEST(CopyOwn, OfAMissingFileLeavesTheTarget) {
  TestHost world;
  const std::string to = world.folder.Write("app/b", "old");
  EXPECT_FALSE(world.files.CopyOwn(world.folder.Path("app/a"), to));
  EXPECT_EQ(world.folder.Read("app/b"), "old");
}

TEST(SizeWithDrafts, CountsTheFileAndItsDrafts) {
  TestHost world;
  const std::string path = world.folder.Path("app/a.tif");
  EXPECT_EQ(world.files.SizeWithDrafts(path), 0u);
  world.folder.Write("app/a.tif", "123");
  world.folder.Write("app/b.tif", "123456");
  EXPECT_EQ(world.files.SizeWithDrafts(path), 3u);
  world.folder.Write("app/.a.tif.quillon-00000a", "12345");
  world.folder.Write("app/.b.tif.quillon-00000a", "12345");
  EXPECT_EQ(world.files.SizeWithDrafts(path), 8u);
  EXPECT_EQ(world.files.SizeWithDrafts("/nowhere/a"), 0u);
}

}  // namespace
}  // namespace quillon::host
