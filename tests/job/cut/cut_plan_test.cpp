// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What is prefetched for a cut: always the same bytes as without, for every kind of cut that is foreseen.
#include "job/cut/cut_plan.h"

#include <filesystem>
#include <map>
#include <utility>

#include "job/cut/cut_steps.h"
#include "job/cut_fixture.h"
#include "job/psd_bytes.h"

namespace quillon::job {
namespace {

// Controls that are set before the run, in that order. Those without a window are of the advanced options.
struct Case {
  const char* name;
  std::vector<std::pair<std::string, std::string>> set;
};

void PrintTo(const Case& options, std::ostream* out) { *out << options.name; }

const Case kCases[] = {
    {"Plain", {}},
    {"Grey", {{"ChToGray", "1"}}},
    {"BlackWhite", {{"ChToWB", "1"}}},
    {"GreyAndInverted", {{"ChToGray", "1"}, {"ChInvert", "1"}}},
    {"Resolution", {{"CmbDPI", "254"}}},
    {"ResolutionAndInverted", {{"CmbDPI", "254"}, {"ChInvert", "1"}}},
    {"ZoomedBefore", {{"ChZoomAndCut", "1"}, {"CmbZoom", "50%"}}},
    {"ZoomedAfter", {{"ChCutAndZoom", "1"}, {"CmbZoom", "150%"}}},
    {"GreyAndZoomedAfter", {{"ChToGray", "1"}, {"ChCutAndZoom", "1"}, {"CmbZoom", "50,40"}}},
    {"TurnedByRule", {{"CmbRotate", "1"}}},
    {"TurnedByOwnAngle", {{"CmbRotate", "5"}, {"TAngle", "7"}}},
    {"TurnedByRuleAndBack", {{"CmbRotate", "5"}, {"TAngle", "7"}, {"ChRecover", "1"}}},
    {"TurnedForTheCut", {{"ChRotateCut", "1"}, {"TAngle", "-12"}}},
    {"TurnedForTheCutAndBack", {{"ChRotateCut", "1"}, {"TAngle", "90"}, {"ChRecover", "1"}, {"ChToGray", "1"}}},
    {"Bordered", {{"ChAddBoard", "1"}, {"TBoard(0)", "3"}, {"TBoard(3)", "2"}, {"PBoardColor", "#0000FF"}}},
    {"GreyZoomedBordered",
     {{"ChToGray", "1"}, {"ChCutAndZoom", "1"}, {"CmbZoom", "50%"}, {"ChAddBoard", "1"}, {"TBoard(1)", "3"}}},
    {"ZoomedBeforeTurnedBordered",
     {{"ChZoomAndCut", "1"}, {"CmbZoom", "70%"}, {"CmbRotate", "5"}, {"TAngle", "5"}, {"ChAddBoard", "1"}}},
    {"BorderAlone", {{"ChFrmOnly", "1"}, {"ChAddBoard", "1"}, {"TBoard(2)", "3"}}},
    {"Exact", {{"Form1.ChCutA", "1"}, {"Form1.ChFixCut", "1"}, {"Form1.ChExact", "1"}, {"Form1.TFixWH(0)", "30"}}},
    {"ExactAndPadded",
     {{"Form1.ChCutA", "1"}, {"Form1.ChFixCut", "1"}, {"Form1.ChExact", "1"}, {"Form1.ChExactPad", "1"}}},
    {"PaddedAlone", {{"Form1.ChCutA", "1"}, {"Form1.ChFixCut", "1"}, {"Form1.CmbKeepCut", "5"}, {"Form1.ChOver", "0"}}},
};

class CutPlanTest : public CutTest, public ::testing::WithParamInterface<std::tuple<Case, const char*>> {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    Margins(10, 5, 20, 0);
    form.CmbOutType.SetText(std::get<1>(GetParam()));
    flags.FixW = 70;
    flags.FixH = 90;
    options.Load();
    for (const auto& [name, text] : std::get<0>(GetParam()).set) {
      controls::Control* control =
          program.windows.Find(name.find('.') == std::string::npos ? "FBaseOpt." + name : name);
      ASSERT_NE(control, nullptr) << name;
      const controls::EditResult result = control->UserEdit(text);
      ASSERT_TRUE(result.Accepted()) << name << ": " << result.refusal;
    }
    for (const char* name : {"a.jpg", "b.png", "c.gif", "d.tif", "e.bmp"}) {
      sources_.push_back(Make(name, Painted(97 + static_cast<int>(sources_.size()), 64, Slope), 254));
    }
    sources_.push_back(world.folder.Write("in/f.psd", PsdBytes(80, 60, {200, 30, 10})));
  }

  // The outputs of a run over all sources, by name, and what the rows say.
  std::map<std::string, std::string> CutAll() {
    List(sources_);
    Cut();
    std::map<std::string, std::string> outputs;
    for (const std::string& name : OutNames()) outputs[name] = world.folder.Read("out/" + name);
    outputs["whys"] = Whys();
    std::filesystem::remove_all(outFolder);
    EXPECT_TRUE(world.files.MakeFolders(outFolder));
    program.Intake().Clear();
    return outputs;
  }

