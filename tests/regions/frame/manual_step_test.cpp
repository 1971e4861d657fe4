// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The step of a batch that waits for the frame.
#include <filesystem>

#include "job/turned_picture.h"
#include "regions/frame/frame_fixture.h"

namespace quillon::regions {
namespace {

using host::Reply;
using job::Picture;
using job::PreviewFrame;
using job::Slope;

constexpr const char* kAsk = "裁剪框预览    请人工指定本张图的裁剪框，指定完毕之后单击【下一张】或【本图不裁剪】";
constexpr const char* kAskForNext = "裁剪框预览    请人工指定本张图的裁剪框，指定完毕之后单击【下一张】";
constexpr const char* kRotate = "确定旋转？\r\n是——旋转\r\n否——旋转，下次不再提示";

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
  EXPECT_EQ(cutPre.Title(), kRestTitle);
  EXPECT_FALSE(cutPre.CmdNext.Enabled());
  EXPECT_FALSE(cutPre.CmdRot90.Enabled());
  EXPECT_TRUE(cutPre.Slider1.Enabled());
}

// The content of a file decides, not its name: these are photographs that are named like bitmaps.
TEST_F(ManualStepTest, ABitmapOfATurnedPhotographIsUpright) {
  Make("jpeg.jpg", job::Painted(60, 40, job::Quarters));
  const std::string jpeg = world.folder.Read("in/jpeg.jpg");
  const std::string stored = world.folder.Write("in/stored.bmp", jpeg);
  const std::string turned = world.folder.Write("in/turned.bmp", job::WithOrientation(jpeg, 6));
  CutTest::Margins(20, 5, 0, 10);
  form.CmbOutType.SetText("bmp");
  for (const char* border : {"0", "1"}) {
    Put("FBaseOpt.ChAddBoard", border);
    if (border == std::string("1")) Put("FBaseOpt.TBoard(0)", "3");
    program.files.Clear();
    picture_ = 0;
    CutWith({stored, turned});
    ASSERT_EQ(Totals().written, 2u) << Whys();
    EXPECT_EQ(job::Difference(Read(Out("turned.bmp")), job::Upright(Read(Out("stored.bmp")), 6)), 0) << border;
  }
}

TEST_F(ManualStepTest, APictureThatIsTurnedByHandAndBackKeepsItsOrientation) {
  Make("a.jpg", job::Painted(60, 40, job::Quarters));
  const std::string jpeg = job::WithOrientation(world.folder.Read("in/a.jpg"), 6);
  world.boxes.Answer(kRotate, Reply::Yes);
  AtPicture(1, [&] {
    cutPre.CmdRot90.UserClick();
    cutPre.CmdNext.UserClick();
  });
  form.CmbOutType.SetText("jpg");
  for (const bool back : {false, true}) {
    options.ChRecover.SetEnabled(true);
    options.ChRecover.Set(back);
    program.files.Clear();
    picture_ = 0;
    CutWith({world.folder.Write("in/a.jpg", jpeg)});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    const std::string made = world.folder.Read("out/a.jpg");
    const std::size_t block = made.find("Exif");
    const std::string exif = block == std::string::npos ? std::string() : made.substr(block + 6);
    EXPECT_EQ(imaging::ReadExif(exif).orientation, back ? 6 : 1);
    EXPECT_EQ(SizeOf(Out("a.jpg")), back ? (base::Size{60, 40}) : (base::Size{40, 60}));
  }
}

TEST_F(ManualStepTest, TheNextPictureIsSeenWhileTheOneBeforeItIsCut) {
  recorder.onFileDone = [&](const job::FileResult& file) {
    const bool first = file.source == In("a.jpg");
    EXPECT_EQ(cutPre.preview.Glances(), first);
    EXPECT_EQ(cutPre.preview.Upcoming(), first ? In("b.jpg") : "");
  };
  for (const int number : {1, 2}) {
    AtPicture(number, [&] {
      EXPECT_FALSE(cutPre.preview.Glances());
      cutPre.CmdNext.UserClick();
    });
  }
  CutWith({Make("a.jpg"), Make("b.jpg")});
  EXPECT_EQ(recorder.done.size(), 2u);
  EXPECT_FALSE(cutPre.preview.Glances());
}

TEST_F(ManualStepTest, AStoppedRunGlancesAtNothing) {
  AtPicture(1, [&] { flags.StopRequested = true; });
  recorder.onFileDone = [&](const job::FileResult&) { EXPECT_FALSE(cutPre.preview.Glances()); };
  CutWith({Make("a.jpg"), Make("b.jpg")});
  EXPECT_EQ(recorder.done.size(), 2u);
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
    // Ctrl comes first, so the picture is cut, not passed over.
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

TEST_F(ManualStepTest, OfSeveralKeysTheFirstOfTheirOrderActs) {
  world.boxes.Answer(kRotate, Reply::Yes);
  struct Case {
    Keys held;
    double angle;
  };
  const Case cases[] = {{{.A = true, .Q = true, .Shift = true, .Z = true}, 90},
                        {{.Q = true, .Shift = true, .Z = true}, 0},
                        {{.Shift = true, .Z = true}, 0}};
  AtPicture(1, [&] {
    for (const Case& one : cases) {
      frame.Timer1_Timer(one.held);
      EXPECT_EQ(flags.ManualAngle, one.angle);
      EXPECT_FALSE(flags.ManualStepDone);
    }
    frame.Timer1_Timer({.Z = true});
    EXPECT_TRUE(flags.SkipCutThisImage);
  });
  CutWith({Make("a.jpg")});
  EXPECT_EQ(recorder.done.size(), 1u);
}

TEST_F(ManualStepTest, KeysAreQuietWhileTheFrameIsDrawn) {
  AtPicture(1, [&] {
    frame.Pic_MouseDown({10, 10});
    frame.Pic_MouseMove({60, 50});
    for (const Keys& held : {Keys{.Ctrl = true}, Keys{.Z = true}}) frame.Timer1_Timer(held);
    EXPECT_FALSE(flags.ManualStepDone);
    frame.Pic_MouseUp();
    frame.Timer1_Timer({.Ctrl = true});
    EXPECT_TRUE(flags.ManualStepDone);
  });
  CutWith({Make("a.jpg", 100, 80)});
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{50, 40}));
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
  world.boxes.Answer(kRotate, Reply::Yes);
  AtPicture(1, [&] {
    cutPre.CmdRot270.UserClick();
    EXPECT_EQ(flags.ManualAngle, -90);
    cutPre.CmdRot270.UserClick();
    EXPECT_EQ(flags.ManualAngle, -180);
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{100, 80}));
    cutPre.CmdNext.UserClick();
  });
  AtPicture(2, [&] {
    EXPECT_EQ(flags.ManualAngle, 0);
    cutPre.CmdRot90.UserClick();
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 100, 80), Make("b.jpg", 60, 50)});
  EXPECT_EQ(Boxes(kRotate), 3);
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{50, 60}));
}

