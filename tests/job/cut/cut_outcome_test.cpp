// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What is announced before a cut is what the cut writes: each case is cut for real and compared.
#include "job/cut/cut_outcome.h"

#include <utility>

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

// Controls that are set before the run, in that order.
struct Case {
  const char* name;
  std::vector<std::pair<std::string, std::string>> set;
};

void PrintTo(const Case& options, std::ostream* out) { *out << options.name; }

const Case kCases[] = {
    {"Percent", {{"TCutValue(0)", "10"}, {"TCutValue(2)", "33"}}},
    {"PercentOfNothing", {{"TCutValue(0)", "60"}, {"TCutValue(2)", "60"}}},
    {"Remainders", {{"ChCutA", "1"}, {"TCutValue(0)", "7"}, {"TFixWH(0)", "40"}, {"TFixWH(1)", "30"}}},
    {"RemaindersOfNothing", {{"ChCutA", "1"}, {"TFixWH(0)", "110"}, {"TFixWH(1)", "30"}}},
    {"PixelsWithOptions",
     {{"ChCutA", "1"}, {"FBaseOpt.ChFilter", "0"}, {"TFixWH(0)", "31"}, {"TFixWH(1)", "22"}, {"TCutValue(1)", "5"}}},
    {"FixedCut", {{"ChCutA", "1"}, {"ChFixCut", "1"}, {"TFixWH(0)", "40"}, {"TFixWH(1)", "30"}}},
    {"FixedCutOfNothing", {{"ChCutA", "1"}, {"ChFixCut", "1"}, {"TFixWH(0)", "400"}, {"TFixWH(1)", "300"}}},
    {"Proportional",
     {{"ChCutA", "1"}, {"ChFixCut", "1"}, {"ChAutoZoom", "1"}, {"TCutValue(0)", "20"}, {"TCutValue(3)", "10"}}},
    {"ProportionalAndFull", {{"ChCutA", "1"}, {"ChFixCut", "1"}, {"ChAutoZoom", "1"}, {"ChFull", "1"}}},
    {"Preset", {{"ChCutA", "1"}, {"ChFixCut", "1"}, {"CmbKeepCut", "10"}}},
    {"ZoomedBefore", {{"FBaseOpt.ChZoomAndCut", "1"}, {"FBaseOpt.CmbZoom", "50%"}, {"TCutValue(0)", "10"}}},
    {"ZoomedBeforeToAPair", {{"FBaseOpt.ChZoomAndCut", "1"}, {"FBaseOpt.CmbZoom", "50,41"}}},
    {"ZoomedAfter", {{"FBaseOpt.ChCutAndZoom", "1"}, {"FBaseOpt.CmbZoom", "75%"}, {"TCutValue(1)", "10"}}},
    {"ZoomedBothTimes", {{"FBaseOpt.ChZoomAndCut", "1"}, {"FBaseOpt.ChCutAndZoom", "1"}, {"FBaseOpt.CmbZoom", "70%"}}},
    {"TurnedByRule", {{"FBaseOpt.CmbRotate", "1"}, {"TCutValue(0)", "10"}}},
    {"TurnedByOwnAngle", {{"FBaseOpt.CmbRotate", "5"}, {"FBaseOpt.TAngle", "7"}, {"TCutValue(1)", "10"}}},
    {"TurnedByRuleAndBack", {{"FBaseOpt.CmbRotate", "1"}, {"FBaseOpt.ChRecover", "1"}, {"TCutValue(0)", "10"}}},
    {"TurnedByAngleAndBack",
     {{"FBaseOpt.CmbRotate", "5"}, {"FBaseOpt.TAngle", "7"}, {"FBaseOpt.ChRecover", "1"}, {"TCutValue(1)", "10"}}},
    {"TurnedForTheCut", {{"FBaseOpt.ChRotateCut", "1"}, {"FBaseOpt.TAngle", "-12"}, {"TCutValue(2)", "9"}}},
    {"TurnedForTheCutAndBack",
     {{"FBaseOpt.ChRotateCut", "1"}, {"FBaseOpt.TAngle", "90"}, {"FBaseOpt.ChRecover", "1"}, {"TCutValue(2)", "9"}}},
    {"TurnedInPixels",
     {{"ChCutA", "1"},
      {"FBaseOpt.CmbRotate", "2"},
      {"TFixWH(0)", "30"},
      {"TFixWH(1)", "20"},
      {"FBaseOpt.ChRecover", "1"}}},
    {"Bordered", {{"FBaseOpt.ChAddBoard", "1"}, {"FBaseOpt.TBoard(0)", "3"}, {"FBaseOpt.TBoard(3)", "2"}}},
    {"BorderedAtAResolution",
     {{"FBaseOpt.ChAddBoard", "1"}, {"FBaseOpt.TBoard(0)", "3"}, {"CmbDPI", "600"}, {"TCutValue(0)", "25"}}},
    {"BorderedAtTheResolutionOfTheSource",
     {{"FBaseOpt.ChAddBoard", "1"}, {"FBaseOpt.TBoard(1)", "3"}, {"CmbDPI", "72"}, {"CmbDPI", "0"}}},
    {"FixedAndBordered",
     {{"ChCutA", "1"},
      {"ChFixCut", "1"},
      {"TFixWH(0)", "41"},
      {"TFixWH(1)", "23"},
      {"FBaseOpt.ChAddBoard", "1"},
      {"FBaseOpt.TBoard(2)", "3"}}},
    {"TurnedAndBordered",
     {{"FBaseOpt.CmbRotate", "1"}, {"FBaseOpt.ChAddBoard", "1"}, {"FBaseOpt.TBoard(2)", "3"}, {"TCutValue(0)", "5"}}},
    {"ZoomedAndBordered",
     {{"FBaseOpt.ChCutAndZoom", "1"},
      {"FBaseOpt.CmbZoom", "150%"},
      {"FBaseOpt.ChAddBoard", "1"},
      {"FBaseOpt.TBoard(1)", "2"}}},
    {"BorderAlone", {{"FBaseOpt.ChAddBoard", "1"}, {"FBaseOpt.ChFrmOnly", "1"}, {"FBaseOpt.TBoard(2)", "3"}}},
    {"BorderAloneIsMissing", {{"FBaseOpt.ChAddBoard", "1"}, {"FBaseOpt.ChFrmOnly", "1"}, {"FBaseOpt.ChAddBoard", "0"}}},
    {"PaddedAlone", {{"ChCutA", "1"}, {"ChFixCut", "1"}, {"CmbKeepCut", "5"}, {"ChOver", "0"}}},
    {"Split", {{"FBaseOpt.TSmalS(4)", "3"}, {"FBaseOpt.ChSplit", "1"}, {"FBaseOpt.TSmalS(5)", "2"}}},
    {"SplitIntoTooMany", {{"FBaseOpt.ChSplit", "1"}, {"FBaseOpt.TSmalS(4)", "99"}, {"TCutValue(0)", "20"}}},
    {"SplitAndBordered",
     {{"FBaseOpt.ChSplit", "1"},
      {"FBaseOpt.TSmalS(4)", "3"},
      {"FBaseOpt.ChAddBoard", "1"},
      {"FBaseOpt.TBoard(0)", "3"}}},
    {"AsFramed", {{"ChCutA", "1"}, {"ChAsFramed", "1"}, {"TCutValue(0)", "3"}, {"TCutValue(3)", "5"}}},
    {"AsFramedInPercent", {{"ChAsFramed", "1"}, {"TCutValue(0)", "10"}, {"TCutValue(3)", "33"}}},
    {"AsFramedOfAFixedSize",
     {{"ChCutA", "1"}, {"ChAsFramed", "1"}, {"ChFixCut", "1"}, {"TFixWH(0)", "30"}, {"TFixWH(1)", "20"}}},
    {"AsFramedAndTurned", {{"ChCutA", "1"}, {"ChAsFramed", "1"}, {"TCutValue(0)", "3"}, {"FBaseOpt.CmbRotate", "1"}}},
    {"Exact", {{"ChCutA", "1"}, {"ChFixCut", "1"}, {"ChExact", "1"}, {"TFixWH(0)", "35"}, {"TFixWH(1)", "53"}}},
    {"ExactAndLarger", {{"ChCutA", "1"}, {"ChFixCut", "1"}, {"CmbKeepCut", "10"}, {"ChExact", "1"}}},
    {"ExactTurnedAndGrey",
     {{"ChCutA", "1"},
      {"ChFixCut", "1"},
      {"FBaseOpt.CmbRotate", "1"},
      {"FBaseOpt.ChRecover", "1"},
      {"FBaseOpt.ChToGray", "1"},
      {"ChExact", "1"},
      {"TFixWH(0)", "35"},
      {"TFixWH(1)", "53"}}},
    {"ExactAndBordered",
     {{"ChCutA", "1"},
      {"ChFixCut", "1"},
      {"ChExact", "1"},
      {"TFixWH(0)", "35"},
      {"TFixWH(1)", "53"},
      {"FBaseOpt.ChAddBoard", "1"},
      {"FBaseOpt.TBoard(2)", "3"}}},
    {"Padded",
     {{"ChCutA", "1"},
      {"ChFixCut", "1"},
      {"ChExact", "1"},
      {"ChExactPad", "1"},
      {"TFixWH(0)", "35"},
      {"TFixWH(1)", "53"}}},
    {"BesideThePicture", {{"ChCutA", "1"}, {"ChAsFramed", "1"}, {"TCutValue(0)", "70"}, {"ChFixCut", "1"}}},
    {"PartlyBeside",
     {{"ChCutA", "1"},
      {"ChAsFramed", "1"},
      {"TCutValue(0)", "10"},
      {"TCutValue(1)", "15"},
      {"ChFixCut", "1"},
      {"TFixWH(0)", "30"},
      {"TFixWH(1)", "30"}}},
    {"PresetWithItsBorder",
     {{"ChCutA", "1"},
      {"ChFixCut", "1"},
      {"CmbKeepCut", "3"},
      {"FBaseOpt.ChMamal", "0"},
      {"ChCutAndArray", "0"},
      {"ChOver", "0"}}},
    {"TurnedPresetWithItsBorder",
     {{"ChCutA", "1"},
      {"ChFixCut", "1"},
      {"CmbKeepCut", "4"},
      {"FBaseOpt.ChMamal", "0"},
      {"ChCutAndArray", "0"},
      {"ChOver", "0"},
      {"FBaseOpt.CmbRotate", "3"},
      {"ChMode1", "1"}}},
    {"Grey", {{"FBaseOpt.ChToGray", "1"}, {"TCutValue(0)", "12"}}},
    {"OwnResolution", {{"FBaseOpt.CmbDPI", "254"}, {"TCutValue(0)", "12"}}},
};

