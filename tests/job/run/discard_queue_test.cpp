// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/discard_queue.h"

#include <filesystem>
#include <utility>

#include "host/testing/open_watch.h"
#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

class DiscardQueueTest : public CutTest {
 protected:
  // A source with outputs of those names, the sources and outputs being whole pictures.
  void Queue(const std::string& source, const std::vector<std::string>& outputs) {
    DiscardQueue::Source entry{0, Make(source), {}};
    for (const std::string& output : outputs) entry.outputs.push_back(Make(output));
    queue.Add(std::move(entry));
  }
  void Drain(const std::vector<host::LateFailure>& lost = {}) {
    queue.Drain(
        lost,
        [this](const DiscardQueue::Source& source) {
          asked.push_back(source.path);
          return due;
        },
        [this](const DiscardQueue::Source&, DiscardQueue::Kept reason, const host::Status& status) {
          kept.emplace_back(reason, status.Why());
        });
  }

  using Kept = DiscardQueue::Kept;

  DiscardQueue queue{program.context};
  bool due = true;
  std::vector<std::string> asked;
  std::vector<std::pair<Kept, std::string>> kept;
};

TEST_F(DiscardQueueTest, SourcesGoInTheirOrderOnceAllOutputsAreReadBack) {
  Queue("a.bmp", {"a_1.png", "a_2.jpg"});
  Queue("b.bmp", {"b_1.bmp"});
  EXPECT_EQ(queue.Size(), 2u);
  Drain();
  EXPECT_EQ(queue.Size(), 0u);
  EXPECT_EQ(asked, (std::vector<std::string>{In("a.bmp"), In("b.bmp")}));
  EXPECT_TRUE(kept.empty());
  EXPECT_FALSE(world.folder.Exists("in/a.bmp"));
  EXPECT_TRUE(world.folder.Exists("data/Trash/files/a.bmp"));
  Drain();
  EXPECT_EQ(asked.size(), 2u) << "the queue is empty now";
}

TEST_F(DiscardQueueTest, OneOutputThatBreaksOffKeepsTheSource) {
  Queue("a.bmp", {"a_1.png", "a_2.png"});
  const std::string whole = world.folder.Read("in/a_2.png");
  world.folder.Write("in/a_2.png", whole.substr(0, whole.size() / 2));
  Drain();
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(kept[0].first, Kept::OutputLost);
  EXPECT_NE(kept[0].second, "");
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
}

TEST_F(DiscardQueueTest, OneOutputThatDidNotReachTheDiskKeepsTheSource) {
  Queue("a.bmp", {"a_1.png", "a_2.png"});
  Drain({{In("a_2.png"), {host::Problem::Other, "late"}}});
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(kept[0], std::pair(Kept::OutputLost, std::string("late")));
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
}

TEST_F(DiscardQueueTest, TheOwnerMayKeepASource) {
  Queue("a.bmp", {"a_1.png"});
  due = false;
  Drain();
  EXPECT_TRUE(kept.empty());
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
}

TEST_F(DiscardQueueTest, OutputsOfASourceThatIsNotDueAreNotRead) {
  for (const bool wanted : {false, true}) {
    Queue("a.bmp", {"a_1.png"});
    due = wanted;
    host::testing::OpenWatch reads(In("a_1.png"));
    Drain();
    EXPECT_EQ(reads.Opened(), wanted);
  }
}

TEST_F(DiscardQueueTest, ASourceThatHasChangedSinceItWasReadIsKept) {
  for (const bool changed : {false, true}) {
    DiscardQueue::Source entry{0, Make("a.bmp"), {Make("a_1.png")}};
    entry.stamp = StampOf(world.files, entry.path);
    queue.Add(entry);
    if (changed) Make("a.bmp", 60, 50);
    Drain();
    EXPECT_EQ(world.folder.Exists("in/a.bmp"), changed);
  }
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(kept[0].first, Kept::Changed);
}

TEST_F(DiscardQueueTest, ASourceThatCannotBeDiscardedIsReported) {
  Queue("a.bmp", {"a_1.png"});
  std::filesystem::remove(In("a.bmp"));
  Drain();
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(kept[0].first, Kept::NotDiscarded);
}

}  // namespace
}  // namespace quillon::job