// "No" turns the picture, and the button does not ask again until the window is closed.
TEST_F(ManualStepTest, AButtonAsksNoMoreUntilTheWindowIsLoadedAgain) {
  world.boxes.Answer(kRotate, Reply::No);
  AtPicture(1, [&] {
    cutPre.CmdRot90.UserClick();
    EXPECT_EQ(flags.ManualAngle, 90);
    cutPre.CmdRot90.UserClick();
    EXPECT_EQ(flags.ManualAngle, 180);
    EXPECT_EQ(Boxes(kRotate), 1);
    cutPre.CmdRot270.UserClick();
    EXPECT_EQ(Boxes(kRotate), 2);
    cutPre.CmdNext.UserClick();
  });
  for (const int number : {2, 3}) {
    AtPicture(number, [&] {
      cutPre.CmdRot90.UserClick();
      cutPre.CmdNext.UserClick();
    });
  }
  CutWith({Make("a.jpg")});
  Cut();
  EXPECT_EQ(Boxes(kRotate), 2);
  cutPre.Close();
  cutPre.Show();
  Cut();
  EXPECT_EQ(Boxes(kRotate), 3);
}

TEST_F(ManualStepTest, ATurnKeepsTheResolution) {
  world.boxes.Answer(kRotate, Reply::Yes);
  AtPicture(1, [&] {
    cutPre.CmdRot90.UserClick();
    EXPECT_EQ(DpiOf(program.AppPath("Tmp.jpg")), 240);
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", job::Painted(100, 80, Slope), 240)});
  EXPECT_EQ(recorder.done.size(), 1u);
}

TEST_F(ManualStepTest, ATurnThatIsUndoneChangesNothing) {
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

// A picture that the options turn before the cut is shown turned, so that the frame covers what is cut.
TEST_F(ManualStepTest, APictureThatIsTurnedBeforeTheCutIsShownSo) {
  Put("FBaseOpt.ChRotateCut", "1");
  Put("FBaseOpt.TAngle", "90");
  form.CmbOutType.SetText("bmp");
  AtPicture(1, [&] {
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{80, 100}));
    EXPECT_EQ(SizeOf(cutPre.preview.Path()), (base::Size{80, 100}));
    EXPECT_EQ(flags.CurrentImagePath, In("a.bmp"));
    EXPECT_FALSE(cutPre.CmdRot90.Enabled());
    EXPECT_FALSE(cutPre.CmdRot270.Enabled());
    Drag({0, 0}, {40, 50});
    cutPre.CmdNext.UserClick();
  });
  // The next picture must not be seen before it is turned.
  recorder.onFileDone = [&](const job::FileResult&) { EXPECT_FALSE(cutPre.preview.Glances()); };
  CutWith({Make("a.bmp", 100, 80), Make("b.bmp", 100, 80)});
  ASSERT_EQ(SizeOf(Out("a.bmp")), (base::Size{40, 50}));
  // Counter-clockwise: the upper right corner becomes the upper left one.
  EXPECT_EQ(Read(Out("a.bmp")).At(0, 0), Slope(99, 0));
  EXPECT_EQ(Read(Out("a.bmp")).At(3, 5), Slope(94, 3));
}

TEST_F(ManualStepTest, WhatIsLargerThanMayBeShownIsReducedForTheEyeAlone) {
  form.CmbOutType.SetText("bmp");
  AtPicture(1, [&] {
    EXPECT_EQ(cutPre.preview.Path(), program.AppPath("Tmp.jpg"));
    EXPECT_EQ(SizeOf(cutPre.preview.Path()), (base::Size{8000, 16}));
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{10000, 20}));
    EXPECT_EQ(flags.CurrentImagePath, In("a.bmp"));
    Drag({0, 0}, {5000, 20});
    cutPre.CmdNext.UserClick();
  });
  AtPicture(2, [&] {
    EXPECT_EQ(cutPre.preview.Path(), In("b.bmp"));
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.bmp", 10000, 20), Make("b.bmp", 8000, 16)});
  EXPECT_EQ(SizeOf(Out("a.bmp")), (base::Size{5000, 20}));
  EXPECT_EQ(Read(Out("a.bmp")).At(4999, 19), Slope(4999, 19));
}

TEST_F(ManualStepTest, TheWorkerReducesItIfThereIsOne) {
  WriteApp("PicCutConverter.dll");
  std::string order;
  world.shell.OnStart([&](const host::testing::RecordingShell::Started&) {
    order = world.folder.Read("app/Param.txt");
    world.folder.Write("app/Tmp.jpg", world.folder.Read("in/small.jpg"));
  });
  Make("small.jpg", 80, 10);
  AtPicture(1, [&] {
    EXPECT_EQ(cutPre.preview.Path(), program.AppPath("Tmp.jpg"));
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 10000, 20)});
  EXPECT_NE(order.find("OnlyZoom=True"), std::string::npos) << order;
  EXPECT_NE(order.find("\n" + In("a.jpg") + "\n"), std::string::npos) << order;
  EXPECT_NE(order.find("\n8000\n16\n"), std::string::npos) << order;
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

TEST_F(BoardStepTest, TheBorderIsTheSameOnBothSidesAndKeepsTheResolution) {
  AtPicture(1, [&] {
    cutPre.CmdAddBoard.UserClick();
    const std::string grown = program.AppPath("Tmp.jpg");
    EXPECT_EQ(DpiOf(grown), 240);
    const Picture picture = Read(grown);
    // 250 white columns, 300 of the picture, 250 white ones.
    EXPECT_EQ(picture.At(240, 200), job::kWhitePixel);
    EXPECT_LE(picture.At(260, 200).blue, 20);
    EXPECT_LE(picture.At(540, 200).blue, 20);
    EXPECT_EQ(picture.At(560, 200), job::kWhitePixel);
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", job::Painted(300, 400, [](int, int) { return job::Pixel{200, 100, 0}; }), 240)});
  EXPECT_EQ(recorder.done.size(), 1u);
}

TEST_F(BoardStepTest, GoingOnForgetsThatAPictureHasGrown) {
  AtPicture(1, [&] {
    cutPre.CmdAddBoard.UserClick();
    EXPECT_EQ(cutPre.CmdAddBoard.Tag(), "1");
    cutPre.CmdNext.UserClick();
    EXPECT_EQ(cutPre.CmdAddBoard.Tag(), "");
    EXPECT_FALSE(cutPre.CmdNext.Enabled());
  });
  AtPicture(2, [&] {
    cutPre.CmdNotCut.UserClick();
    EXPECT_FALSE(cutPre.CmdNotCut.Enabled());
    EXPECT_TRUE(flags.ManualStepDone && flags.SkipCutThisImage);
  });
  CutWith({Make("a.jpg", 300, 400), Make("b.jpg", 300, 400)});
  EXPECT_EQ(recorder.done.size(), 2u);
}

TEST_F(BoardStepTest, AGrownPictureThatARuleTurnsIsShownTurned) {
  Put("FBaseOpt.CmbRotate", "旋转任一角度");
  Put("FBaseOpt.TAngle", "90");
  AtPicture(1, [&] {
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{80, 100}));
    cutPre.CmdAddBoard.UserClick();
    EXPECT_EQ(SizeOf(flags.CurrentImagePath), (base::Size{160, 80}));
    EXPECT_EQ(cutPre.preview.Picture(), (base::Size{80, 160}));
    EXPECT_EQ(SizeOf(cutPre.preview.Path()), (base::Size{80, 160}));
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.jpg", 100, 80)});
  EXPECT_EQ(recorder.done.size(), 1u);
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

constexpr const char* kOtherType = "旋转或扩边之后的图片是 jpg，输出类型是 png，这一张就没有输出。仍然继续？";

// The work file of the frame is a jpg.
TEST_F(ManualStepTest, ATurnThatCostsTheOutputIsAskedAboutFirst) {
  form.CmbOutType.SetText("png");
  world.boxes.Answer(kOtherType, Reply::Cancel, 1);
  world.boxes.Answer(kOtherType, Reply::Ok, 1);
  world.boxes.Answer(kRotate, Reply::Yes);
  AtPicture(1, [&] {
    cutPre.CmdRot90.UserClick();
    EXPECT_EQ(flags.CurrentImagePath, In("a.png"));
    cutPre.CmdNext.UserClick();
  });
  AtPicture(2, [&] {
    cutPre.CmdRot90.UserClick();
    EXPECT_EQ(flags.CurrentImagePath, program.AppPath("Tmp.jpg"));
    EXPECT_EQ(frame.Asked(), In("b.png"));
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.png", 100, 80), Make("b.png", 100, 80)});
  EXPECT_EQ(Boxes(kOtherType), 2);
  EXPECT_EQ(Boxes(kRotate), 1);
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.png"});
  EXPECT_EQ(frame.Asked(), "") << "after the run";
}

TEST_F(BoardStepTest, PaddingThatCostsTheOutputIsAskedAboutToo) {
  form.CmbOutType.SetText("png");
  world.boxes.Answer(kOtherType, Reply::Cancel);
  AtPicture(1, [&] {
    cutPre.CmdAddBoard.UserClick();
    EXPECT_EQ(flags.CurrentImagePath, In("a.png"));
    EXPECT_EQ(cutPre.CmdAddBoard.Tag(), "");
    cutPre.CmdNext.UserClick();
  });
  CutWith({Make("a.png", 300, 400)});
  EXPECT_EQ(Boxes(kOtherType), 1);
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
  EXPECT_NE(frame.Ask({path, path, {}}, ""), "");
  EXPECT_EQ(shown, (base::Size{50, 40}));
  ASSERT_FALSE(started.empty());
  EXPECT_NE(started[0].find("QxBackImg.exe"), std::string::npos);
  EXPECT_TRUE(flags.BackWorkerStarted);
}

TEST_F(ManualStepTest, APictureThatCannotBeTurnedLocksTheButtonsWithItsReason) {
  const std::string path = Make("a.bmp", 100, 80);
  form.ChCutA.Set(true);
  form.ChFixCut.Set(true);
  std::vector<std::string> whys;
  world.pump.EveryTurn([&] {
    if (!frame.Waiting()) return;
    for (const controls::Button* button : {&cutPre.CmdRot90, &cutPre.CmdRot270, &cutPre.CmdAddBoard}) {
      EXPECT_FALSE(button->Enabled()) << button->Name();
      whys.push_back(button->WhyDisabled());
    }
    EXPECT_TRUE(cutPre.CmdNotCut.Enabled());
    cutPre.CmdNext.UserClick();
  });
  const job::ManualPicture picture{path, path, {}, 0, "每一帧都要裁"};
  EXPECT_NE(frame.Ask(picture, ""), "");
  EXPECT_EQ(whys, std::vector<std::string>(3, "每一帧都要裁"));
}

TEST_F(ManualStepTest, APictureThatNobodyLoadsShowsNothing) {
  const std::string path = world.folder.Write("in/odd.jpg", "no picture");
  world.shell.SetResult("QxBackImg", host::kStartMissing);
  world.pump.EveryTurn([&] {
    if (frame.Waiting()) cutPre.CmdNext.UserClick();
  });
  frame.Ask({path, path, {}}, "");
  EXPECT_EQ(cutPre.preview.Path(), "");
}

TEST_F(ManualStepTest, AStopEndsTheWait) {
  AtPicture(1, [&] { flags.StopRequested = true; });
  CutWith({Make("a.jpg"), Make("b.jpg")});
  EXPECT_EQ(Totals().written, 0u);
  EXPECT_FALSE(frame.Waiting());
  EXPECT_EQ(cutPre.Title(), kRestTitle);
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

TEST_F(ManualStepTest, AWalkStopsAtEachPictureToo) {
  Put("ChBig", "1");
  Put("LInDir", world.folder.Path("in"));
  for (const char* name : {"a.bmp", "b.bmp"}) Make(name, 100, 80);
  std::vector<std::string> shown;
  const auto recordShown = [&] {
    EXPECT_EQ(cutPre.Title(), kAsk);
    EXPECT_EQ(cutPre.preview.Path(), flags.CurrentImagePath);
    shown.push_back(flags.CurrentImagePath);
  };
  AtPicture(1, [&] {
    recordShown();
    Drag({20, 8}, {70, 40});
    cutPre.CmdNext.UserClick();
  });
  AtPicture(2, [&] {
    recordShown();
    EXPECT_EQ(Frame(), (PreviewFrame{20, 8, 50, 32})) << "that of the picture before";
    cutPre.CmdNotCut.UserClick();
  });
  form.CmbOutType.SetText("bmp");
  CutWith({});
  ASSERT_EQ(recorder.done.size(), 2u);
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(shown, (std::vector<std::string>{recorder.done[0].source, recorder.done[1].source}));
  EXPECT_EQ(SizeOf(recorder.done[0].output), (base::Size{50, 32}));
  EXPECT_EQ(Read(recorder.done[0].output).At(0, 0), Slope(20, 8));
  EXPECT_EQ(SizeOf(recorder.done[1].output), (base::Size{100, 80}));
  EXPECT_EQ(cutPre.Title(), kRestTitle);
}

}  // namespace
}  // namespace quillon::regions
