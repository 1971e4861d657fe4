// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The cut frame in its window, and the step of a batch that waits for it.
#include <filesystem>

#include "regions_fixture.h"

namespace quillon::regions {
namespace {

using host::Reply;
using job::Painted;
using job::Picture;
using job::PreviewFrame;
using job::Slope;

constexpr const char* kAsk = "裁剪框预览    请人工指定本张图的裁剪框，指定完毕之后单击【下一张】或【本图不裁剪】";
constexpr const char* kAskForNext = "裁剪框预览    请人工指定本张图的裁剪框，指定完毕之后单击【下一张】";
constexpr const char* kRest = "裁剪框预览(空格键=下一张，Ctrl=本图扩边，Z=本图不裁剪)";
constexpr const char* kRotate = "确定旋转？\r\n是——旋转\r\n否——旋转，下次不再提示";

class CutFrameTest : public RegionsTest {
 protected:
  std::vector<std::string> Margins() const {
    return {form.TCutValue[0].Value(), form.TCutValue[1].Value(), form.TCutValue[2].Value(), form.TCutValue[3].Value()};
  }
  using Texts = std::vector<std::string>;
  void Drag(Point from, Point to) {
    frame.Pic_MouseDown(from);
    frame.Pic_MouseMove(to);
    frame.Pic_MouseUp();
  }
  void Drag(Point from, Point to, Grip grip) {
    frame.Pic_MouseDown(from, grip);
    frame.Pic_MouseMove(to);
    frame.Pic_MouseUp();
  }
  const PreviewFrame& Frame() const { return cutPre.preview.PictureFrame(); }

