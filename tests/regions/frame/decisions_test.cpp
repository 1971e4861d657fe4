// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What was decided at the pictures of a manual run outlives a run that did not come to its end.
#include "regions/frame/decision.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <map>
#include <sstream>

#include "host/files/file_stamp.h"
#include "regions/regions_fixture.h"

namespace quillon::regions {
namespace {

using host::Reply;

constexpr const char* kQuestion = "上次的手动裁剪没有做完";
constexpr const char* kFolderQuestion = "上次的这项任务没有做完";

// Journals that outlive their program, as a disk does.
class MemoryJournals final : public host::Journals {
 public:
  using Values = std::map<std::pair<std::string, std::string>, std::string>;

  std::unique_ptr<host::Journal> Open(const host::JobPart& part) override {
    return std::make_unique<One>(jobs[part.job]);
  }
  std::optional<host::JobPart> FindUnfinished(const std::string& job, const Wanted& wanted) override {
    const host::JobPart whole{job, 0, 1};
    const auto found = jobs.find(job);
    return found != jobs.end() && !found->second.empty() && wanted(whole) ? std::optional(whole) : std::nullopt;
  }
  bool Forget(const std::string&, const Wanted&) override { return true; }

  std::map<std::string, Values> jobs;

 private:
  class One final : public host::Journal {
   public:
    explicit One(Values& values) : values_(values) {}
    std::optional<std::string> Get(const std::string& file, const std::string& key) override {
      const auto found = values_.find({file, key});
      return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    void Set(const std::string& file, const std::string& key, const std::string& value) override {
      values_[{file, key}] = value;
    }
    std::size_t Count(const std::string& key) override {
      std::size_t count = 0;
      for (const auto& [place, value] : values_) count += place.second == key;
      return count;
    }
    void Each(const std::string& key, const std::function<void(const std::string&)>& visit) override {
      for (const auto& [place, value] : values_) {
        if (place.second == key) visit(place.first);
      }
    }
    bool Commit() override { return true; }
    void Clear() override { values_.clear(); }
    void Remove() override { values_.clear(); }

   private:
    Values& values_;
  };
};

TEST(DecisionText, GoesThereAndBack) {
  const Decision decision{{"1", "2.5", "3", "4"}, true, "AQS"};
  EXPECT_EQ(TextOf(decision), "1\t2.5\t3\t4\tZ\tAQS");
  EXPECT_EQ(DecisionFrom(TextOf(decision)), decision);
  const Decision plain{{"0", "0", "0", "0"}, false, ""};
  EXPECT_EQ(DecisionFrom(TextOf(plain)), plain);
  const Decision changed{{"0", "0", "0", "0"}, false, "A", "PF"};
  EXPECT_EQ(TextOf(changed), "0\t0\t0\t0\t\tA\tPF");
  EXPECT_EQ(DecisionFrom(TextOf(changed)), changed);
  EXPECT_EQ(DecisionFrom("1\t2"), std::nullopt);
  EXPECT_EQ(DecisionFrom(""), std::nullopt);
}

class DecisionsTest : public RegionsTest {
 protected:
  void SetUp() override {
    RegionsTest::SetUp();
    form.ChCutA.Set(false);
    CutTest::Margins(0, 0, 0, 0);
    Option("ChMamal", "1");
    program.journals = &journals_;
    // At each picture a frame of its own: 10, 20, 30 per cent off the left.
    world.pump.EveryTurn([this] {
      if (!regions.cutFrame.Waiting() || flags.ManualStepDone) return;
      asked_.push_back(flags.CurrentImagePath);
      if (asked_.size() == stopAt_) {
        flags.StopRequested = true;
        return;
      }
      if (act_) act_();
      form.TCutValue[0].SetText(std::to_string(10 * asked_.size()));
      program.fCutPre.CmdNext.UserClick();
    });
    for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) paths_.push_back(Make(name, 100, 80));
    List(paths_);
  }
  // A run that is stopped at its nth picture, 0 for none.
  void Run(std::size_t stopAt = 0) {
    asked_.clear();
    stopAt_ = stopAt;
    Cut();
  }
  int Width(const std::string& path) { return SizeOf(path).width; }

