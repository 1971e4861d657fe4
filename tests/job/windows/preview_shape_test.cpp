// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The preview shows what the cut will make: zoom, rotation and border.
#include <memory>

#include "job/cut_fixture.h"

namespace quillon::job {

void PrintTo(const PreviewBoard& board, std::ostream* out) {
  *out << board.left << " " << board.top << " " << board.right << " " << board.bottom << " " << board.colour.value;
}

namespace {

class OutlookTest : public CutTest {
 protected:
  const Preview& preview = program.fCutPre.preview;

  void SetUp() override {
    CutTest::SetUp();
    options.Load();
    Put("ChCutA", "0");
    Margins(0, 0, 0, 0);
    program.ShowInPreview(Make("shown.png", Painted(400, 200, Slope), 254));
    ASSERT_EQ(preview.Picture(), (base::Size{400, 200}));
  }
};

TEST_F(OutlookTest, RulesTurnThePictureTheyHoldFor) {
  const std::tuple<const char*, base::Size, double> rules[] = {
      {"1", {200, 400}, 90}, {"2", {200, 400}, -90}, {"3", {400, 200}, 0}, {"4", {400, 200}, 0}, {"0", {400, 200}, 0}};
  for (const auto& [rule, size, angle] : rules) {
    Put("FBaseOpt.CmbRotate", rule);
    EXPECT_EQ(preview.Picture(), size) << rule;
    EXPECT_EQ(preview.Angle(), angle) << rule;
    EXPECT_EQ(flags.PreviewImageWidth, size.width) << rule;
  }
}

TEST_F(OutlookTest, TheFrameLiesOnTheTurnedPicture) {
  Margins(10, 20, 30, 40);
  Put("FBaseOpt.CmbRotate", "1");
  EXPECT_EQ(preview.PictureFrame(), (PreviewFrame{20, 80, 120, 160}));
}

TEST_F(OutlookTest, AnyAngleShowsTheGrownCanvas) {
  for (const char* way : {"CmbRotate", "ChRotateCut"}) {
    Put(std::string("FBaseOpt.") + way, std::string(way) == "CmbRotate" ? "5" : "1");
    Put("FBaseOpt.TAngle", "30");
    EXPECT_EQ(preview.Angle(), 30) << way;
    EXPECT_EQ(preview.Picture(), (base::Size{447, 374})) << way;  // 346.4 + 100, 200 + 173.2
    Put("FBaseOpt.TAngle", "0");
    EXPECT_EQ(preview.Picture(), (base::Size{400, 200})) << way;
    Put(std::string("FBaseOpt.") + way, "0");
  }
}

TEST_F(OutlookTest, ZoomedThenTurned) {
  Put("FBaseOpt.CmbZoom", "50%");
  Put("FBaseOpt.ChZoomAndCut", "1");
  Put("FBaseOpt.CmbRotate", "2");
  EXPECT_EQ(preview.Picture(), (base::Size{100, 200}));
  Put("FBaseOpt.ChZoomAndCut", "0");
  EXPECT_EQ(preview.Picture(), (base::Size{200, 400}));
  EXPECT_EQ(preview.Original(), (base::Size{400, 200}));
}

TEST_F(OutlookTest, TheSamePictureIsNotReadAgain) {
  const int showings = preview.Showings();
  Put("FBaseOpt.CmbRotate", "1");
  Put("FBaseOpt.ChAddBoard", "1");
  EXPECT_EQ(preview.Showings(), showings);
}

TEST_F(OutlookTest, TheNextPictureIsShownByTheSameRules) {
  Put("FBaseOpt.CmbRotate", "1");
  program.ShowInPreview(Make("next.png", 60, 50));
  EXPECT_EQ(preview.Picture(), (base::Size{50, 60}));
  program.ShowInPreview(Make("tall.png", 50, 60));
  EXPECT_EQ(preview.Picture(), (base::Size{50, 60}));
  EXPECT_EQ(preview.Angle(), 0);
}

TEST_F(OutlookTest, TheBorderHasTheSourcesResolution) {
  Put("CmbDPI", "0");
  Put("FBaseOpt.ChAddBoard", "1");
  EXPECT_EQ(preview.Board(), PreviewBoard{});
  Put("FBaseOpt.TBoard(0)", "1");
  Put("FBaseOpt.TBoard(1)", "2");
  Put("FBaseOpt.TBoard(2)", "3");
  Put("FBaseOpt.TBoard(3)", "4");
  Put("FBaseOpt.PBoardColor", "#FF0000");
  flags.OutDpi = 0;
  program.ShowAsCut();
  EXPECT_EQ(preview.Board(), (PreviewBoard{10, 20, 30, 40, base::Colour{0x0000FF}}));
  Put("FBaseOpt.ChAddBoard", "0");
  EXPECT_EQ(preview.Board(), PreviewBoard{});
}

TEST_F(OutlookTest, AnotherResolutionScalesTheBorder) {
  Put("FBaseOpt.ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "10");
  Put("CmbDPI", "600");
  EXPECT_EQ(preview.Board().left, 236);  // 100 pixels at 254 dpi, times 600 / 254
  Put("FBaseOpt.CmbDPI", "300");
  EXPECT_EQ(preview.Board().left, 118);
}

TEST_F(OutlookTest, AZoomAfterTheCutMakesTheBorderLookThinner) {
  flags.OutDpi = 0;
  Put("FBaseOpt.ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "10");
  Put("FBaseOpt.TBoard(1)", "10");
  Put("FBaseOpt.CmbZoom", "800,800");
  Put("FBaseOpt.ChCutAndZoom", "1");
  EXPECT_EQ(preview.Board().left, 50);
  EXPECT_EQ(preview.Board().top, 25);
}

TEST_F(OutlookTest, FrameOnlyShowsTheWholePictureAsItIs) {
  Margins(10, 10, 10, 10);
  Put("FBaseOpt.ChAddBoard", "1");
  Put("FBaseOpt.CmbRotate", "1");
  Put("FBaseOpt.ChFrmOnly", "1");
  EXPECT_EQ(preview.Picture(), (base::Size{400, 200}));
  EXPECT_EQ(preview.PictureFrame(), (PreviewFrame{0, 0, 400, 200}));
}

// 400 x 200 fits 100 x 100 as 100 x 50, with 25 above and below it: 100 of the picture's own pixels.
TEST_F(OutlookTest, PaddingToASizeIsShownInPlaceOfTheBorder) {
  Put("FBaseOpt.ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "10");
  Put("FBaseOpt.PBoardColor", "#FF0000");
  Put("FBaseOpt.ChFrmOnly", "1");
  form.ChAddToSize.Set(true);
  flags.FixW = flags.FixH = 100;
  program.ShowAsCut();
  EXPECT_EQ(preview.Board(), (PreviewBoard{0, 100, 0, 100, base::kWhite}));
  flags.FixW = 0;
  program.ShowAsCut();
  EXPECT_EQ(preview.Board(), PreviewBoard{});
}

TEST_F(OutlookTest, APictureThatIsShownAsItIsKeepsItsShape) {
  program.ShowPicture(In("shown.png"), {100, 50});
  Put("FBaseOpt.CmbRotate", "1");
  EXPECT_EQ(preview.Picture(), (base::Size{100, 50}));
  EXPECT_EQ(preview.Angle(), 0);
  program.ShowInPreview(In("shown.png"));
  EXPECT_EQ(preview.Picture(), (base::Size{200, 400}));
}

// --- The result of the picture on show

TEST_F(OutlookTest, TheResultIsTheFinishedFile) {
  Put("CmbDPI", "254");
  Margins(10, 0, 40, 50);
  ASSERT_TRUE(preview.Result());
  EXPECT_EQ(preview.Result()->cut, (PreviewFrame{40, 0, 200, 100}));
  EXPECT_EQ(preview.Result()->outcome.size, (base::Size{200, 100}));
  EXPECT_EQ(preview.Result()->outcome.dpi, 254);
  EXPECT_EQ(preview.Result()->notice, "");
  Put("FBaseOpt.CmbZoom", "50%");
  Put("FBaseOpt.ChCutAndZoom", "1");
  Put("FBaseOpt.ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "1");
  EXPECT_EQ(preview.Result()->cut, (PreviewFrame{40, 0, 200, 100}));
  EXPECT_EQ(preview.Result()->outcome.size, (base::Size{110, 50}));
}

TEST_F(OutlookTest, TheResultOfATurnedPictureIsCutFromItAsItIsShown) {
  Margins(10, 20, 30, 40);
  Put("FBaseOpt.CmbRotate", "1");
  EXPECT_EQ(preview.Result()->cut, (PreviewFrame{20, 80, 120, 160}));
  EXPECT_EQ(preview.Result()->outcome.size, (base::Size{120, 160}));
  Put("FBaseOpt.ChRecover", "1");
  EXPECT_EQ(preview.Result()->outcome.size, (base::Size{160, 120}));
}

// Advanced options are loaded, so without a fixed cut their size counts.
TEST_F(OutlookTest, ANoticeSaysWhichValuesCount) {
  Put("ChCutA", "1");
  Margins(0, 0, 0, 5);
  Put("FBaseOpt.TSmalS(2)", "90");
  Put("FBaseOpt.TSmalS(3)", "70");
  EXPECT_EQ(preview.Result()->notice, "裁出的图片横 90、竖 70 像素，由高级选项的“保留裁剪”决定，“下 5”不起作用");
  EXPECT_EQ(preview.Result()->cut, (PreviewFrame{0, 0, 90, 70}));
  Put("ChFixCut", "1");
  Put("TFixWH(0)", "30");
  Put("TFixWH(1)", "40");
  Margins(1, 2, 3, 5);
  EXPECT_EQ(preview.Result()->notice, "右边、下边按“宽 30、高 40”去掉，“右 3”“下 5”不起作用");
  EXPECT_EQ(preview.Result()->cut, (PreviewFrame{1, 2, 369, 158}));
  Put("ChAutoZoom", "1");
  EXPECT_EQ(preview.Result()->notice, "“等比缩放”把四边的数值当作百分比，“宽、高”不起作用");
  Put("ChAutoZoom", "0");
  Put("ChAsFramed", "1");
  EXPECT_EQ(preview.Result()->notice, "");
  EXPECT_EQ(preview.Result()->cut, (PreviewFrame{1, 2, 30, 40}));
}

TEST_F(OutlookTest, AFrameThatIsMovedAloneHasNoKnownResult) {
  program.fCutPre.preview.SetPictureFrame({1, 2, 3, 4});
  EXPECT_FALSE(preview.Result());
  form.ShowFrame();
  EXPECT_TRUE(preview.Result());
}

TEST(PreviewShape, AnotherShapeIsReportedOnce) {
  Preview preview;
  preview.ShowPicture("a", {30, 20});
  int notified = 0;
  preview.SetObserver([&notified] { ++notified; });
  preview.Reshape({30, 20}, 0);
  EXPECT_EQ(notified, 0);
  preview.Reshape({30, 20}, 90);
  preview.Reshape({30, 20}, 90);
  EXPECT_EQ(notified, 1);
  EXPECT_EQ(preview.Picture(), (base::Size{20, 30}));
  preview.SetBoard({1, 0, 0, 0});
  preview.SetBoard({1, 0, 0, 0});
  EXPECT_EQ(notified, 2);
  preview.ShowPicture("b", {30, 20});
  EXPECT_EQ(preview.Angle(), 0);
}

}  // namespace
}  // namespace quillon::job