  CutFrame& frame = regions.cutFrame;
  job::FCutPre& cutPre = program.fCutPre;
};

TEST_F(CutFrameTest, RestsWithItsCaptionAndTips) {
  EXPECT_EQ(cutPre.Title(), kRest);
  EXPECT_EQ(cutPre.CmdNext.Caption(), "下一张>>>");
  EXPECT_EQ(cutPre.CmdNext.Tooltip(), "Ctrl键下一张");
  EXPECT_EQ(cutPre.CmdRot90.Tooltip(), "A键代表本图逆转");
  EXPECT_EQ(cutPre.CmdRot270.Tooltip(), "Q键代表本图顺转");
  EXPECT_EQ(cutPre.CmdAddBoard.Tooltip(), "Shift键代表本图扩边");
  EXPECT_EQ(cutPre.CmdNotCut.Tooltip(), "Z键代表本图不裁剪");
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
  // A press without a drag leaves it where it is.
  frame.Pic_MouseDown({5, 5});
  frame.Pic_MouseUp();
  EXPECT_EQ(Margins()[0], "300");
}

TEST_F(CutFrameTest, APresetGivesTheFrameItsRatio) {
  form.ChCutA.Set(false);
  form.CmbKeepCut.SetText("1寸 2.5cmx3.5cm");
  flags.FixW = 200;
  flags.FixH = 100;
  Drag({0, 0}, {200, 200});
  // Per cent are whole ones: 200 x 100 becomes 50 and 33 of them.
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
  EXPECT_FALSE(frame.Draws());
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

TEST_F(CutFrameTest, ZoomChangesTheScaleAndNoMargin) {
  Drag({40, 30}, {240, 180});
  const auto before = Margins();
  Put("FCutPre.Slider1", "200");
  EXPECT_DOUBLE_EQ(cutPre.preview.Scale(), 2);
  EXPECT_EQ(cutPre.preview.Frame(), (PreviewFrame{80, 60, 400, 300}));
  EXPECT_EQ(cutPre.HS.Max(), 1000);
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

// --- The step of a batch.

class ManualStepTest : public CutFrameTest {
 protected:
  void SetUp() override {
    CutFrameTest::SetUp();
    form.ChCutA.Set(false);
    CutTest::Margins(0, 0, 0, 0);
    Option("ChMamal", "1");
    ASSERT_TRUE(flags.ManualCutMode);
  }
  // What the user does at the nth picture; at those without an answer he goes on.
  void AtPicture(int number, std::function<void()> act) { acts_[number] = std::move(act); }
  void CutWith(const std::vector<std::string>& paths) {
    world.pump.EveryTurn([this] {
      if (!frame.Waiting() || flags.ManualStepDone) return;
      if (++picture_ > 20) flags.StopRequested = true;
      const auto act = acts_.find(picture_);
      if (act != acts_.end()) {
        act->second();
      } else {
        cutPre.CmdNext.UserClick();
      }
    });
    Cut(paths);
  }

  std::map<int, std::function<void()>> acts_;
  int picture_ = 0;
};

TEST_F(ManualStepTest, TheOptionNeedsNothingMore) {
  EXPECT_TRUE(options.ChMamal.On());
  EXPECT_EQ(Boxes("本机缺失资源文件"), 0);
}

TEST_F(ManualStepTest, TheBatchStopsAtEachPictureAndCutsWithItsFrame) {
  AtPicture(1, [&] {
    EXPECT_EQ(cutPre.Title(), kAsk);
    EXPECT_TRUE(cutPre.Visible());
    EXPECT_EQ(cutPre.preview.Path(), In("a.bmp"));
    EXPECT_EQ(cutPre.preview.Upcoming(), In("b.bmp"));
    for (const char* name : {"CmdNext", "CmdNotCut", "CmdRot90", "CmdRot270", "Slider1"}) {
      EXPECT_TRUE(cutPre.Find(name)->Enabled()) << name;
    }
    EXPECT_FALSE(Enabled("Frame1"));
    Drag({20, 8}, {70, 40});
    cutPre.CmdNext.UserClick();
  });
  AtPicture(2, [&] {
    EXPECT_EQ(cutPre.preview.Upcoming(), "");
    // The margins of the picture before, on this one.
    EXPECT_EQ(Frame(), (PreviewFrame{40, 10, 100, 40}));
    cutPre.CmdNext.UserClick();
  });
  form.CmbOutType.SetText("bmp");
  CutWith({Make("a.bmp", 100, 80), Make("b.bmp", 200, 100)});
  EXPECT_EQ(Read(Out("a.bmp")).At(0, 0), Slope(20, 8));
  EXPECT_EQ(SizeOf(Out("a.bmp")), (base::Size{50, 32}));
  EXPECT_EQ(SizeOf(Out("b.bmp")), (base::Size{100, 40}));
  EXPECT_EQ(cutPre.Title(), kRest);
  EXPECT_FALSE(cutPre.CmdNext.Enabled());
  EXPECT_FALSE(cutPre.CmdRot90.Enabled());
  EXPECT_TRUE(cutPre.Slider1.Enabled());
}

TEST_F(ManualStepTest, BetweenThePicturesTheButtonsAreOff) {
  recorder.onFileDone = [&](const job::FileResult&) {
    EXPECT_EQ(cutPre.Title(), "裁剪框预览");
    for (const char* name : {"CmdNext", "CmdNotCut", "Slider1", "VS", "HS"}) {
      EXPECT_FALSE(cutPre.Find(name)->Enabled()) << name;
    }
  };
  CutWith({Make("a.jpg"), Make("b.jpg")});
  EXPECT_EQ(recorder.done.size(), 2u);
}

TEST_F(ManualStepTest, APictureThatIsNotCutStaysWhole) {
  CutTest::Margins(50, 0, 0, 0);
  AtPicture(1, [&] { cutPre.CmdNotCut.UserClick(); });
  CutWith({Make("a.jpg", 100, 80), Make("b.jpg", 100, 80)});
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{100, 80}));
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{50, 80}));
}