  MemoryJournals journals_;
  std::vector<std::string> paths_;
  std::vector<std::string> asked_;
  std::size_t stopAt_ = 0;
  std::function<void()> act_;
};

TEST_F(DecisionsTest, AStoppedRunIsResumedAtTheSamePicture) {
  Run(3);
  EXPECT_EQ(asked_.size(), 3u);
  EXPECT_EQ(Boxes(kQuestion), 0);
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(Boxes("已指定 2 张。要从第 3 张继续吗？\r\n" + In("c.jpg")), 1);
  EXPECT_EQ(asked_, (std::vector<std::string>{In("c.jpg")}));
  EXPECT_EQ(Width(Out("a.jpg")), 90);
  EXPECT_EQ(Width(Out("b.jpg")), 80);
  EXPECT_EQ(Totals().written, 3u);
}

TEST_F(DecisionsTest, ARunThatCameToItsEndIsForgotten) {
  Run();
  Run();
  EXPECT_EQ(Boxes(kQuestion), 0);
  EXPECT_EQ(asked_.size(), 3u);
}

TEST_F(DecisionsTest, NoBeginsAnew) {
  Run(3);
  world.boxes.Answer(kQuestion, Reply::No);
  Run();
  EXPECT_EQ(asked_.size(), 3u);
}

TEST_F(DecisionsTest, CancelCutsNothing) {
  Run(3);
  world.boxes.Answer(kQuestion, Reply::Cancel);
  Run();
  EXPECT_TRUE(asked_.empty());
  EXPECT_EQ(Totals().written, 0u);
  world.boxes.Forget();
  // What was decided is still there.
  Run();
  EXPECT_EQ(Boxes(kQuestion), 1);
}

TEST_F(DecisionsTest, AnotherListIsAnotherRun) {
  Run(3);
  program.files.Remove(0);
  Run();
  EXPECT_EQ(Boxes(kQuestion), 0);
  EXPECT_EQ(asked_.size(), 2u);
}

TEST_F(DecisionsTest, APictureThatChangedIsAskedAboutAgain) {
  Run(3);
  Make("a.jpg", 60, 50);
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_, (std::vector<std::string>{In("a.jpg"), In("c.jpg")}));
}

TEST_F(DecisionsTest, AChoiceToCutTheFrameIsMadeAgain) {
  form.ChCutA.Set(true);
  Put("FBaseOpt.TSmalS(2)", "50");
  Put("FBaseOpt.TSmalS(3)", "40");
  world.boxes.Answer("画的框不是将裁出的部分", Reply::No);
  Run(3);
  EXPECT_TRUE(form.ChAsFramed.On());
  EXPECT_EQ(Width(Out("a.jpg")), 90);
  for (const char* name : {"a.jpg", "b.jpg"}) std::filesystem::remove(Out(name));
  // As after a new start of the program.
  form.ChAsFramed.Set(false);
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_.size(), 1u);
  EXPECT_EQ(Width(Out("a.jpg")), 90);
  EXPECT_EQ(Width(Out("b.jpg")), 80);
}

TEST_F(DecisionsTest, TurnsAndPassedOverPicturesAreDoneAgain) {
  world.boxes.Answer("确定旋转？", Reply::No);
  act_ = [this] {
    if (asked_.size() == 1) program.fCutPre.CmdRot90.UserClick();
    if (asked_.size() == 2) program.fCutPre.CmdNotCut.UserClick();
  };
  Run(3);
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{72, 100}));
  for (const char* name : {"a.jpg", "b.jpg"}) std::filesystem::remove(Out(name));
  act_ = {};
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_.size(), 1u);
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{72, 100}));
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{100, 80}));
}

