// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/paths.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "host/testing/test_host.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;

TEST(AbsolutePath, StartsAtTheFolder) {
  EXPECT_EQ(AbsolutePath("a/b.jpg", "/here"), "/here/a/b.jpg");
  EXPECT_EQ(AbsolutePath("/a", "/here"), "/a");
  EXPECT_EQ(AbsolutePath(".", "/here"), "/here");
  EXPECT_EQ(AbsolutePath("/", "/here"), "/");
  EXPECT_EQ(AbsolutePath("./a//b/", "/here"), "/here/a/b");
  EXPECT_EQ(AbsolutePath("..", "/here/there"), "/here");
  EXPECT_EQ(AbsolutePath("../a", "/here/there"), "/here/a");
}

// "link/.." is the folder above the link's target, not the one that the link stands in.
TEST(AbsolutePath, GoesUpFromTheTargetOfALink) {
  const testing::TempFolder folder;
  fs::create_directories(folder.Path("far/away"));
  fs::create_directory_symlink(folder.Path("far/away"), folder.Path("link"));
  EXPECT_EQ(AbsolutePath("link/../a.jpg", folder.Path()), fs::canonical(folder.Path()).native() + "/far/a.jpg");
}

TEST(AbsolutePath, StartsAtTheCurrentFolder) {
  EXPECT_EQ(AbsolutePath("a"), (fs::current_path() / "a").native());
  EXPECT_EQ(AbsolutePath("/a//b/./"), "/a/b");
  EXPECT_EQ(AbsolutePath(""), "");
}

TEST(AbsoluteFolder, LeavesTextsThatAreNone) {
  const testing::TestHost world;
  EXPECT_EQ(AbsoluteFolder(world.files, "."), fs::current_path());
  EXPECT_EQ(AbsoluteFolder(world.files, "/no//where/"), "/no/where");
  EXPECT_EQ(AbsoluteFolder(world.files, "未选择"), "未选择");
  EXPECT_EQ(AbsoluteFolder(world.files, "nowhere/"), "nowhere");
  EXPECT_EQ(AbsoluteFolder(world.files, ""), "");
}

}  // namespace
}  // namespace quillon::host