class CutOutcomeTest : public CutTest, public ::testing::WithParamInterface<std::tuple<Case, const char*>> {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    form.CmbOutType.SetText(std::get<1>(GetParam()));
    for (const auto& [name, text] : std::get<0>(GetParam()).set) {
      if (name.starts_with("FBaseOpt.")) options.Load();
      controls::Control* control = program.windows.Find(name);
      ASSERT_NE(control, nullptr) << name;
      control->SetEnabled(true);
      const controls::EditResult result = control->UserEdit(text);
      ASSERT_TRUE(result.Accepted()) << name << ": " << result.refusal;
    }
    world.boxes.Forget();
  }

  CutOutcome Announced(std::size_t row) const {
    const FileRow& file = program.files.Row(row);
    return OutcomeOf(ReadCutSettings(program), {{file.width, file.height}, file.dpi, flags.ScreenDpi});
  }
};

TEST_P(CutOutcomeTest, IsWhatTheCutWrites) {
  List({Make("wide.jpg", Painted(97, 64, Slope), 254), Make("tall.png", Painted(64, 98, Slope), 0),
        Make("square.bmp", Painted(120, 120, Slope), 96), Make("small.tif", Painted(33, 21, Slope), 300)});
  ASSERT_EQ(program.files.RowCount(), 4U) << Whys();
  std::vector<CutOutcome> announced;
  for (std::size_t row = 0; row < 4; ++row) announced.push_back(Announced(row));
  Cut();
  ASSERT_EQ(recorder.done.size(), 4U) << Whys();
  for (const FileResult& done : recorder.done) {
    SCOPED_TRACE(done.source + ": " + done.why);
    const CutOutcome& outcome = announced.at(done.row - 1);
    ASSERT_EQ(done.result == Result::Written, outcome.why.empty()) << outcome.why;
    if (!outcome.why.empty()) {
      EXPECT_EQ(done.why, outcome.why);
      continue;
    }
    EXPECT_EQ(SizeOf(done.output), outcome.size);
    // Without any resolution, a tiff states one of its own.
    if (outcome.dpi > 0) {
      EXPECT_EQ(DpiOf(done.output), outcome.dpi);
    }
    EXPECT_EQ(done.more.size() + 1, outcome.pieces);
  }
}