TEST_F(DecisionsTest, APictureThatCannotBeTurnedAgainIsNotCut) {
  world.boxes.Answer("确定旋转？", Reply::No);
  act_ = [this] {
    if (asked_.size() == 1) program.fCutPre.CmdRot90.UserClick();
  };
  Run(3);
  std::filesystem::remove(Out("a.jpg"));
  act_ = {};
  world.boxes.Answer(kQuestion, Reply::Yes);
  world.faults.Set({.call = host::testing::DiskCall::OpenNew, .error = EIO, .pathHolds = "Tmp.jpg"});
  Run();
  EXPECT_EQ(asked_, (std::vector<std::string>{In("c.jpg")}));
  EXPECT_EQ(Why(1).rfind("图片没能旋转，这一张没有裁剪：", 0), 0u) << Why(1);
  EXPECT_FALSE(std::filesystem::exists(Out("a.jpg")));
  EXPECT_EQ(Totals().written, 2u);
}

TEST_F(DecisionsTest, APictureThatCouldNotBePaddedIsAskedAboutAgain) {
  form.ChCutA.Set(true);
  form.ChFixCut.Set(true);
  form.TFixWH[0].SetText("80");
  form.TFixWH[1].SetText("20");
  act_ = [this] {
    if (asked_.size() > 1) return;
    world.faults.Set({.call = host::testing::DiskCall::OpenNew, .error = EIO, .pathHolds = "Tmp.jpg"});
    program.fCutPre.CmdAddBoard.UserClick();
  };
  Run(3);
  EXPECT_EQ(Why(1), "裁剪框预览中的图片已不存在");
  act_ = {};
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_, (std::vector<std::string>{In("a.jpg"), In("c.jpg")}));
}

TEST_F(DecisionsTest, APictureCutInItsPlaceIsNotCutAgain) {
  form.ChOver.Set(true);
  Run(3);
  EXPECT_EQ(Width(In("a.jpg")), 90);
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_, (std::vector<std::string>{In("c.jpg")}));
  EXPECT_EQ(Width(In("a.jpg")), 90);
  EXPECT_EQ(Width(In("b.jpg")), 80);
  EXPECT_EQ(Totals().skipped, 2u);
}

// A memory card that is put in again numbers its files anew: what was decided, and what was cut, is known all the same.
TEST_F(DecisionsTest, PicturesOnADiskThatNumbersItsFilesAnewAreKnown) {
  for (const bool over : {false, true}) {
    SCOPED_TRACE(over);
    for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) Make(name, 100, 80);
    form.ChOver.Set(over);
    Run(3);
    world.faults.Renumber(1000);
    world.boxes.Answer(kQuestion, Reply::Yes);
    Run();
    EXPECT_EQ(asked_, (std::vector<std::string>{In("c.jpg")}));
    EXPECT_EQ(Width(over ? In("a.jpg") : Out("a.jpg")), 90);
    EXPECT_EQ(Width(over ? In("b.jpg") : Out("b.jpg")), 80);
    EXPECT_EQ(Totals().skipped, over ? 2u : 0u);
    world.boxes.Forget();
  }
}

// A disk may give a cut of the same size the times of its source; only the inode shows that it was replaced.
TEST_F(DecisionsTest, ACutThatLooksLikeItsSourceIsNotCutAgain) {
  form.ChOver.Set(true);
  Run(3);
  for (auto& [job, values] : journals_.jobs) {
    std::istringstream after(values.at({In("a.jpg"), "after"}));
    host::FileStamp stamp;
    ASSERT_TRUE(after >> stamp);
    stamp.inode += 7;
    std::ostringstream before;
    before << stamp;
    values[{In("a.jpg"), "before"}] = before.str();
  }
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_, (std::vector<std::string>{In("c.jpg")}));
  EXPECT_EQ(Width(In("a.jpg")), 90);
  EXPECT_EQ(Totals().skipped, 2u);
}

TEST_F(DecisionsTest, StampsOfEarlierVersionsAreRead) {
  form.ChOver.Set(true);
  Run(3);
  for (auto& [job, values] : journals_.jobs) {
    for (auto& [place, value] : values) {
      if (place.second != "decision") std::replace(value.begin(), value.end(), ' ', '/');
    }
  }
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_, (std::vector<std::string>{In("c.jpg")}));
  EXPECT_EQ(Totals().skipped, 2u);
}

