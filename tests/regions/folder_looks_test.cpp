// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Which files of a watched folder are new and have settled.
#include "regions/folder_looks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "host/testing/test_host.h"

namespace quillon::regions {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderLooksTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(world_.files.MakeFolders(world_.folder.Path("in"))); }
  void Write(const std::string& name, const std::string& content = "x") { world_.folder.Write("in/" + name, content); }
  std::vector<std::string> Look() {
    world_.clock.Advance(0.5);
    return looks_.Look();
  }
  int Listings() { return world_.faults.Count(host::testing::DiskCall::List); }

  host::testing::TestHost world_;
  FolderLooks looks_{world_.host, world_.folder.Path("in"),
                     [](const std::string& name) { return name.ends_with(".jpg"); }};
};

TEST_F(FolderLooksTest, AFileIsReadyWhenTwoLooksFoundItAlike) {
  Write("b.jpg");
  Write("a.jpg");
  Write("c.txt");
  EXPECT_THAT(Look(), IsEmpty());
  EXPECT_THAT(Look(), ElementsAre("a.jpg", "b.jpg"));
  EXPECT_THAT(Look(), ElementsAre("a.jpg", "b.jpg"));
}

TEST_F(FolderLooksTest, AGrowingFileIsWaitedFor) {
  Write("a.jpg", "1");
  Look();
  Write("a.jpg", "12");
  EXPECT_THAT(Look(), IsEmpty());
  Write("a.jpg", "123");
  EXPECT_THAT(Look(), IsEmpty());
  EXPECT_THAT(Look(), ElementsAre("a.jpg"));
}

TEST_F(FolderLooksTest, ATakenNameStaysTakenWhateverComesUnderIt) {
  Write("a.jpg");
  Look();
  Look();
  looks_.Take("a.jpg");
  EXPECT_THAT(looks_.SeenNames(), ElementsAre("a.jpg"));
  EXPECT_THAT(Look(), IsEmpty());
  Write("a.jpg", "another");
  EXPECT_THAT(Look(), IsEmpty());
  EXPECT_THAT(Look(), IsEmpty());
}

TEST_F(FolderLooksTest, ARefusedFileIsReadyAgainOnceItChangedAndSettled) {
  Write("a.jpg", "half");
  Look();
  EXPECT_THAT(Look(), ElementsAre("a.jpg"));
  looks_.Refuse("a.jpg");
  EXPECT_THAT(Look(), IsEmpty());
  EXPECT_THAT(Look(), IsEmpty());
  Write("a.jpg", "the whole");
  EXPECT_THAT(Look(), IsEmpty());
  EXPECT_THAT(Look(), ElementsAre("a.jpg"));
}

TEST_F(FolderLooksTest, AVanishedFileIsForgotten) {
  Write("a.jpg");
  Look();
  std::filesystem::remove(world_.folder.Path("in/a.jpg"));
  EXPECT_THAT(Look(), IsEmpty());
  EXPECT_FALSE(looks_.StampOf("a.jpg").has_value());
  EXPECT_THAT(looks_.SeenNames(), IsEmpty());
}

TEST_F(FolderLooksTest, AQuietFolderIsListedNowAndThenOnly) {
  Write("a.jpg");
  for (int i = 0; i < 5; ++i) Look();
  const int before = Listings();
  for (int i = 0; i < 19; ++i) Look();
  EXPECT_LE(Listings() - before, 2);
  Write("b.jpg");
  Look();
  EXPECT_THAT(Look(), testing::Contains("b.jpg"));
}

TEST_F(FolderLooksTest, AFolderMayGoAndComeBack) {
  Look();
  EXPECT_TRUE(looks_.FolderThere());
  std::filesystem::rename(world_.folder.Path("in"), world_.folder.Path("away"));
  EXPECT_THAT(Look(), IsEmpty());
  EXPECT_FALSE(looks_.FolderThere());
  std::filesystem::rename(world_.folder.Path("away"), world_.folder.Path("in"));
  Write("a.jpg");
  Look();
  EXPECT_TRUE(looks_.FolderThere());
  EXPECT_THAT(Look(), ElementsAre("a.jpg"));
}

TEST_F(FolderLooksTest, AListingThatFailsIsTriedAgain) {
  Write("a.jpg");
  world_.faults.Set({.call = host::testing::DiskCall::List, .nth = 1, .error = EIO});
  EXPECT_THAT(Look(), IsEmpty());
  EXPECT_FALSE(looks_.FolderThere());
  Look();
  EXPECT_TRUE(looks_.FolderThere());
  EXPECT_THAT(Look(), ElementsAre("a.jpg"));
}

}  // namespace
}  // namespace quillon::regions
