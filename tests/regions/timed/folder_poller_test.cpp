// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Which files of a watched folder are new and have settled.
#include "regions/timed/folder_poller.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "host/testing/test_host.h"

namespace quillon::regions {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderPollerTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(world_.files.MakeFolders(world_.folder.Path("in"))); }
  void Write(const std::string& name, const std::string& content = "x") { world_.folder.Write("in/" + name, content); }
  std::vector<std::string> Poll() {
    world_.clock.Advance(0.5);
    return poller_.Poll();
  }
  int Listings() { return world_.faults.Count(host::testing::DiskCall::List); }

  host::testing::TestHost world_;
  FolderPoller poller_{world_.host, world_.folder.Path("in"),
                       [](const std::string& name) { return name.ends_with(".jpg"); }};
};

TEST_F(FolderPollerTest, AFileIsReadyIfTwoPollsFoundItUnchanged) {
  Write("b.jpg");
  Write("a.jpg");
  Write("c.txt");
  EXPECT_THAT(Poll(), IsEmpty());
  EXPECT_THAT(Poll(), ElementsAre("a.jpg", "b.jpg"));
  EXPECT_THAT(Poll(), ElementsAre("a.jpg", "b.jpg"));
}

TEST_F(FolderPollerTest, AGrowingFileIsWaitedFor) {
  Write("a.jpg", "1");
  Poll();
  Write("a.jpg", "12");
  EXPECT_THAT(Poll(), IsEmpty());
  Write("a.jpg", "123");
  EXPECT_THAT(Poll(), IsEmpty());
  EXPECT_THAT(Poll(), ElementsAre("a.jpg"));
}

TEST_F(FolderPollerTest, AHandledNameStaysHandledForEveryLaterFile) {
  Write("a.jpg");
  Poll();
  Poll();
  poller_.MarkHandled("a.jpg");
  EXPECT_THAT(Poll(), IsEmpty());
  Write("a.jpg", "another");
  EXPECT_THAT(Poll(), IsEmpty());
  EXPECT_THAT(Poll(), IsEmpty());
}

TEST_F(FolderPollerTest, ARefusedFileIsReadyAgainOnceItChangedAndSettled) {
  Write("a.jpg", "half");
  Poll();
  EXPECT_THAT(Poll(), ElementsAre("a.jpg"));
  poller_.Refuse("a.jpg");
  EXPECT_THAT(Poll(), IsEmpty());
  EXPECT_THAT(Poll(), IsEmpty());
  Write("a.jpg", "the whole");
  EXPECT_THAT(Poll(), IsEmpty());
  EXPECT_THAT(Poll(), ElementsAre("a.jpg"));
}

TEST_F(FolderPollerTest, AVanishedFileIsForgotten) {
  Write("a.jpg");
  Poll();
  std::filesystem::remove(world_.folder.Path("in/a.jpg"));
  EXPECT_THAT(Poll(), IsEmpty());
  EXPECT_FALSE(poller_.StampOf("a.jpg").has_value());
  Write("a.jpg");
  Poll();
  EXPECT_THAT(Poll(), ElementsAre("a.jpg")) << "it is new again";
}

TEST_F(FolderPollerTest, AQuietFolderIsListedNowAndThenOnly) {
  Write("a.jpg");
  for (int i = 0; i < 5; ++i) Poll();
  const int before = Listings();
  for (int i = 0; i < 19; ++i) Poll();
  EXPECT_LE(Listings() - before, 2);
  Write("b.jpg");
  Poll();
  EXPECT_THAT(Poll(), testing::Contains("b.jpg"));
}

TEST_F(FolderPollerTest, AFolderMayGoAndComeBack) {
  Poll();
  EXPECT_TRUE(poller_.FolderThere());
  std::filesystem::rename(world_.folder.Path("in"), world_.folder.Path("away"));
  EXPECT_THAT(Poll(), IsEmpty());
  EXPECT_FALSE(poller_.FolderThere());
  std::filesystem::rename(world_.folder.Path("away"), world_.folder.Path("in"));
  Write("a.jpg");
  Poll();
  EXPECT_TRUE(poller_.FolderThere());
  EXPECT_THAT(Poll(), ElementsAre("a.jpg"));
}

TEST_F(FolderPollerTest, AListingThatFailsIsTriedAgain) {
  Write("a.jpg");
  world_.faults.Set({.call = host::testing::DiskCall::List, .nth = 1, .error = EIO});
  EXPECT_THAT(Poll(), IsEmpty());
  EXPECT_FALSE(poller_.FolderThere());
  Poll();
  EXPECT_TRUE(poller_.FolderThere());
  EXPECT_THAT(Poll(), ElementsAre("a.jpg"));
}

}  // namespace
}  // namespace quillon::regions