// The run was killed after the decision and before the cut.
TEST_F(DecisionsTest, APictureThatWasOnlyDecidedOnIsCutOnADiskThatNumbersItsFilesAnew) {
  form.ChOver.Set(true);
  world.faults.Set({.call = host::testing::DiskCall::Rename, .error = EIO, .pathHolds = "b.jpg"});
  Run(3);
  ASSERT_EQ(Width(In("b.jpg")), 100);
  for (auto& [job, values] : journals_.jobs) values.erase({In("b.jpg"), "after"});
  world.faults.Renumber(1000);
  world.boxes.Answer(kQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_, (std::vector<std::string>{In("c.jpg")}));
  EXPECT_EQ(Width(In("a.jpg")), 90);
  EXPECT_EQ(Width(In("b.jpg")), 80);
}

// Twice resumed: the stored decision is applied again, and fails again or replaces nothing.
TEST_F(DecisionsTest, ADecisionThatWasAppliedAgainIsNoCutOnADiskThatNumbersItsFilesAnew) {
  for (const bool over : {true, false}) {
    SCOPED_TRACE(over);
    for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) Make(name, 100, 80);
    form.ChOver.Set(over);
    const auto fail = [&] {
      world.faults.Set({.call = host::testing::DiskCall::Rename, .error = EIO, .pathHolds = "b.jpg"});
    };
    fail();
    Run(3);
    world.faults.Renumber(1000);
    fail();
    world.boxes.Answer(kQuestion, Reply::Yes, 2);
    Run(1);  // at c.jpg
    world.faults.Renumber(2000);
    Run();
    EXPECT_EQ(asked_, (std::vector<std::string>{In("c.jpg")}));
    EXPECT_EQ(Width(over ? In("b.jpg") : Out("b.jpg")), 80);
    EXPECT_EQ(Totals().none, 0u);
    world.boxes.Forget();
  }
}

// --- Large-capacity mode: the decisions are in the journal of the run, and there is one question.

class FolderDecisionsTest : public DecisionsTest {
 protected:
  void SetUp() override {
    DecisionsTest::SetUp();
    Put("ChBig", "1");
    Put("LInDir", world.folder.Path("in"));
  }
  // Stops at the third picture. The walk has an order of its own.
  void StopAtThird() {
    Run(3);
    ASSERT_EQ(asked_.size(), 3u);
    order_ = asked_;
  }
  std::string OutOf(std::size_t number) const { return Out(std::filesystem::path(order_[number]).filename()); }
  // Leaves what a run that was killed before its first checkpoint leaves.
  void ForgetWhatIsDone() {
    for (auto& [job, values] : journals_.jobs) {
      std::erase_if(values, [](const auto& record) {
        const std::string& key = record.first.second;
        return key == "done" || key == "from" || key == "stamp";
      });
    }
  }
  std::size_t KeptJournals() const {
    return static_cast<std::size_t>(std::count_if(journals_.jobs.begin(), journals_.jobs.end(),
                                                  [](const auto& job) { return !job.second.empty(); }));
  }

  std::vector<std::string> order_;
};

TEST_F(FolderDecisionsTest, AStoppedWalkIsResumedAtTheSamePicture) {
  StopAtThird();
  EXPECT_EQ(KeptJournals(), 1u);
  world.boxes.Answer(kFolderQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(Boxes(kFolderQuestion), 1);
  EXPECT_EQ(Boxes("已写好 2 个文件，已指定 2 张。要接着处理吗？"), 1);
  EXPECT_EQ(Boxes(kQuestion), 0);
  EXPECT_EQ(asked_, std::vector<std::string>{order_[2]});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().skipped, 2u);
  for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(Width(OutOf(i)), 90 - 10 * static_cast<int>(i)) << order_[i];
  EXPECT_EQ(KeptJournals(), 0u);
}

TEST_F(FolderDecisionsTest, PicturesOfAnotherFolderAreAnotherRun) {
  Run(3);
  Put("LInDir", world.folder.Path());
  Put("ChSubFold", "1");
  world.boxes.Forget();
  Run(1);
  EXPECT_EQ(Boxes(kQuestion), 0);
  EXPECT_EQ(Boxes(kFolderQuestion), 0);
}