TEST_F(ManualStepTest, AStudioPresetHasNoWayPastTheCut) {
  form.ChCutA.Set(true);
  form.ChFixCut.Set(true);
  form.CmbKeepCut.Select(6);
  AtPicture(1, [&] {
    EXPECT_EQ(cutPre.Title(), kAsk);
    EXPECT_TRUE(cutPre.CmdNotCut.Enabled());
    cutPre.CmdNext.UserClick();
  });
  AtPicture(2, [&] {
    EXPECT_EQ(cutPre.Title(), kAskForNext);
    EXPECT_FALSE(cutPre.CmdNotCut.Enabled());
    cutPre.CmdNext.UserClick();
  });
  recorder.onFileDone = [&](const job::FileResult&) {
    form.CmbKeepCut.SetHandler({});
    form.CmbKeepCut.Select(2);
  };
  CutWith({Make("a.jpg", 1200, 1800), Make("b.jpg", 1200, 1800)});
  EXPECT_EQ(recorder.done.size(), 2u);
}

TEST_F(ManualStepTest, KeysActInTheirOrderAndOnlyInABatch) {
  frame.Timer1_Timer({.Ctrl = true, .Z = true});
  EXPECT_FALSE(flags.ManualStepDone);
  AtPicture(1, [&] { frame.Timer1_Timer({.Z = true}); });
  AtPicture(2, [&] {
    // Ctrl comes first: next, not passed over.
    frame.Timer1_Timer({.Ctrl = true, .A = true, .Z = true});
    frame.Timer1_Timer({.Ctrl = true});
    EXPECT_FALSE(cutPre.CmdNext.Enabled());
  });
  CutTest::Margins(50, 0, 0, 0);
  CutWith({Make("a.jpg", 100, 80), Make("b.jpg", 100, 80), Make("c.jpg", 100, 80)});
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{100, 80}));
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{50, 80}));
  EXPECT_EQ(recorder.done.size(), 3u);
}

TEST_F(ManualStepTest, HoldingCtrlGoesOnOnce) {
  AtPicture(1, [&] {
    for (int i = 0; i < 5; ++i) frame.Timer1_Timer({.Ctrl = true});
  });
  int asked = 0;
  AtPicture(2, [&] {
    ++asked;
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg"), Make("b.jpg")});
  EXPECT_EQ(asked, 1);
}

TEST_F(ManualStepTest, ATurnedPictureIsCutAsItIsShown) {
  world.boxes.Answer(kRotate, Reply::Yes);
  AtPicture(1, [&] {
    frame.Timer1_Timer({.A = true});
    EXPECT_EQ(flags.CurrentImagePath, program.AppPath("Tmp.jpg"));
    EXPECT_TRUE(flags.ManualRotated);
    EXPECT_EQ(flags.ManualAngle, 90);
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{80, 100}));
    Drag({0, 0}, {40, 100});
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 100, 80)});
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{40, 100}));
  ASSERT_EQ(Boxes(kRotate), 1);
  EXPECT_EQ(world.boxes.All()[0].box.type & 7, 3);
}

TEST_F(ManualStepTest, TurnsAddUpAndBothWaysAreThere) {
  world.boxes.Answer(kRotate, Reply::No);
  AtPicture(1, [&] {
    cutPre.CmdRot270.UserClick();
    EXPECT_EQ(flags.ManualAngle, -90);
    cutPre.CmdRot270.UserClick();
    EXPECT_EQ(flags.ManualAngle, -180);
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{100, 80}));
    cutPre.CmdNext.UserClick();
  });
  AtPicture(2, [&] {
    cutPre.CmdRot90.UserClick();
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 100, 80), Make("b.jpg", 60, 50)});
  // "No" turns and asks no more.
  EXPECT_EQ(Boxes(kRotate), 1);
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{50, 60}));
}

