// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/run/discard_queue.h"

#include <filesystem>

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
        [this](const DiscardQueue::Source& source, const host::Status& read) {
          judged.push_back(source.path);
          reads.push_back(read);
          return verdict;
        },
        [this](const DiscardQueue::Source&, const host::Status& status) { discarded.push_back(status); });
  }

  DiscardQueue queue{program.context};
  DiscardQueue::Verdict verdict = DiscardQueue::Verdict::Discard;
  std::vector<std::string> judged;
  std::vector<host::Status> reads;
  std::vector<host::Status> discarded;
};

TEST_F(DiscardQueueTest, SourcesGoInTheirOrderOnceAllOutputsAreReadBack) {
  Queue("a.bmp", {"a_1.png", "a_2.jpg"});
  Queue("b.bmp", {"b_1.bmp"});
  EXPECT_EQ(queue.Size(), 2u);
  Drain();
  EXPECT_EQ(queue.Size(), 0u);
  EXPECT_EQ(judged, (std::vector<std::string>{In("a.bmp"), In("b.bmp")}));
  EXPECT_EQ(discarded.size(), 2u);
  EXPECT_FALSE(world.folder.Exists("in/a.bmp"));
  EXPECT_TRUE(world.folder.Exists("data/Trash/files/a.bmp"));
  Drain();
  EXPECT_EQ(judged.size(), 2u) << "the queue is empty now";
}

TEST_F(DiscardQueueTest, OneOutputThatBreaksOffKeepsTheSource) {
  Queue("a.bmp", {"a_1.png", "a_2.png"});
  const std::string whole = world.folder.Read("in/a_2.png");
  world.folder.Write("in/a_2.png", whole.substr(0, whole.size() / 2));
  Drain();
  ASSERT_EQ(reads.size(), 1u);
  EXPECT_FALSE(reads[0]);
  EXPECT_TRUE(discarded.empty());
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
}

TEST_F(DiscardQueueTest, OneOutputThatDidNotReachTheDiskKeepsTheSource) {
  Queue("a.bmp", {"a_1.png", "a_2.png"});
  Drain({{In("a_2.png"), {host::Problem::Other, "late"}}});
  ASSERT_EQ(reads.size(), 1u);
  EXPECT_EQ(reads[0].Why(), "late");
  EXPECT_TRUE(discarded.empty());
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
}

TEST_F(DiscardQueueTest, TheOwnerMayKeepASource) {
  Queue("a.bmp", {"a_1.png"});
  verdict = DiscardQueue::Verdict::Keep;
  Drain();
  ASSERT_EQ(reads.size(), 1u);
  EXPECT_TRUE(reads[0]);
  EXPECT_TRUE(discarded.empty());
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
}

TEST_F(DiscardQueueTest, ASourceThatCannotBeDiscardedIsReported) {
  Queue("a.bmp", {"a_1.png"});
  std::filesystem::remove(In("a.bmp"));
  Drain();
  ASSERT_EQ(discarded.size(), 1u);
  EXPECT_FALSE(discarded[0]);
}

}  // namespace
}  // namespace quillon::job