  std::vector<std::string> sources_;
};

TEST_P(CutPlanTest, AForeseenRunWritesTheSameBytes) {
  program.recovering = true;  // nothing is prefetched
  const auto plain = CutAll();
  EXPECT_EQ(plain.size(), sources_.size() + 1);
  program.recovering = false;
  const auto prefetched = CutAll();
  ASSERT_EQ(plain.size(), prefetched.size());
  for (const auto& [name, bytes] : plain) {
    ASSERT_TRUE(prefetched.contains(name)) << name;
    EXPECT_TRUE(bytes == prefetched.at(name)) << name;
  }
}

// Without this, the test above would compare one way with itself.
TEST_P(CutPlanTest, ThePlanIsWhatTheCutAsksFor) {
  RunLedger ledger(program.context, 0);
  RunJournal journal(program.context, "planned", {});
  CutRun run(program, ledger, journal);
  for (const std::string& source : sources_) {
    SCOPED_TRACE(source);
    CutFile file(run, 0, source);
    ASSERT_EQ(MeasureSource(file), Step::Next);
    const auto plan = ForeseeCut(file, {file.W, file.H});
    ASSERT_TRUE(plan.has_value());
    program.images.PlanWork({plan->work});
    if (plan->PlainCrop()) {
      std::optional<imaging::Services::PrefetchedFiles> ready;
      ASSERT_TRUE(program.images.PopPrefetched(plan->work, ready));
      EXPECT_TRUE(ready.has_value());
      continue;
    }
    EXPECT_EQ(UsePrefetched(file), Prefetched::Used);
    EXPECT_EQ(file.latestFile, plan->output);
    EXPECT_EQ(SizeOf(plan->output), plan->size);
    static_cast<void>(world.files.RemoveOwn(plan->output));
  }
}

std::string NameOf(const ::testing::TestParamInfo<CutPlanTest::ParamType>& info) {
  return std::string(std::get<0>(info.param).name) + "_" + std::get<1>(info.param);
}

INSTANTIATE_TEST_SUITE_P(All, CutPlanTest,
                         ::testing::Combine(::testing::ValuesIn(kCases),
                                            ::testing::Values("jpg", "png", "gif", "tif", "bmp")),
                         NameOf);

class PrefetchedCutTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    Margins(10, 10, 10, 10);
    Option("ChToGray", "1");
    Option("ChAddBoard", "1");
    Option("TBoard(0)", "2");
  }
};

TEST_F(PrefetchedCutTest, TheWorkFileOfTheCutIsNotWritten) {
  Cut({Make("a.jpg"), Make("b.jpg"), Make("c.jpg")});
  EXPECT_EQ(Totals().written, 3u) << Whys();
  EXPECT_FALSE(AppHas("Tmp.jpg"));
  program.recovering = true;
  Cut();
  EXPECT_EQ(Totals().written, 3u) << Whys();
  EXPECT_TRUE(AppHas("Tmp.jpg")) << "it is, step by step";
}

TEST_F(PrefetchedCutTest, ASourceThatChangedMeanwhileIsCutAsItIsNow) {
  List({Make("a.png"), Make("b.png")});
  form.CmbOutType.SetText("png");
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.row == 1) Make("b.png", Painted(100, 80, [](int, int) { return Pixel{10, 200, 30}; }));
  };
  Cut();
  const Picture cut = Read(Out("b.png"));
  EXPECT_NEAR(cut.At(cut.width / 2, 10).green, 0.299 * 10 + 0.587 * 200 + 0.114 * 30, 1);
}

TEST_F(PrefetchedCutTest, ParametersThatChangeDuringTheRunCount) {
  List({Make("a.png"), Make("b.png"), Make("c.png")});
  form.CmbOutType.SetText("png");
  options.ChAddBoard.Set(false);
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.row == 1) Margins(40, 0, 0, 0);
  };
  Cut();
  EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{80, 64}));
  EXPECT_EQ(SizeOf(Out("b.png")), (base::Size{60, 80}));
  EXPECT_EQ(SizeOf(Out("c.png")), (base::Size{60, 80}));
}

TEST_F(PrefetchedCutTest, AFullDiskIsAskedAboutOnceForEachTry) {
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "Tmp2"});
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", host::Reply::Retry, 2);
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", host::Reply::Cancel);
  Cut({Make("a.jpg"), Make("b.jpg")});
  EXPECT_EQ(world.boxes.Count("盘空间不足"), 3);
  EXPECT_EQ(Totals().written, 0u);
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(PrefetchedCutTest, ASourceThatCannotBeReadFailsAsEver) {
  List({Make("a.jpg"), Make("b.jpg")});
  const std::string whole = world.folder.Read("in/b.jpg");
  const auto cutOff = [&] { world.folder.Write("in/b.jpg", whole.substr(0, whole.size() / 2)); };
  cutOff();
  program.recovering = true;
  Cut();
  const std::string why = Why(2);
  program.recovering = false;
  Cut();
  EXPECT_EQ(Why(2), why);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_FALSE(world.folder.Exists("out/b.jpg"));
}

}  // namespace
}  // namespace quillon::job