TEST_F(FolderDecisionsTest, APictureWithoutItsResultIsCutAsItWasDecided) {
  StopAtThird();
  std::filesystem::remove(OutOf(0));
  world.boxes.Answer(kFolderQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_, std::vector<std::string>{order_[2]});
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Width(OutOf(0)), 90);
}

TEST_F(FolderDecisionsTest, AKilledRunKeepsItsDecisions) {
  for (const bool over : {false, true}) {
    SCOPED_TRACE(over);
    for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) Make(name, 100, 80);
    form.ChOver.Set(over);
    StopAtThird();
    ForgetWhatIsDone();
    world.boxes.Answer(kFolderQuestion, Reply::Yes);
    Run();
    EXPECT_EQ(Boxes(std::string("已写好 ") + (over ? "2" : "0") + " 个文件，已指定 2 张。要接着处理吗？"), 1);
    EXPECT_EQ(asked_, std::vector<std::string>{order_[2]});
    EXPECT_EQ(Totals().written, over ? 1u : 3u);
    for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(Width(over ? order_[i] : OutOf(i)), 90 - 10 * static_cast<int>(i));
    world.boxes.Forget();
  }
}

// How the frame counts may be chosen in the run itself, so it does not make another job.
TEST_F(FolderDecisionsTest, AChoiceAtTheFrameMakesNoOtherJob) {
  StopAtThird();
  form.ChAsFramed.Set(!form.ChAsFramed.On());
  form.CmbAnchor.Select(1);
  world.boxes.Answer(kFolderQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(Boxes(kFolderQuestion), 1);
  EXPECT_EQ(asked_, std::vector<std::string>{order_[2]});
}

TEST_F(FolderDecisionsTest, NoForgetsTheDecisionsToo) {
  StopAtThird();
  ForgetWhatIsDone();
  world.boxes.Answer(kFolderQuestion, Reply::No);
  Run();
  EXPECT_EQ(Boxes("否——全部重新处理，从头重新指定"), 1);
  EXPECT_EQ(asked_.size(), 3u);
}

TEST_F(FolderDecisionsTest, CancelKeepsThem) {
  StopAtThird();
  world.boxes.Answer(kFolderQuestion, Reply::Cancel, 1);
  Run();
  EXPECT_TRUE(asked_.empty());
  world.boxes.Answer(kFolderQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(asked_, std::vector<std::string>{order_[2]});
}

// A picture that is zoomed first is shown from a work file, which is the next picture's as well.
TEST_F(FolderDecisionsTest, EachZoomedPictureHasItsOwnDecision) {
  Option("ChZoomAndCut", "1");
  Option("CmbZoom", "50%");
  form.ChOver.Set(true);
  Run();
  ASSERT_EQ(recorder.done.size(), 3u);
  EXPECT_EQ(Totals().written, 3u);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(Width(recorder.done[i].source), 45 - 5 * static_cast<int>(i));
}

TEST_F(FolderDecisionsTest, DecisionsOfEarlierVersionsAreRecordsOfTheRunNow) {
  StopAtThird();
  ForgetWhatIsDone();
  ASSERT_EQ(journals_.jobs.size(), 1u);
  const MemoryJournals::Values records = std::exchange(journals_.jobs.begin()->second, {});
  ASSERT_EQ(records.size(), 4u) << "two records of each picture";
  const std::string old = "manual\n" + world.folder.Path("out") + "\njpg\n" + world.folder.Path("in");
  journals_.jobs[old] = records;
  world.boxes.Answer(kFolderQuestion, Reply::Cancel, 1);
  Run();
  EXPECT_EQ(Boxes("已写好 0 个文件，已指定 2 张"), 1);
  EXPECT_TRUE(journals_.jobs[old].empty());
  world.boxes.Answer(kFolderQuestion, Reply::Yes);
  Run();
  EXPECT_EQ(Boxes(kQuestion), 0);
  EXPECT_EQ(asked_, std::vector<std::string>{order_[2]});
  EXPECT_EQ(Totals().written, 3u);
  EXPECT_EQ(Width(OutOf(0)), 90);
}

}  // namespace
}  // namespace quillon::regions