TEST_F(ManualStepTest, ATurnThatIsTakenBackChangesNothing) {
  world.boxes.Answer(kRotate, Reply::Cancel);
  AtPicture(1, [&] {
    cutPre.CmdRot90.UserClick();
    EXPECT_EQ(flags.CurrentImagePath, In("a.jpg"));
    EXPECT_FALSE(flags.ManualRotated);
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 100, 80)});
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{100, 80}));
}

TEST_F(ManualStepTest, ATurnWithoutAWorkFileKeepsTheOldPicture) {
  world.boxes.Answer(kRotate, Reply::Yes);
  AtPicture(1, [&] {
    world.faults.Set({.call = host::testing::DiskCall::OpenNew,
                      .error = EACCES,
                      .length = host::testing::Fault::Length::ForEver,
                      .pathHolds = "Tmp.jpg"});
    cutPre.CmdRot90.UserClick();
    world.faults.Clear();
    EXPECT_EQ(flags.CurrentImagePath, In("a.jpg"));
    EXPECT_FALSE(flags.ManualRotated);
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 100, 80)});
  EXPECT_EQ(Totals().written, 1u);
}

TEST_F(ManualStepTest, APictureThatARuleTurnedIsShownTurnedAndNotTurnedAgain) {
  Put("FBaseOpt.CmbRotate", "横向图选逆转90度后再裁剪");
  AtPicture(1, [&] {
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{80, 100}));
    EXPECT_NE(cutPre.preview.Path(), In("a.jpg"));
    EXPECT_EQ(flags.CurrentImagePath, In("a.jpg"));
    EXPECT_FALSE(cutPre.CmdRot90.Enabled());
    EXPECT_FALSE(cutPre.CmdRot270.Enabled());
    Drag({0, 0}, {40, 100});
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 100, 80)});
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{40, 100}));
}

class BoardStepTest : public ManualStepTest {
 protected:
  void SetUp() override {
    ManualStepTest::SetUp();
    form.ChCutA.Set(true);
    form.ChFixCut.Set(true);
    form.TFixWH[0].SetText("200");
    form.TFixWH[1].SetText("100");
  }
};

TEST_F(BoardStepTest, ThePictureGrowsToTheRatioOncePerPicture) {
  AtPicture(1, [&] {
    EXPECT_TRUE(cutPre.CmdAddBoard.Enabled());
    frame.Timer1_Timer({.Shift = true});
    EXPECT_EQ(flags.CurrentImagePath, program.AppPath("Tmp.jpg"));
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{800, 400}));
    EXPECT_FALSE(cutPre.CmdAddBoard.Enabled());
    EXPECT_EQ(cutPre.CmdAddBoard.Tag(), "1");
    const Picture grown = Read(program.AppPath("Tmp.jpg"));
    EXPECT_EQ(grown.At(2, 200), job::kWhitePixel);
    EXPECT_NE(grown.At(400, 200), job::kWhitePixel);
    const int beeps = world.boxes.Beeps();
    frame.CmdAddBoard_Click();
    EXPECT_EQ(world.boxes.Beeps(), beeps + 1);
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{800, 400}));
    cutPre.CmdNext.UserClick();
  });
  AtPicture(2, [&] {
    EXPECT_EQ(cutPre.CmdAddBoard.Tag(), "");
    EXPECT_TRUE(cutPre.CmdAddBoard.Enabled());
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 300, 400), Make("b.jpg", 300, 400)});
  EXPECT_EQ(recorder.done.size(), 2u);
}

TEST_F(BoardStepTest, ATurnedPictureGrowsIntoTheOtherWorkFile) {
  world.boxes.Answer(kRotate, Reply::Yes);
  AtPicture(1, [&] {
    cutPre.CmdRot90.UserClick();
    cutPre.CmdAddBoard.UserClick();
    EXPECT_EQ(flags.CurrentImagePath, program.AppPath("Tmp2.jpg"));
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{600, 300}));
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 300, 400)});
}