INSTANTIATE_TEST_SUITE_P(Cuts, CutOutcomeTest,
                         ::testing::Combine(::testing::ValuesIn(kCases), ::testing::Values("jpg", "tif")),
                         [](const auto& row) {
                           return std::string(std::get<0>(row.param).name) + "To" + std::get<1>(row.param);
                         });

TEST(CutOutcome, APresetOfAnExactSizeIsItsSizeAtThatResolution) {
  CutSettings settings;
  settings.geometry.ChCutA = settings.geometry.ChFixCut = settings.geometry.ChExact = true;
  settings.geometry.FixW = 413;  // 3.5 cm at 300 dpi
  settings.geometry.FixH = 626;
  settings.dpi = 300;
  const CutOutcome outcome = OutcomeOf(settings, {{5120, 2880}, 72});
  EXPECT_EQ(outcome.size, (base::Size{413, 626}));
  EXPECT_EQ(outcome.cut, (base::Rect{1610, 0, 1900, 2880}));
  EXPECT_EQ(outcome.dpi, 300);
}

TEST(CutOutcome, GivesTheReasonForASmallPicture) {
  CutSettings settings;
  settings.smallest = {100, 100};
  EXPECT_EQ(OutcomeOf(settings, {{99, 400}}).why, "宽或高不足 100x100 像素，按“过滤小图片”跳过");
  EXPECT_EQ(OutcomeOf(settings, {{100, 100}}).why, "");
}

