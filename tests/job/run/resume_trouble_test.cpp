// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Jobs that are resumed after a file ended them, or with a damaged journal.
#include "job/run/resume_fixture.h"

namespace quillon::job {
namespace {

using host::Reply;

// --- A file that ended the run.

class EndedResumeTest : public ResumeTest {
 protected:
  // 2.png has no size: the run ends there each time it comes to it.
  void SetUp() override {
    ResumeTest::SetUp();
    world.folder.Write("in/2.png", "");
    Cut();
    ASSERT_TRUE(Totals().stopped);
    ASSERT_EQ(recorder.done.back().source, In("2.png"));
    reason = recorder.done.back().why;
    recorder.done.clear();
    world.boxes.Forget();
  }
  std::string reason;
};

TEST_F(EndedResumeTest, AContinuedRunPassesIt) {
  Answer(Reply::Yes);
  Cut();
  EXPECT_FALSE(Totals().stopped);
  EXPECT_EQ(Totals().written + Totals().skipped, 5u) << Results();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_NE(Results().find(In("2.png") + ": 上次处理到这个文件就停了，这次跳过：" + reason + ";"), std::string::npos)
      << Results();
  EXPECT_EQ(OutNames().size(), 5u);
  EXPECT_TRUE(Journals().empty());
}

TEST_F(EndedResumeTest, ItIsHandledOnceItHasChanged) {
  Make("2.png", 40, 30);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().none, 0u) << Results();
  EXPECT_EQ(OutNames().size(), 6u);
}

TEST_F(EndedResumeTest, ARunThatBeginsAnewEndsThereAgain) {
  Answer(Reply::No);
  Cut();
  EXPECT_TRUE(Totals().stopped);
  EXPECT_EQ(recorder.done.back().why, reason);
}

// --- A journal that could not be read whole.

class TornResumeTest : public ResumeTest {
 protected:
  static constexpr const char* kTorn = "这项任务上次的记录已经损坏";

  // Overwrites the first source that was done, in the journal's file.
  void Tear() {
    const std::string name = "journals/" + Journals().at(0);
    std::string bytes = world.folder.Read(name);
    std::size_t torn = 0;
    for (std::size_t at = bytes.find(first[0].source); at != std::string::npos;
         at = bytes.find(first[0].source, at + 1)) {
      bytes[at] = 'X';
      ++torn;
    }
    ASSERT_GT(torn, 0u);
    world.folder.Write(name, bytes);
  }
  void StopAndTear() {
    Put("ChOver", "1");
    StopAfter(3);
    Tear();
  }
};

TEST_F(TornResumeTest, NothingIsOverwrittenUnlessTheUserWantsIt) {
  StopAndTear();
  for (int i = 0; i < 2; ++i) {
    Cut();  // nobody answers
    ASSERT_EQ(world.boxes.Count(kTorn), i + 1) << "asked each time";
    EXPECT_TRUE(recorder.done.empty());
  }
  EXPECT_EQ(
      world.boxes.All()[0].box.text,
      "这项任务上次的记录已经损坏，有一部分读不出来，不知道哪些原文件已经覆盖过。按读得出的记录，已写好 2 个文件。"
      "要接着处理吗？\r\n是——接着处理，已写好的不再处理，其余的都处理，其中已覆盖的原文件会再裁一次\r\n"
      "否——全部重新处理，已覆盖的原文件会再裁一次\r\n取消——不处理");
  EXPECT_EQ(world.boxes.All()[0].box.type, 35 + host::kThirdIsDefault);
  EXPECT_EQ(SizeOf(first[0].source), (base::Size{20, 30}));
}

TEST_F(TornResumeTest, YesGoesOnWithWhatCanBeRead) {
  StopAndTear();
  world.boxes.Answer(kTorn, Reply::Yes, 1);
  Cut();
  EXPECT_EQ(Totals().written, 4u) << Results();
  EXPECT_EQ(Totals().skipped, 2u);
  EXPECT_EQ(SizeOf(first[0].source), (base::Size{10, 30})) << "its record was lost";
  EXPECT_EQ(SizeOf(first[1].source), (base::Size{20, 30}));
  EXPECT_TRUE(Journals().empty());
}

TEST_F(TornResumeTest, NoBeginsAnew) {
  StopAndTear();
  world.boxes.Answer(kTorn, Reply::No, 1);
  Cut();
  EXPECT_EQ(Totals().written, 6u) << Results();
}

TEST_F(TornResumeTest, AnEmptiedJournalAsksToo) {
  Put("ChOver", "1");
  StopAfter(3);
  world.folder.Write("journals/" + Journals().at(0), "");
  Cut();
  EXPECT_EQ(world.boxes.Count(kTorn), 1);
  EXPECT_TRUE(recorder.done.empty());
}

// Nothing can be lost: the usual question, and what is not known to be done is done again.
TEST_F(TornResumeTest, ARunThatOverwritesNothingGoesOn) {
  StopAfter(3);
  Tear();
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(world.boxes.Count(kTorn), 0);
  EXPECT_EQ(Totals().written, 4u) << Results();
  EXPECT_EQ(Totals().skipped, 2u);
}

}  // namespace
}  // namespace quillon::job
