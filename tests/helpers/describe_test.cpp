// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/exif/describe.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "helpers/pictures.h"
#include "host/testing/test_host.h"

namespace quillon::helpers {
namespace {

using host::testing::DiskCall;

class DescribeTest : public ::testing::Test {
 protected:
  // Runs act while the description is on its way, and copies it.
  host::Status CopyWith(const std::function<void()>& act) {
    testing::Save(source, testing::Waves(60, 40), 72);
    testing::Save(target, testing::Waves(30, 20), 300);
    world.faults.Before(DiskCall::OpenNew, 1, act);
    return CopyDescription(world.files, source, target);
  }

  host::testing::TestHost world;
  std::string source = world.folder.Path("a.jpg");
  std::string target = world.folder.Path("b.jpg");
};

TEST_F(DescribeTest, AFileThatStandsAsItWasIsReplaced) {
  std::uint64_t before = 0;
  EXPECT_TRUE(CopyWith([&] { before = world.files.Stat(target)->inode; }));
  EXPECT_NE(world.files.Stat(target)->inode, before);
}

// The next picture of a batch, which stands under the same name by the time that a slow helper is done.
TEST_F(DescribeTest, AnotherPictureInItsPlaceStays) {
  const host::Status copied = CopyWith([&] {
    world.folder.Write("next.jpg", "the next picture");
    std::filesystem::rename(world.folder.Path("next.jpg"), target);
  });
  EXPECT_EQ(copied.Why(), "目标文件已有变化，没有写入Exif");
  EXPECT_EQ(world.folder.Read("b.jpg"), "the next picture");
}

TEST_F(DescribeTest, APictureThatIsGoneIsNotMadeAgain) {
  EXPECT_FALSE(CopyWith([&] { std::filesystem::remove(target); }));
  EXPECT_FALSE(world.folder.Exists("b.jpg"));
  EXPECT_EQ(world.folder.Names(), (std::vector<std::string>{"a.jpg", "app"}));
}

}  // namespace
}  // namespace quillon::helpers