TEST(CutOutcome, GivesTheReasonIfTheTypeCannotHoldThePicture) {
  CutSettings settings;
  settings.outType = "jpg";
  const SourceFacts wide{{65501, 10}};
  EXPECT_EQ(OutcomeOf(settings, wide).why, "成品为 65501x10 像素，jpg 的宽和高最多 65500 像素，请换一种输出类型");
  EXPECT_EQ(OutcomeOf(settings, {{65500, 10}}).why, "");
  settings.outType = "pdf";
  EXPECT_NE(OutcomeOf(settings, wide).why, "");
  settings.outType = "gif";
  EXPECT_EQ(OutcomeOf(settings, {{65535, 10}}).why, "");
  EXPECT_NE(OutcomeOf(settings, {{10, 65536}}).why, "");
  settings.outType = "png";
  EXPECT_EQ(OutcomeOf(settings, {{10, 65536}}).why, "");
  settings.outType = "jpg";
  settings.over = true;  // a png stays a png
  EXPECT_EQ(OutcomeOf(settings, wide).why, "");
}

TEST(CutOutcome, GivesTheReasonIfTheZoomAfterTheCutTakesTooMuchMemory) {
  CutSettings settings;
  settings.outType = "png";
  settings.zoomAfter = true;
  settings.zoom = "30000,30000";
  EXPECT_EQ(OutcomeOf(settings, {{400, 400}}).why, "缩放后为 30000x30000 像素，图片太大，内存不足");
  settings.zoom = "20000,20000";
  EXPECT_EQ(OutcomeOf(settings, {{400, 400}}).why, "");
}

TEST(CutOutcome, OfAPictureThatIsTurnedAlreadyIsTheSame) {
  CutSettings settings;
  settings.rotateRule = 1;
  settings.restore = true;
  settings.geometry.ML = 10;
  const SourceFacts source{{400, 200}, 72, 96};
  EXPECT_EQ(OutcomeOfTurned(settings, source, {{200, 400}, 90, Pass::AfterRotation}), OutcomeOf(settings, source));
  EXPECT_EQ(OutcomeOf(settings, source).size, (base::Size{400, 180}));
}

TEST(CutOutcome, NamesThePictureThatIsCut) {
  CutSettings settings;
  settings.zoomBefore = true;
  settings.zoom = "50%";
  settings.rotateRule = 1;
  settings.geometry.ML = 10;
  const CutOutcome outcome = OutcomeOf(settings, {{400, 200}, 72, 96});
  EXPECT_EQ(outcome.cutFrom, (base::Size{100, 200}));
  EXPECT_EQ(outcome.cut, (base::Rect{10, 0, 90, 200}));
  EXPECT_EQ(outcome.size, (base::Size{90, 200}));
  EXPECT_EQ(outcome.dpi, 72);
}

TEST(OutsideText, NamesARectangleThatReachesOutOfThePicture) {
  EXPECT_EQ(OutsideText({0, 0, 40, 30}, {40, 30}), "");
  EXPECT_EQ(OutsideText({1, 0, 40, 30}, {40, 30}),
            "裁剪框超出图片（左 1，上 0，大小 40x30，图片 40x30），请检查裁剪参数");
  EXPECT_NE(OutsideText({0, -1, 40, 30}, {40, 30}), "");
  CutSettings settings;
  settings.geometry.ChCutA = true;
  settings.geometry.ChAsFramed = true;
  settings.geometry.ChFixCut = true;
  settings.geometry.FixW = 50;
  settings.geometry.FixH = 10;
  settings.mode = CutMode::Gif;
  const CutOutcome outcome = OutcomeOf(settings, {{40, 30}});
  EXPECT_EQ(outcome.why, OutsideText(outcome.cut, {40, 30}));
  EXPECT_NE(outcome.why, "");
}

}  // namespace
}  // namespace quillon::job
