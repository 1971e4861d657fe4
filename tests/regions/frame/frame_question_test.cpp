// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The question that a manual run asks once if a frame that was placed is not what will be cut.
#include "regions/frame/frame_fixture.h"

namespace quillon::regions {
namespace {

using host::Reply;
using job::Slope;

constexpr const char* kFrameQuestion = "画的框不是将裁出的部分，要怎样裁？";

class FrameQuestionTest : public ManualStepTest {
 protected:
  // In pixels. The options are open, so that their size decides how much is cut.
  void SetUp() override {
    ManualStepTest::SetUp();
    form.ChCutA.Set(true);
    Put("FBaseOpt.TSmalS(3)", "90");  // the height of the cut
    Put("FBaseOpt.TSmalS(2)", "70");  // the width
    form.CmbOutType.SetText("bmp");
  }
  void DrawAtTheFirst() {
    AtPicture(1, [&] {
      Drag({20, 8}, {70, 40});
      cutPre.CmdNext.UserClick();
    });
  }
  void CutTwo() { CutWith({Make("a.bmp", 100, 100), Make("b.bmp", 100, 100)}); }
};

TEST_F(FrameQuestionTest, IsAskedOnceAndKeepsTheArithmeticUnlessItIsAnswered) {
  DrawAtTheFirst();
  CutTwo();
  EXPECT_EQ(Boxes(kFrameQuestion), 1);
  EXPECT_EQ(Boxes("裁出的图片横 70、竖 90 像素，由高级选项的“保留裁剪”决定"), 1);
  EXPECT_TRUE(form.ChCutA.On());
  EXPECT_FALSE(form.ChAsFramed.On());
  EXPECT_EQ(SizeOf(Out("a.bmp")), (base::Size{70, 90}));
  CutTwo();
  EXPECT_EQ(Boxes(kFrameQuestion), 2);
}

TEST_F(FrameQuestionTest, YesCutsTheFrameInPercent) {
  world.boxes.Answer(kFrameQuestion, Reply::Yes);
  DrawAtTheFirst();
  CutTwo();
  EXPECT_FALSE(form.ChCutA.On());
  EXPECT_EQ(SizeOf(Out("a.bmp")), (base::Size{50, 32}));
  EXPECT_EQ(SizeOf(Out("b.bmp")), (base::Size{50, 32}));
  EXPECT_EQ(Read(Out("a.bmp")).At(0, 0), Slope(20, 8));
}

TEST_F(FrameQuestionTest, NoCutsTheFrameInPixels) {
  world.boxes.Answer(kFrameQuestion, Reply::No);
  DrawAtTheFirst();
  CutTwo();
  EXPECT_TRUE(form.ChCutA.On());
  EXPECT_TRUE(form.ChAsFramed.On());
  EXPECT_EQ(SizeOf(Out("a.bmp")), (base::Size{50, 32}));
  EXPECT_EQ(Read(Out("a.bmp")).At(0, 0), Slope(20, 8));
}

TEST_F(FrameQuestionTest, IsNotAskedIfTheFrameIsCut) {
  form.ChAsFramed.Set(true);
  DrawAtTheFirst();
  CutTwo();
  EXPECT_EQ(Boxes(kFrameQuestion), 0);
  EXPECT_EQ(SizeOf(Out("a.bmp")), (base::Size{50, 32}));
}

// Per cent would end the fixed cut, whose preset, resolution and ChOver the later pictures need.
TEST_F(FrameQuestionTest, IsNotAskedIfTheSizeIsFixed) {
  form.ChFixCut.Set(true);
  Put("TFixWH(0)", "20");
  Put("TFixWH(1)", "30");
  world.boxes.Answer(kFrameQuestion, Reply::Yes);
  DrawAtTheFirst();
  CutTwo();
  EXPECT_EQ(Boxes(kFrameQuestion), 0);
  EXPECT_TRUE(form.ChFixCut.On());
}

TEST_F(FrameQuestionTest, IsNotAskedAboutAPictureThatStaysWhole) {
  AtPicture(1, [&] { cutPre.CmdNotCut.UserClick(); });
  AtPicture(2, [&] {
    EXPECT_EQ(Boxes(kFrameQuestion), 0);
    cutPre.CmdNext.UserClick();
  });
  CutTwo();
  EXPECT_EQ(Boxes(kFrameQuestion), 1);
}

}  // namespace
}  // namespace quillon::regions
