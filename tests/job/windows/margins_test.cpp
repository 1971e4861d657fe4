// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The margins, their unit, the fixed size and the frame over the preview.
#include "base/number_text.h"
#include "host/testing/test_host.h"
#include "job/collaborator_doubles.h"
#include "job/program_fixture.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {

void PrintTo(const PreviewFrame& frame, std::ostream* out) {
  *out << frame.left << "," << frame.top << " " << frame.width << "x" << frame.height;
}

namespace {

class MarginsTest : public StartedTest {
 protected:
  Preview& preview = program.fCutPre.preview;

  // Shows an area of that size in the preview.
  void ShowArea(int width, int height) {
    // A bitmap of which only the head is ever read.
    std::string head = "BM";
    const auto put32 = [&head](std::uint32_t value) {
      for (int i = 0; i < 4; ++i) head += static_cast<char>((value >> (8 * i)) & 0xFF);
    };
    const std::uint32_t row = (static_cast<std::uint32_t>(width) * 3 + 3) / 4 * 4;
    put32(54 + row * static_cast<std::uint32_t>(height));
    put32(0);
    put32(54);
    put32(40);
    put32(static_cast<std::uint32_t>(width));
    put32(static_cast<std::uint32_t>(height));
    head += std::string("\1\0\30\0", 4);
    for (int i = 0; i < 6; ++i) put32(0);
    head.resize(54 + std::size_t{row} * static_cast<std::size_t>(height), '\x7F');
    const std::string path = world.folder.Write("shown.bmp", head);
    program.ShowInPreview(path);
    ASSERT_EQ(preview.Picture(), (base::Size{width, height}));
  }
  void PutMargins(const char* left, const char* top, const char* right, const char* bottom) {
    Put("TCutValue(0)", left);
    Put("TCutValue(1)", top);
    Put("TCutValue(2)", right);
    Put("TCutValue(3)", bottom);
  }
  std::string Margins() const {
    std::string all;
    for (const controls::TextBox& box : form.TCutValue) all += (all.empty() ? "" : " ") + box.Value();
    return all;
  }
  PreviewFrame Frame() const { return preview.PictureFrame(); }
};

TEST_F(MarginsTest, OfPdfPagesAreInPerCent) {
  WriteApp("Aspose.pdf.dll");
  ShowArea(200, 100);
  PutMargins("20", "0", "0", "5");
  Put("CmbCutMode", "3");
  EXPECT_EQ(form.Frame2.Text(), "裁剪参数(单位：%)：");
  EXPECT_EQ(Margins(), "10 0 0 5");
  EXPECT_EQ(form.TCutValue[0].GetLimits().max, 90);
  EXPECT_EQ(Frame(), (PreviewFrame{20, 0, 180, 95}));
  Put("ChCutA", "0");
  Put("ChCutA", "1");
  EXPECT_EQ(Margins(), "10 0 0 5") << "the unit stays";
  Put("ChFixCut", "1");
  EXPECT_EQ(Frame(), (PreviewFrame{20, 0, 180, 95})) << "a fixed size does not count";
  Put("ChFixCut", "0");
  Put("CmbCutMode", "0");
  EXPECT_EQ(form.Frame2.Text(), "裁剪参数(单位：像素)：");
  EXPECT_EQ(Margins(), "20 0 0 5");
}

TEST_F(MarginsTest, ANegativeValueBecomesZeroWithABeep) {
  Put("TCutValue(0)", "-1");
  EXPECT_EQ(Value("TCutValue(0)"), "0");
  EXPECT_EQ(world.boxes.Beeps(), 1);
}

TEST_F(MarginsTest, BeforeTheHandlersAreLiveItDoesSoSilently) {
  flags.HandlersLive = false;
  Put("TCutValue(0)", "-1");
  EXPECT_EQ(Value("TCutValue(0)"), "0");
  EXPECT_EQ(world.boxes.Beeps(), 0);
}

TEST_F(MarginsTest, PixelsEndAtThePicture) {
  ShowArea(300, 200);
  PutMargins("300", "200", "300", "200");
  EXPECT_EQ(Margins(), "300 200 300 200");
  EXPECT_EQ(world.boxes.Beeps(), 0);
  PutMargins("301", "201", "300.5", "99999");
  EXPECT_EQ(Margins(), "300 200 300 200");
  EXPECT_EQ(world.boxes.Beeps(), 4);
}

TEST_F(MarginsTest, BeforeTheHandlersAreLiveThereIsNoMaximum) {
  flags.HandlersLive = false;
  Put("TCutValue(0)", "99999");
  EXPECT_EQ(Value("TCutValue(0)"), "99999");
  EXPECT_EQ(world.boxes.Beeps(), 0);
}

TEST_F(MarginsTest, PercentEndsAt90) {
  Put("ChCutA", "0");
  PutMargins("90", "90", "90", "90");
  EXPECT_EQ(world.boxes.Beeps(), 0);
  PutMargins("90.5", "91", "100", "1000");
  EXPECT_EQ(Margins(), "90 90 90 90");
  EXPECT_EQ(world.boxes.Beeps(), 4);
  for (const controls::TextBox& box : form.TCutValue) {
    EXPECT_EQ(box.MaxText(), "90");
    EXPECT_EQ(box.Tooltip(), "相对裁剪模式下，最大不能超过90%");
  }
}

TEST_F(MarginsTest, AnUnknownPreviewSetsNoMaximum) {
  host::testing::TestHost blind;
  blind.screen.size = {};
  Program other(blind.host);
  ASSERT_TRUE(other.Start());
  EXPECT_EQ(other.form1.TCutValue[0].MaxText(), "");
  EXPECT_TRUE(other.form1.TCutValue[0].UserEdit("99999").Accepted());
  EXPECT_EQ(other.form1.TCutValue[0].Value(), "99999");
  EXPECT_EQ(blind.boxes.Beeps(), 0);
}

TEST_F(MarginsTest, LimitsFollowThePicture) {
  ShowArea(300, 200);
  EXPECT_EQ(form.TCutValue[0].MaxText(), "300");
  EXPECT_EQ(form.TCutValue[1].MaxText(), "200");
  EXPECT_EQ(form.TCutValue[2].MaxText(), "300");
  EXPECT_EQ(form.TCutValue[3].MaxText(), "200");
  EXPECT_EQ(flags.PreviewImageWidth, 300);
  EXPECT_EQ(flags.PreviewImageHeight, 200);
}

TEST_F(MarginsTest, TheFrameFollowsPixels) {
  ShowArea(400, 200);
  PutMargins("10", "20", "30", "40");
  EXPECT_EQ(Frame(), (PreviewFrame{10, 20, 360, 140}));
}

TEST_F(MarginsTest, TheFrameFollowsPercent) {
  ShowArea(400, 200);
  Put("ChCutA", "0");
  PutMargins("10", "20", "30", "40");
  EXPECT_EQ(Frame(), (PreviewFrame{40, 40, 240, 80}));
}

TEST_F(MarginsTest, TheFrameIsShownAtTheScaleOfThePreview) {
  ShowArea(400, 200);
  PutMargins("10", "20", "30", "40");
  preview.SetScale(0.5);
  EXPECT_EQ(preview.Frame(), (PreviewFrame{5, 10, 180, 70}));
  EXPECT_EQ(Frame(), (PreviewFrame{10, 20, 360, 140}));
}

TEST_F(MarginsTest, TooltipsShowThePercentageOfThePicture) {
  ShowArea(400, 200);
  PutMargins("10", "20", "30", "40");
  EXPECT_EQ(form.TCutValue[0].Tooltip(), "2.5%");
  EXPECT_EQ(form.TCutValue[1].Tooltip(), "10%");
  EXPECT_EQ(form.TCutValue[2].Tooltip(), "7.5%");
  EXPECT_EQ(form.TCutValue[3].Tooltip(), "20%");
}

TEST_F(MarginsTest, PixelsBecomePercent) {
  ShowArea(400, 200);
  PutMargins("10", "20", "30", "40");
  Put("ChCutA", "0");
  EXPECT_EQ(Margins(), "2.5 10 7.5 20");
  EXPECT_EQ(form.Frame2.Caption(), "裁剪参数(单位：%)：");
  EXPECT_EQ(Frame(), (PreviewFrame{10, 20, 360, 140}));
}

TEST_F(MarginsTest, PercentBecomesWholePixels) {
  ShowArea(401, 203);
  Put("ChCutA", "0");
  PutMargins("10", "20", "30", "40");  // 40.1, 40.6, 120.3, 81.2
  Put("ChCutA", "1");
  EXPECT_EQ(Margins(), "40 40 120 81");
  EXPECT_EQ(form.Frame2.Caption(), "裁剪参数(单位：像素)：");
}

TEST_F(MarginsTest, WholePixelsSurviveTheWayThroughPercentAtAnyScale) {
  ShowArea(1000, 700);
  for (const double scale : {1.0, 0.3, 1 / 3.0}) {
    preview.SetScale(scale);
    for (const int margin : {1, 7, 29, 57, 58, 113, 299}) {
      const std::string text = std::to_string(margin);
      PutMargins(text.c_str(), text.c_str(), text.c_str(), text.c_str());
      Put("ChCutA", "0");
      Put("ChCutA", "1");
      std::string four = text;
      for (int i = 0; i < 3; ++i) four.append(" ").append(text);
      EXPECT_EQ(Margins(), four) << scale;
    }
  }
}

TEST_F(MarginsTest, AFixedFrameIsConverted) {
  ShowArea(1000, 500);
  Put("ChFixCut", "1");
  PutMargins("100", "50", "0", "0");
  Put("TFixWH(0)", "200");
  Put("TFixWH(1)", "100");
  Put("ChCutA", "0");
  EXPECT_EQ(Margins(), "10 10 70 70");
}

TEST_F(MarginsTest, ChangingTheUnitPutsFixedCutAndSheetsOff) {
  ShowArea(400, 200);
  IdleSheets sheets;
  program.sheets = &sheets;
  form.ChCutAndArray.Set(true);  // as the presets do, with and without a fixed cut
  Put("ChCutA", "0");
  EXPECT_EQ(Value("ChCutAndArray"), "0");
  Put("ChCutA", "1");
  Put("ChFixCut", "1");
  Put("ChCutAndArray", "1");
  Put("ChCutA", "0");
  EXPECT_EQ(Value("ChFixCut"), "0");
  EXPECT_EQ(Value("ChCutAndArray"), "0");
  EXPECT_FALSE(Enabled("ChFixCut"));
  EXPECT_FALSE(Enabled("ChCutAndArray"));
  EXPECT_FALSE(Enabled("MenuUnitConvert"));
  Put("ChCutA", "1");
  EXPECT_TRUE(Enabled("ChFixCut"));
  EXPECT_FALSE(Enabled("ChCutAndArray"));
  EXPECT_TRUE(Enabled("MenuUnitConvert"));
  Put("ChFixCut", "1");
  EXPECT_TRUE(Enabled("ChCutAndArray"));
}

TEST_F(MarginsTest, TheFixedSizeIsMirroredInTheFlags) {
  EXPECT_EQ(flags.FixW, 1062);
  EXPECT_EQ(flags.FixH, 1630);
  Put("ChFixCut", "1");
  Put("TFixWH(0)", "200");
  EXPECT_EQ(flags.FixW, 200);
  EXPECT_EQ(flags.FixH, 1630);
  Put("TFixWH(1)", "100");
  EXPECT_EQ(flags.FixH, 100);
}

TEST_F(MarginsTest, TheOptionsCopyTheFixedSizeCrosswiseOnceLoaded) {
  Put("ChFixCut", "1");
  Put("TFixWH(0)", "200");
  EXPECT_EQ(Value("FBaseOpt.TSmalS(3)"), "1000");
  EXPECT_EQ(Value("FBaseOpt.TSmalS(2)"), "1800");
  options.Load();
  Put("TFixWH(0)", "201");
  EXPECT_EQ(Value("FBaseOpt.TSmalS(3)"), "201");
  EXPECT_EQ(Value("FBaseOpt.TSmalS(2)"), "1630");
  Put("TFixWH(1)", "101");
  EXPECT_EQ(Value("FBaseOpt.TSmalS(3)"), "201");
  EXPECT_EQ(Value("FBaseOpt.TSmalS(2)"), "101");
  EXPECT_EQ(Value("TFixWH(0)"), "201");
  EXPECT_EQ(Value("TFixWH(1)"), "101");
}

TEST_F(MarginsTest, TheFixedSizeCopiesTheOptionsCrosswise) {
  options.Load();
  Put("FBaseOpt.TSmalS(2)", "500");
  EXPECT_EQ(Value("TFixWH(0)"), "1000");
  EXPECT_EQ(Value("TFixWH(1)"), "500");
  EXPECT_EQ(flags.FixW, 1000);
  EXPECT_EQ(flags.FixH, 500);
  Put("FBaseOpt.TSmalS(3)", "400");
  EXPECT_EQ(Value("TFixWH(0)"), "400");
  EXPECT_EQ(Value("TFixWH(1)"), "500");
  EXPECT_EQ(Value("FBaseOpt.TSmalS(2)"), "500");
  EXPECT_EQ(flags.FixW, 400);
}

TEST_F(MarginsTest, TheUnitConverterReceivesTheSideThatChanged) {
  controls::Window converter("FConverter", "");
  controls::TextBox pixels(converter, "TPexil", {}, "800", controls::Content::Number);
  program.windows.Add(converter);
  Put("ChFixCut", "1");
  Put("TFixWH(0)", "201");
  EXPECT_EQ(pixels.Value(), "201");
  Put("TFixWH(1)", "102");
  EXPECT_EQ(pixels.Value(), "102");
}

TEST_F(MarginsTest, TheMirrorChangesNothingOnItsWay) {
  options.Load();
  Put("ChFixCut", "1");
  Put("TFixWH(0)", "201");
  std::vector<std::string> changed;
  const auto note = [&changed](const controls::Control& control, controls::Aspect aspect) {
    if (aspect == controls::Aspect::Value) changed.push_back(control.FullName());
  };
  form.Observe(note);
  options.Observe(note);
  Put("TFixWH(0)", "202");
  EXPECT_EQ(changed, (std::vector<std::string>{"Form1.TFixWH(0)", "FBaseOpt.TSmalS(3)"}));
  changed.clear();
  Put("FBaseOpt.TSmalS(2)", "102");
  EXPECT_EQ(changed, (std::vector<std::string>{"FBaseOpt.TSmalS(2)", "Form1.TFixWH(1)"}));
  changed.clear();
  options.AcceptFixedSize("7", "8");
  EXPECT_EQ(changed, (std::vector<std::string>{"FBaseOpt.TSmalS(3)", "FBaseOpt.TSmalS(2)"}));
}

TEST_F(MarginsTest, BothSidesOfAFreshMirrorChangeOnce) {
  options.Load();
  std::vector<std::string> changed;
  const auto note = [&changed](const controls::Control& control, controls::Aspect aspect) {
    if (aspect == controls::Aspect::Value) changed.push_back(control.FullName() + "=" + control.Value());
  };
  form.Observe(note);
  options.Observe(note);
  Put("FBaseOpt.TSmalS(2)", "500");
  EXPECT_EQ(changed,
            (std::vector<std::string>{"FBaseOpt.TSmalS(2)=500", "Form1.TFixWH(0)=1000", "Form1.TFixWH(1)=500"}));
}

TEST_F(MarginsTest, AFreshMirrorCopiesBothSidesAtOnce) {
  options.Load();
  Put("ChFixCut", "1");
  std::vector<std::string> changed;
  const auto note = [&changed](const controls::Control& control, controls::Aspect aspect) {
    if (aspect == controls::Aspect::Value) changed.push_back(control.FullName() + "=" + control.Value());
  };
  form.Observe(note);
  options.Observe(note);
  Put("TFixWH(0)", "200");
  EXPECT_EQ(changed,
            (std::vector<std::string>{"Form1.TFixWH(0)=200", "FBaseOpt.TSmalS(3)=200", "FBaseOpt.TSmalS(2)=1630"}));
}

TEST_F(MarginsTest, ThresholdsAndCountsDoNotTouchTheFixedSize) {
  options.Load();
  Put("FBaseOpt.TSmalS(0)", "7");
  Put("FBaseOpt.TSmalS(1)", "8");
  EXPECT_EQ(flags.FixW, 1062);
  EXPECT_EQ(flags.FixH, 1630);
}

TEST_F(MarginsTest, OptionsThatWereNeverLoadedDoNotTouchTheFixedSize) {
  Put("FBaseOpt.TSmalS(2)", "500");
  EXPECT_EQ(flags.FixH, 1630);
  EXPECT_EQ(Value("TFixWH(1)"), "1630");
}

TEST_F(MarginsTest, AFixedFrameKeepsItsSize) {
  ShowArea(1000, 500);
  Put("ChFixCut", "1");
  Put("TFixWH(0)", "200");
  Put("TFixWH(1)", "100");
  PutMargins("10", "20", "30", "40");
  EXPECT_EQ(Frame(), (PreviewFrame{10, 20, 200, 100}));
}

TEST_F(MarginsTest, TheFrameIsCentred) {
  ShowArea(1000, 500);
  Put("ChFixCut", "1");
  Put("ChAutoCenter", "1");
  Put("TFixWH(0)", "200");
  Put("TFixWH(1)", "101");
  EXPECT_EQ(Frame(), (PreviewFrame{400, 199.5, 200, 101}));
  options.Load();
  Put("FBaseOpt.TSmalS(3)", "300");
  Put("FBaseOpt.TSmalS(2)", "100");
  EXPECT_EQ(Frame(), (PreviewFrame{350, 200, 300, 100}));
}

TEST_F(MarginsTest, WithoutAPictureThereIsNoFrame) {
  host::testing::TestHost blind;
  blind.screen.size = {};
  Program other(blind.host);
  ASSERT_TRUE(other.Start());
  ASSERT_TRUE(other.form1.TCutValue[0].UserEdit("10").Accepted());
  EXPECT_EQ(other.fCutPre.preview.PictureFrame(), PreviewFrame{});
  EXPECT_EQ(other.form1.TCutValue[0].Tooltip(), "");
  ASSERT_TRUE(other.form1.ChCutA.UserEdit("0").Accepted());
  EXPECT_EQ(other.form1.TCutValue[0].Value(), "10");
}

TEST_F(MarginsTest, APictureThatCannotBeMeasuredIsPassedOver) {
  ShowArea(400, 200);
  const std::string shown = flags.CurrentImagePath;
  program.ShowInPreview(world.folder.Write("broken.jpg", "no picture"));
  program.ShowInPreview(world.folder.Path("missing.jpg"));
  program.ShowInPreview("");
  EXPECT_EQ(flags.CurrentImagePath, shown);
  EXPECT_EQ(preview.Path(), shown);
  EXPECT_EQ(preview.Picture(), (base::Size{400, 200}));
}

// With ChLarge the helper reduces what has a side above 6000; the frame keeps to the whole picture.
TEST_F(MarginsTest, HugePicturesAreReducedBesideTheProgram) {
  world.folder.Write("app/PicCutConverter.dll", "");
  std::string order;
  world.shell.OnStart([&](const host::testing::RecordingShell::Started&) {
    order = world.folder.Read("app/Param.txt");
    world.folder.Write("app/Tmp.jpg", world.folder.Read("shown.bmp"));
  });
  ShowArea(12000, 10);
  EXPECT_EQ(preview.Path(), flags.CurrentImagePath);
  Put("ChLarge", "1");
  ShowArea(6000, 10);
  EXPECT_EQ(preview.Path(), flags.CurrentImagePath);
  EXPECT_EQ(order, "");
  ShowArea(12000, 10);
  EXPECT_EQ(preview.Path(), world.folder.Path("app/Tmp.jpg"));
  EXPECT_EQ(flags.CurrentImagePath, world.folder.Path("shown.bmp"));
  EXPECT_TRUE(order.starts_with("OnlyZoom=True\n")) << order;
  EXPECT_NE(order.find("\n60\n6000\n5\n98\n" + world.folder.Path("app/Tmp.jpg") + "\n"), std::string::npos) << order;
  EXPECT_NE(order.find("NeedConverter=False\n12000\n10\n"), std::string::npos) << order;
  // A helper that leaves nothing: the picture itself is shown.
  world.shell.OnStart([](const host::testing::RecordingShell::Started&) {});
  ShowArea(12000, 10);
  EXPECT_EQ(preview.Path(), flags.CurrentImagePath);
  EXPECT_FALSE(world.folder.Exists("app/Param.txt"));
}

// It is a run of its own: it can be stopped, and nothing else begins meanwhile.
TEST_F(MarginsTest, TheReductionOfAHugePictureCanBeStopped) {
  world.folder.Write("app/PicCutConverter.dll", "");
  Put("ChLarge", "1");
  flags.StopRequested = true;  // of an earlier run
  world.processes.Add({1, "PicCutConverter.exe", world.host.programFolder, true});
  world.boxes.Answer("终止当前操作？", host::Reply::Ok);
  std::string title;
  world.pump.EveryTurn([&] {
    EXPECT_TRUE(flags.Busy);
    EXPECT_TRUE(form.MenuStop.Enabled());
    if (world.clock.Seconds() < 4) return;
    title = form.Title();
    form.MenuStop.UserClick();
  });
  ShowArea(12000, 10);
  EXPECT_EQ(title, "  正在等待 PicCutConverter.exe...（可用“终止”结束它）Quillon");
  EXPECT_EQ(world.processes.Ended(), std::vector<int>{1});
  EXPECT_EQ(preview.Path(), flags.CurrentImagePath);
  EXPECT_FALSE(flags.Busy);
  EXPECT_FALSE(form.MenuStop.Enabled());
  EXPECT_EQ(form.Title(), "Quillon");
}

TEST_F(MarginsTest, AZoomBeforeTheCutShowsTheZoomedSize) {
  ShowArea(400, 200);
  options.Load();
  int notified = 0;
  preview.SetObserver([&notified] { ++notified; });
  Put("FBaseOpt.CmbZoom", "50%");
  EXPECT_EQ(notified, 0);
  Put("FBaseOpt.ChZoomAndCut", "1");
  EXPECT_EQ(preview.Picture(), (base::Size{200, 100}));
  EXPECT_EQ(form.TCutValue[0].MaxText(), "200");
  Put("FBaseOpt.CmbZoom", "100,60");
  EXPECT_EQ(preview.Picture(), (base::Size{100, 60}));
  Put("FBaseOpt.ChZoomAndCut", "0");
  EXPECT_EQ(preview.Picture(), (base::Size{400, 200}));
}

TEST_F(MarginsTest, OptionsThatWereNeverLoadedDoNotZoomThePreview) {
  ShowArea(400, 200);
  Put("FBaseOpt.CmbZoom", "50%");
  Put("FBaseOpt.ChZoomAndCut", "1");
  EXPECT_EQ(preview.Picture(), (base::Size{400, 200}));
}

TEST_F(MarginsTest, ParametersAreReadAsTheyStand) {
  ShowArea(1000, 500);
  options.Load();
  Put("ChFixCut", "1");
  PutMargins("1", "2", "3", "4");
  Put("TFixWH(0)", "200");
  Put("TFixWH(1)", "100");
  Put("ChAutoZoom", "1");
  Put("ChFull", "1");
  flags.SkipCutThisImage = true;
  const CutGeometry read = ReadCutGeometry(program);
  EXPECT_EQ(read.ML, 1);
  EXPECT_EQ(read.MT, 2);
  EXPECT_EQ(read.MR, 3);
  EXPECT_EQ(read.MB, 4);
  EXPECT_EQ(read.FixW, 200);
  EXPECT_EQ(read.FixH, 100);
  EXPECT_EQ(read.TSmalS2, 100);
  EXPECT_EQ(read.TSmalS3, 200);
  EXPECT_TRUE(read.ChCutA && read.ChFixCut && read.ChAutoZoom && read.ChFull);
  EXPECT_TRUE(read.AdvancedOptionsLoaded && read.SkipCutThisImage);
}

TEST_F(MarginsTest, ParametersWithEverythingOff) {
  Put("ChCutA", "0");
  const CutGeometry read = ReadCutGeometry(program);
  EXPECT_FALSE(read.ChCutA || read.ChFixCut || read.ChAutoZoom || read.ChFull);
  EXPECT_FALSE(read.AdvancedOptionsLoaded || read.SkipCutThisImage);
  EXPECT_EQ(read.FixW, 1062);
  EXPECT_EQ(read.FixH, 1630);
}

TEST(Preview, NotifiesOfEveryChangeAndOfNothingElse) {
  Preview preview;
  int notified = 0;
  preview.SetObserver([&notified] { ++notified; });
  preview.ShowPicture("a", {10, 20});
  EXPECT_EQ(notified, 1);
  preview.ShowPicture("a", {10, 20});  // the file may hold another picture by now
  EXPECT_EQ(notified, 2);
  preview.SetScale(2);
  preview.SetScale(2);
  preview.SetScale(0);
  EXPECT_EQ(notified, 3);
  preview.SetPictureFrame({1, 2, 3, 4});
  preview.SetPictureFrame({1, 2, 3, 4});
  EXPECT_EQ(notified, 4);
  EXPECT_EQ(preview.Frame(), (PreviewFrame{2, 4, 6, 8}));
  preview.SetShape(1);
  preview.SetShape(1);
  EXPECT_EQ(notified, 5);
  preview.SetBorderStyle(15);
  preview.SetBorderStyle(15);
  EXPECT_EQ(notified, 6);
}

}  // namespace
}  // namespace quillon::job
