// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The cut frame in its window.
#include "regions/frame/frame_fixture.h"

namespace quillon::regions {
namespace {

using job::PreviewFrame;

TEST_F(CutFrameTest, RestsWithItsCaptionAndTips) {
  EXPECT_EQ(cutPre.Title(), kRestTitle);
  EXPECT_EQ(cutPre.CmdNext.Caption(), "下一张>>>");
  EXPECT_EQ(cutPre.CmdNext.Tooltip(), "Ctrl键下一张");
  EXPECT_EQ(cutPre.CmdRot90.Tooltip(), "A键代表本图逆转");
  EXPECT_EQ(cutPre.CmdRot270.Tooltip(), "Q键代表本图顺转");
  EXPECT_EQ(cutPre.CmdAddBoard.Tooltip(), "Shift键代表本图扩边");
  EXPECT_EQ(cutPre.CmdNotCut.Tooltip(), "Z键代表本图不裁剪");
  EXPECT_EQ(cutPre.CmdNotCut.Caption(), "本图不裁剪");
  EXPECT_EQ(cutPre.CmdAddBoard.Caption(), "本图扩边");
  EXPECT_EQ(cutPre.CmdRot90.Caption(), "逆转90度");
  EXPECT_EQ(cutPre.CmdRot270.Caption(), "顺转90度");
  EXPECT_EQ(cutPre.ChHideShow.Tooltip(), "显示/隐藏按钮和右侧、底部滚动条，方便确定裁剪框");
  for (const char* name : {"CmdNext", "CmdNotCut", "CmdAddBoard", "CmdRot90", "CmdRot270"}) {
    EXPECT_FALSE(cutPre.Find(name)->Enabled()) << name;
  }
}

TEST_F(CutFrameTest, ADrawnFrameBecomesTheMargins) {
  Drag({40, 30}, {240, 180});
  EXPECT_EQ(Margins(), (Texts{"40", "30", "160", "120"}));
  EXPECT_EQ(Frame(), (PreviewFrame{40, 30, 200, 150}));
  form.ChCutA.Set(false);
  Drag({240, 180}, {40, 30});
  EXPECT_EQ(Margins(), (Texts{"10", "10", "40", "40"}));
}

TEST_F(CutFrameTest, TheFrameGoesThereAsItIsDrawn) {
  frame.Pic_MouseDown({40, 30});
  frame.Pic_MouseMove({100, 90});
  EXPECT_EQ(Frame(), (PreviewFrame{40, 30, 60, 60}));
  EXPECT_EQ(Margins(), (Texts{"0", "0", "0", "0"}));
  frame.Pic_MouseMove({20, 10});
  EXPECT_EQ(Frame(), (PreviewFrame{20, 10, 20, 20}));
  frame.Pic_MouseUp();
  EXPECT_EQ(Margins(), (Texts{"20", "10", "360", "270"}));
}

TEST_F(CutFrameTest, APressWithoutADragClearsTheFrameAndLeavesTheMargins) {
  Drag({40, 30}, {240, 180});
  frame.Pic_MouseDown({50, 50});
  frame.Pic_MouseUp();
  EXPECT_EQ(Frame(), PreviewFrame());
  EXPECT_EQ(Margins(), (Texts{"40", "30", "160", "120"}));
}

TEST_F(CutFrameTest, AFrameIsHeldAndMoved) {
  Drag({40, 30}, {240, 180});
  Drag({100, 100}, {110, 95}, {});
  EXPECT_EQ(Margins(), (Texts{"50", "25", "150", "125"}));
  Drag({250, 175}, {300, 200}, {1, 1});
  EXPECT_EQ(Margins(), (Texts{"50", "25", "100", "100"}));
  Drag({100, 100}, {900, 900}, {});
  EXPECT_EQ(Margins(), (Texts{"150", "125", "0", "0"}));
}

TEST_F(CutFrameTest, KeysMoveAndStretchByPixels) {
  Drag({40, 30}, {240, 180});
  frame.Nudge(1, 0);
  frame.Nudge(0, -10);
  EXPECT_EQ(Margins(), (Texts{"41", "20", "159", "130"}));
  frame.Stretch(-1, 0);
  frame.Stretch(0, 10);
  EXPECT_EQ(Margins(), (Texts{"41", "20", "160", "120"}));
}

TEST_F(CutFrameTest, AFixedFrameKeepsItsSize) {
  form.ChFixCut.Set(true);
  form.TFixWH[0].SetText("100");
  form.TFixWH[1].SetText("80");
  Drag({50, 60}, {70, 90});
  EXPECT_EQ(Frame().width, 100);
  EXPECT_EQ(Frame().height, 80);
  EXPECT_EQ(Margins()[0], "70");
  EXPECT_EQ(Margins()[1], "90");
  EXPECT_EQ(Margins()[2], "230");  // 400 - 100 - 70
  EXPECT_EQ(Margins()[3], "130");
  Drag({0, 0}, {10, 10}, {1, 1});
  EXPECT_EQ(Frame().width, 100);
  EXPECT_EQ(Margins()[0], "80");
  frame.Stretch(5, 5);
  EXPECT_EQ(Frame().width, 100);
  Drag({0, 0}, {390, 290});
  EXPECT_EQ(Margins()[0], "300");
  EXPECT_EQ(Margins()[1], "220");
  // A press without a drag leaves the frame where it is.
  frame.Pic_MouseDown({5, 5});
  frame.Pic_MouseUp();
  EXPECT_EQ(Margins()[0], "300");
}

TEST_F(CutFrameTest, AFrameOfAnExactSizeLeavesItsAnchorWhenItIsMoved) {
  form.ChFixCut.Set(true);
  form.TFixWH[0].SetText("50");
  form.TFixWH[1].SetText("100");
  form.ChExact.Set(true);
  EXPECT_EQ(Frame(), (job::PreviewFrame{125, 0, 150, 300}));
  frame.Pic_MouseDown({130, 10}, Grip());
  frame.Pic_MouseUp();
  EXPECT_EQ(form.CmbAnchor.Index(), job::kAnchorCentre);
  Drag({130, 10}, {90, 10}, Grip());
  EXPECT_EQ(form.CmbAnchor.Index(), job::kAnchorByMargins);
  EXPECT_EQ(Frame(), (job::PreviewFrame{85, 0, 150, 300}));
  EXPECT_EQ(frame.Result(), (base::Rect{85, 0, 150, 300}));
  form.CmbAnchor.Select(2);
  EXPECT_EQ(frame.Result(), (base::Rect{250, 0, 150, 300}));
}

TEST_F(CutFrameTest, CentringDoesNotMoveAFrameOfAnExactSizeFromItsAnchor) {
  form.ChFixCut.Set(true);
  form.TFixWH[0].SetText("50");
  form.TFixWH[1].SetText("100");
  form.ChExact.Set(true);
  form.ChAutoCenter.Set(true);
  form.CmbAnchor.Select(0);
  ASSERT_EQ(Frame(), (job::PreviewFrame{0, 0, 150, 300}));
  frame.Pic_MouseDown({10, 10}, Grip());
  frame.Pic_MouseUp();
  EXPECT_EQ(form.CmbAnchor.Index(), 0);
  EXPECT_EQ(frame.Result(), (base::Rect{0, 0, 150, 300}));
}

TEST_F(CutFrameTest, WithChAsFramedADrawnFrameIsTheCut) {
  form.ChAsFramed.Set(true);
  Drag({40, 30}, {240, 130});
  EXPECT_EQ(frame.Result(), (base::Rect{40, 30, 200, 100}));
  form.ChAsFramed.Set(false);
  EXPECT_NE(frame.Result(), (base::Rect{40, 30, 200, 100}));
}

TEST_F(CutFrameTest, ADragShowsWhatItWillCut) {
  form.ChCutA.Set(false);
  frame.Pic_MouseDown({40, 30});
  frame.Pic_MouseMove({240, 150});
  ASSERT_TRUE(cutPre.preview.Result());
  const job::PreviewFrame during = cutPre.preview.Result()->cut;
  EXPECT_EQ(during, (job::PreviewFrame{40, 30, 200, 120}));
  frame.Pic_MouseUp();
  EXPECT_EQ(cutPre.preview.Result()->cut, during);
  Drag({0, 0}, {0, 0}, Grip());
  EXPECT_EQ(cutPre.preview.Result()->cut, during);
}

TEST_F(CutFrameTest, APresetGivesTheFrameItsRatio) {
  form.ChCutA.Set(false);
  form.CmbKeepCut.SetText("1寸 2.5cmx3.5cm");
  flags.FixW = 200;
  flags.FixH = 100;
  Drag({0, 0}, {200, 200});
  // Per cent are whole numbers: 200 x 100 becomes 50 % and 33 %.
  EXPECT_EQ(Margins(), (Texts{"0", "0", "50", "67"}));
}

TEST_F(CutFrameTest, ACentredFrameStaysInTheCentre) {
  form.ChFixCut.Set(true);
  form.TFixWH[0].SetText("100");
  form.TFixWH[1].SetText("80");
  form.ChAutoCenter.Set(true);
  Drag({0, 0}, {10, 10});
  EXPECT_EQ(Margins()[0], "150");
  EXPECT_EQ(Margins()[1], "110");
}

TEST_F(CutFrameTest, WithChFullTheMouseDoesNothing) {
  form.ChFull.Set(true);
  const auto before = Margins();
  EXPECT_FALSE(frame.Editable());
  Drag({40, 30}, {240, 180});
  frame.Nudge(1, 1);
  EXPECT_EQ(Margins(), before);
}

TEST_F(CutFrameTest, WhileARunWorksOnItsOwnTheMouseDoesNothing) {
  const auto before = Margins();
  flags.Busy = true;
  Drag({40, 30}, {240, 180});
  EXPECT_EQ(Margins(), before);
  flags.Busy = false;
}

TEST_F(CutFrameTest, FramesOnTheSmallestAndTheFlattestPicture) {
  form.ChCutA.Set(false);
  cutPre.preview.ShowPicture("", {1, 1});
  Drag({0, 0}, {1, 1});
  EXPECT_EQ(Margins(), (Texts{"0", "0", "0", "0"}));
  cutPre.preview.ShowPicture("", {65500, 1});
  Drag({6550, 0}, {32750, 1});
  EXPECT_EQ(Margins(), (Texts{"10", "0", "50", "0"}));
}

TEST_F(CutFrameTest, TheFrameBlinksUnlessItIsDrawn) {
  EXPECT_FALSE(cutPre.preview.SecondLook());
  frame.Timer1_Timer({});
  EXPECT_TRUE(cutPre.preview.SecondLook());
  frame.Pic_MouseDown({40, 30});
  EXPECT_FALSE(cutPre.preview.SecondLook());
  frame.Timer1_Timer({});
  EXPECT_FALSE(cutPre.preview.SecondLook());
  frame.Pic_MouseUp();
  frame.Timer1_Timer({});
  EXPECT_TRUE(cutPre.preview.SecondLook());
}

TEST_F(CutFrameTest, AFrameOverAllOfThePictureLeavesNothingOut) {
  form.ChCutA.Set(false);
  CutTest::Margins(10, 10, 10, 10);
  Drag({0, 0}, {400, 300});
  EXPECT_EQ(Margins(), (Texts{"0", "0", "0", "0"}));
}

TEST_F(CutFrameTest, TheSliderStartsAtTheFittedSize) {
  world.screen.size = {1920, 1080};
  program.ShowPicture("", {2048, 100});
  EXPECT_EQ(cutPre.Slider1.Position(), 50);
  EXPECT_EQ(cutPre.preview.PictureFrame().width, 2048);
  EXPECT_EQ(cutPre.preview.Frame().width, 1024);
  EXPECT_EQ(cutPre.HS.Max(), 0);
  Put("FCutPre.Slider1", "75");
  EXPECT_EQ(cutPre.HS.Max(), 500);
  program.ShowPicture("", {100, 80});
  EXPECT_EQ(cutPre.Slider1.Position(), 100);
}

TEST_F(CutFrameTest, ZoomChangesTheScaleAndNoMargin) {
  Drag({40, 30}, {240, 180});
  const auto before = Margins();
  Put("FCutPre.Slider1", "200");
  EXPECT_EQ(cutPre.preview.PictureFrame(), (PreviewFrame{40, 30, 200, 150}));
  EXPECT_EQ(cutPre.preview.Frame(), (PreviewFrame{80, 60, 400, 300}));
  EXPECT_EQ(cutPre.HS.Max(), 1000);
  EXPECT_EQ(cutPre.VS.Max(), 1000);
  EXPECT_TRUE(cutPre.HS.Visible());
  EXPECT_EQ(Margins(), before);
  Put("FCutPre.Slider1", "50");
  EXPECT_EQ(cutPre.HS.Max(), 0);
  EXPECT_EQ(world.boxes.Beeps(), 0);
}

TEST_F(CutFrameTest, TooSmallAZoomBeepsAndStays) {
  Put("FCutPre.Slider1", "11");  // 300 * 0.11 = 33
  EXPECT_EQ(world.boxes.Beeps(), 0);
  Put("FCutPre.Slider1", "10");
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_EQ(cutPre.Slider1.Position(), 11);
}

TEST_F(CutFrameTest, HidingTheButtonsIsABox) {
  Put("FCutPre.ChHideShow", "1");
  for (const char* name : {"CmdNext", "CmdNotCut", "CmdAddBoard", "CmdRot90", "CmdRot270", "HS", "VS"}) {
    EXPECT_FALSE(cutPre.Find(name)->Visible()) << name;
  }
  Put("FCutPre.ChHideShow", "0");
  EXPECT_TRUE(cutPre.CmdNext.Visible());
}

}  // namespace
}  // namespace quillon::regions
