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

// --- A journal that cannot be kept.

// Journals whose values cannot be stored, as on a full disk, after so many commits.
class FullJournals final : public host::Journals {
 public:
  FullJournals(host::Journals& journals, int commits) : journals_(journals), commits_(commits) {}

  std::unique_ptr<host::Journal> Open(const host::JobPart& part) override {
    auto journal = journals_.Open(part);
    return journal ? std::make_unique<One>(std::move(journal), commits_) : nullptr;
  }
  std::optional<host::JobPart> FindUnfinished(const std::string& job, const Wanted& wanted) override {
    return journals_.FindUnfinished(job, wanted);
  }
  bool Forget(const std::string& job, const Wanted& wanted) override { return journals_.Forget(job, wanted); }

 private:
  class One final : public host::Journal {
   public:
    One(std::unique_ptr<host::Journal> journal, int& commits) : journal_(std::move(journal)), commits_(commits) {}
    std::optional<std::string> Get(const std::string& file, const std::string& key) override {
      return journal_->Get(file, key);
    }
    void Set(const std::string& file, const std::string& key, const std::string& value) override {
      journal_->Set(file, key, value);
    }
    std::size_t Count(const std::string& key) override { return journal_->Count(key); }
    void Each(const std::string& key, const std::function<void(const std::string& file)>& visit) override {
      journal_->Each(key, visit);
    }
    bool Commit() override { return journal_->Commit() && commits_-- > 0; }
    void Clear() override { journal_->Clear(); }
    void Remove() override { journal_->Remove(); }

   private:
    std::unique_ptr<host::Journal> journal_;
    int& commits_;
  };

  host::Journals& journals_;
  int commits_;
};

TEST_F(ResumeTest, NoSourceIsReplacedWhoseRecordCannotBeStored) {
  FullJournals full(journals, 0);
  program.journals = &full;
  Put("ChOver", "1");
  Cut();
  EXPECT_TRUE(Totals().stopped);
  EXPECT_EQ(Totals().written, 0u) << Results();
  ASSERT_EQ(recorder.done.size(), 1u);
  EXPECT_EQ(recorder.done[0].why, "无法写入这项任务的记录（磁盘可能已满），没有覆盖原图，已停止");
  EXPECT_EQ(world.boxes.Count(recorder.done[0].why), 1);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(SizeOf(In(std::to_string(i) + ".png")), (base::Size{40, 30})) << i;
}

TEST_F(ResumeTest, ARunThatOverwritesNothingGoesOnWithoutRecords) {
  FullJournals full(journals, 0);
  program.journals = &full;
  Cut();
  EXPECT_EQ(Totals().written, 6u) << Results();
}

TEST_F(ResumeTest, ARunThatOverwritesAsksIfNoJournalCanBeKept) {
  constexpr const char* kNoRecords = "无法读写这项任务的记录";
  host::posix::SqliteJournals nowhere(world.folder.Path("in/0.png/below"));
  program.journals = &nowhere;
  Put("ChOver", "1");
  Cut();  // nobody answers
  EXPECT_TRUE(recorder.done.empty());
  EXPECT_EQ(world.boxes.Count(kNoRecords), 1);
  EXPECT_EQ(world.boxes.All().at(0).box.type, 36 + host::kSecondIsDefault);
  world.boxes.Answer(kNoRecords, Reply::Yes, 1);
  Cut();
  EXPECT_EQ(Totals().written, 6u) << Results();
}

}  // namespace
}  // namespace quillon::job