TEST_F(BoardStepTest, APictureOfTheRatioIsLeftAlone) {
  AtPicture(1, [&] {
    cutPre.CmdAddBoard.UserClick();
    EXPECT_EQ(flags.CurrentImagePath, In("a.jpg"));
    EXPECT_EQ(cutPre.CmdAddBoard.Tag(), "");
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 400, 200)});
}

TEST_F(BoardStepTest, WithoutTheGrownPictureItIsPassedOver) {
  AtPicture(1, [&] {
    world.faults.Set({.call = host::testing::DiskCall::OpenNew,
                      .error = EACCES,
                      .length = host::testing::Fault::Length::ForEver,
                      .pathHolds = "Tmp.jpg"});
    cutPre.CmdAddBoard.UserClick();
    world.faults.Clear();
    EXPECT_EQ(flags.CurrentImagePath, "");
    EXPECT_TRUE(flags.ManualStepDone);
  });
  CutWith({Make("a.jpg", 300, 400)});
  EXPECT_EQ(Why(1), "裁剪框预览中的图片已不存在");
}

TEST_F(ManualStepTest, APictureThatVanishedIsPassedOver) {
  AtPicture(1, [&] {
    std::filesystem::remove(In("a.jpg"));
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg"), Make("b.jpg")});
  EXPECT_EQ(Why(1), "裁剪框预览中的图片已不存在");
  EXPECT_EQ(Totals().written, 1u);
}

TEST_F(ManualStepTest, APictureThatDoesNotLoadComesFromTheServer) {
  const std::string path = world.folder.Write("in/odd.jpg", "no picture");
  world.processes.Add({.id = 7, .name = "QxBackImg.exe", .folder = world.host.programFolder, .own = true});
  std::vector<std::string> started;
  world.shell.OnStart([&](const host::testing::RecordingShell::Started& start) {
    started.push_back(start.program);
    imaging::Image picture;
    ASSERT_TRUE(program.images.NewCanvas({50, 40}, base::kWhite, picture));
    ASSERT_TRUE(program.images.PutImageOnClipBoard(picture));
    world.settings.Set("Quillon", "Default", "QxBackImg", "1");
  });
  base::Size shown;
  world.pump.EveryTurn([&] {
    if (!frame.Waiting()) return;
    shown = cutPre.preview.Picture();
    cutPre.CmdNext.UserClick();
  });
  EXPECT_EQ(frame.Ask(path, {}), job::ManualFrame::Answer::Given);
  EXPECT_EQ(shown, (base::Size{50, 40}));
  ASSERT_FALSE(started.empty());
  EXPECT_NE(started[0].find("QxBackImg.exe"), std::string::npos);
  EXPECT_TRUE(flags.BackWorkerStarted);
}

TEST_F(ManualStepTest, APictureThatNobodyLoadsShowsNothing) {
  const std::string path = world.folder.Write("in/odd.jpg", "no picture");
  world.shell.SetResult("QxBackImg", host::kStartMissing);
  world.pump.EveryTurn([&] {
    if (frame.Waiting()) cutPre.CmdNext.UserClick();
  });
  frame.Ask(path, {});
  EXPECT_EQ(cutPre.preview.Path(), "");
}

TEST_F(ManualStepTest, AStopEndsTheWait) {
  AtPicture(1, [&] { flags.StopRequested = true; });
  CutWith({Make("a.jpg"), Make("b.jpg")});
  EXPECT_EQ(Totals().written, 0u);
  EXPECT_FALSE(frame.Waiting());
  EXPECT_EQ(cutPre.Title(), kRest);
}

TEST_F(ManualStepTest, TheWindowStaysWhileItWaits) {
  AtPicture(1, [&] {
    cutPre.Close();
    EXPECT_TRUE(cutPre.Visible());
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg")});
  cutPre.Close();
  EXPECT_FALSE(cutPre.Visible());
}

}  // namespace
}  // namespace quillon::regions
