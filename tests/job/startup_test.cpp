// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// How the program starts and ends.
#include <functional>

#include "job/program_fixture.h"

namespace quillon::job {
namespace {

using host::Reply;

// Calls a function of the test at each scan for processes.
class WatchedProcesses final : public host::Processes {
 public:
  explicit WatchedProcesses(host::Processes& processes) : processes_(processes) {}
  void OnScan(std::function<void()> act) { act_ = std::move(act); }

  std::vector<host::ProcessFacts> Running() override {
    if (act_) act_();
    return processes_.Running();
  }
  bool End(int id) override { return processes_.End(id); }

 private:
  host::Processes& processes_;
  std::function<void()> act_;
};

class StartTest : public ProgramTest {
 protected:
  std::string Bitmap(int width, int height) const {
    std::string bytes = "BM";
    const auto put32 = [&bytes](std::uint32_t value) {
      for (int i = 0; i < 4; ++i) bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
    };
    const std::uint32_t row = (static_cast<std::uint32_t>(width) * 3 + 3) / 4 * 4;
    for (const std::uint32_t value : {54 + row * static_cast<std::uint32_t>(height), 0U, 54U, 40U,
                                      static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height)}) {
      put32(value);
    }
    bytes += std::string("\1\0\30\0", 4) + std::string(24, '\0');
    return bytes + std::string(std::size_t{row} * static_cast<std::size_t>(height), '\x55');
  }
  void AddProcess(int id, const std::string& name, const std::string& folder) {
    world.processes.Add({id, name, folder, true});
  }
};

TEST_F(StartTest, ASecondInstanceBeepsAndEnds) {
  world.instance.only = false;
  WriteApp("QxImgTool.dll");
  AddProcess(1, "QxImgTool.exe", world.host.programFolder);
  EXPECT_FALSE(program.Start());
  EXPECT_TRUE(program.Ended());
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_TRUE(world.boxes.All().empty());
  EXPECT_FALSE(AppHas("QxImgTool.exe"));
  EXPECT_FALSE(AppHas("Canvas.bmp"));
  EXPECT_TRUE(world.processes.Ended().empty());
  EXPECT_FALSE(form.Visible());
}

TEST_F(StartTest, AResolutionThatIsKnownStays) {
  flags.OutDpi = 600;
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(flags.OutDpi, 600);
  EXPECT_EQ(flags.SheetWidth, 7559);    // 7559.04
  EXPECT_EQ(flags.SheetHeight, 10961);  // 10960.6
}

TEST_F(StartTest, FlagsAfterTheStart) {
  ASSERT_TRUE(program.Start());
  EXPECT_FALSE(program.Ended());
  EXPECT_FALSE(flags.StopRequested || flags.LargeCapacityMode || flags.AdvancedOptionsLoaded);
  EXPECT_FALSE(flags.GifOptionsLoaded || flags.TiffOptionsLoaded || flags.PdfOptionsLoaded || flags.ArrayLoaded);
  EXPECT_FALSE(flags.ManualCutMode || flags.ManualStepDone || flags.SkipCutThisImage);
  EXPECT_FALSE(flags.ImageRotated || flags.ManualRotated);
  EXPECT_EQ(flags.ManualAngle, 0);
  EXPECT_EQ(flags.CurrentImagePath, "");
  EXPECT_TRUE(flags.FirstImageHandle.Empty());
  EXPECT_EQ(flags.PreviewImageWidth, 640);
  EXPECT_EQ(flags.PreviewImageHeight, 480);
  EXPECT_EQ(flags.InfoWidth, "");
  EXPECT_EQ(flags.InfoHeight, "");
  EXPECT_EQ(flags.FixW, 1062);
  EXPECT_EQ(flags.FixH, 1630);
  EXPECT_EQ(flags.OutDpi, 300);
  EXPECT_EQ(flags.ScreenDpi, 96);
  EXPECT_FALSE(flags.KeepExif || flags.ToBlackWhite || flags.CutThenZoom || flags.ToCmyk);
  EXPECT_EQ(flags.OmittedFolders, "");
  EXPECT_FALSE(flags.BackWorkerStarted || flags.Busy);
  EXPECT_EQ(flags.TiffCompression, "lzw");
  EXPECT_DOUBLE_EQ(flags.ScreenRatio, 1920.0 / 1080);
  EXPECT_TRUE(flags.HandlersLive);
  EXPECT_EQ(flags.SheetWidth, 3780);
  EXPECT_EQ(flags.SheetHeight, 5480);
  EXPECT_TRUE(world.boxes.All().empty());
  EXPECT_EQ(world.boxes.Beeps(), 0);
}

TEST_F(StartTest, WindowsAndMenusAfterTheStart) {
  EXPECT_FALSE(Enabled("MenuCut"));
  EXPECT_EQ(Value("ChCutA"), "0");
  ASSERT_TRUE(program.Start());
  EXPECT_TRUE(Enabled("MenuCut"));
  EXPECT_TRUE(form.Visible());
  EXPECT_TRUE(program.fCutPre.Visible());
  EXPECT_FALSE(options.Loaded());
  EXPECT_EQ(Value("ChCutA"), "1");
  EXPECT_EQ(Value("TCutValue(3)"), "5");
  EXPECT_EQ(Value("CmbDPI"), "0");
}

TEST_F(StartTest, TheScreenIsRead) {
  world.screen.size = {1000, 500};
  world.screen.dpi = 120;
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(flags.ScreenRatio, 2);
  EXPECT_EQ(flags.ScreenDpi, 120);
}

TEST_F(StartTest, ListsStartAtTheirFirstEntryAndAct) {
  form.CmbDPI.Select(3);
  form.CmbKeepCut.Select(7);
  form.CmbOutType.Select(2);
  form.CmbCutMode.Select(2);
  form.CmbCutStyle.Select(1);
  form.ChOver.Set(true);
  ASSERT_TRUE(program.Start());
  for (const char* name : {"CmbDPI", "CmbKeepCut", "CmbOutType", "CmbCutMode", "CmbCutStyle"}) {
    EXPECT_EQ(Value(name), "0") << name;
  }
  EXPECT_EQ(Value("ChOver"), "0");
  EXPECT_TRUE(Enabled("menuNormalCut"));
}

TEST_F(StartTest, TwinsAreCopied) {
  const char* copied[] = {"PicCutConverter", "QxImgTool", "PicHandler", "TessaExifHandler", "SavePicsToTiff"};
  for (const char* name : copied) WriteApp(std::string(name) + ".dll", std::string("twin of ") + name);
  WriteApp("QxImgTool.exe", "left over");
  WriteApp("CutMedia.dll");
  ASSERT_TRUE(program.Start());
  for (const char* name : copied) {
    EXPECT_EQ(world.folder.Read(std::string("app/") + name + ".exe"), std::string("twin of ") + name);
  }
  EXPECT_FALSE(AppHas("CutMedia.exe"));
}

TEST_F(StartTest, ATwinThatCannotBeCopiedIsNotReported) {
  WriteApp("QxImgTool.dll");
  world.faults.Set({.call = host::testing::DiskCall::Link, .error = EXDEV, .pathHolds = "QxImgTool"});
  world.faults.Set({.call = host::testing::DiskCall::Write, .error = EIO, .pathHolds = "QxImgTool"});
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(world.faults.Fired(), 2);
  EXPECT_FALSE(AppHas("QxImgTool.exe"));
  EXPECT_TRUE(world.boxes.All().empty());
}

TEST_F(StartTest, LeftOverHelpersAreEnded) {
  const std::string app = world.host.programFolder;
  AddProcess(1, "PicCirleCut.exe", app);
  AddProcess(2, "QxImgTool.exe", app);
  AddProcess(3, "DCRebooter.exe", app);
  AddProcess(4, "QxBackImg.exe", app);
  AddProcess(5, "QxImgTool.exe", "/elsewhere");
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(world.processes.Ended(), (std::vector{1, 2, 3}));
}

TEST_F(StartTest, TheStepsHaveTheirOrder) {
  WriteApp("PicCutConverter.dll");
  WriteApp("QxImgTool.dll");
  WatchedProcesses watched(world.processes);
  host::Host other{world.boxes,
                   world.dialogs,
                   world.pump,
                   world.clock,
                   world.files,
                   world.settings,
                   watched,
                   world.shell,
                   world.screen,
                   world.instance,
                   world.host.programFolder};
  Program second(other);
  int scans = 0;
  watched.OnScan([&] {
    ++scans;
    EXPECT_EQ(second.flags.ScreenDpi, 96);
    EXPECT_TRUE(AppHas("PicCutConverter.exe"));
    EXPECT_FALSE(AppHas("QxImgTool.exe"));
    EXPECT_FALSE(AppHas("Canvas.bmp"));
    EXPECT_FALSE(second.form1.ChCutA.On());
    EXPECT_FALSE(second.flags.HandlersLive);
  });
  second.form1.ChCutA.SetHandler([&] {
    EXPECT_GT(scans, 0);
    EXPECT_EQ(second.flags.PreviewImageWidth, 640);
    EXPECT_FALSE(AppHas("QxImgTool.exe"));
  });
  second.form1.LOutDir.SetHandler([&] {
    EXPECT_TRUE(AppHas("QxImgTool.exe"));
    EXPECT_FALSE(AppHas("Canvas.bmp"));
    EXPECT_FALSE(second.fCutPre.Visible());
    EXPECT_EQ(second.flags.SheetWidth, 0);
  });
  world.settings.Set("Quillon", "Default", "LOutDir", "/out");
  ASSERT_TRUE(second.Start());
  EXPECT_EQ(scans, 3);
  EXPECT_EQ(second.form1.LOutDir.Value(), "/out");
}

TEST_F(StartTest, TheDesktopPictureIsTheFirstPreview) {
  world.screen.wallpaper = world.folder.Write("wall paper.bmp", Bitmap(321, 123));
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(flags.CurrentImagePath, world.screen.wallpaper);
  EXPECT_EQ(program.fCutPre.preview.Path(), world.screen.wallpaper);
  EXPECT_FALSE(flags.FirstImageHandle.Empty());
  EXPECT_EQ(flags.PreviewImageWidth, 321);
  EXPECT_EQ(flags.PreviewImageHeight, 123);
}

TEST_F(StartTest, WithoutADesktopPictureTheBoxCounts) {
  world.screen.wallpaper = world.folder.Path("missing.bmp");
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(flags.CurrentImagePath, world.screen.wallpaper);
  EXPECT_EQ(program.fCutPre.preview.Path(), "");
  EXPECT_EQ(flags.PreviewImageWidth, 640);
  EXPECT_EQ(flags.PreviewImageHeight, 480);
}

TEST_F(StartTest, ADesktopPictureThatIsNoneDoesNotMatter) {
  world.screen.wallpaper = world.folder.Write("wall.jpg", "no picture");
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(flags.PreviewImageWidth, 640);
}

TEST_F(StartTest, WithoutAScreenTheSizeOfThePreviewIsUnknown) {
  world.screen.size = {};
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(flags.PreviewImageWidth, 0);
  EXPECT_EQ(flags.ScreenRatio, 1);
}

TEST_F(StartTest, FoldersComeFromTheSettings) {
  world.settings.Set("Quillon", "Default", "LInDir", "/in");
  world.settings.Set("Quillon", "Default", "LOutDir", "/out/");
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(Value("LInDir"), "/in");
  EXPECT_EQ(Value("LOutDir"), "/out");
}

TEST_F(StartTest, WithoutSettingsTheLabelsSaySo) {
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(Value("LInDir"), "输入目录未指定");
  EXPECT_EQ(Value("LOutDir"), "输出目录未指定");
}

TEST_F(StartTest, TheCanvasIsAWhitePicture) {
  ASSERT_TRUE(program.Start());
  imaging::ImageFacts facts;
  ASSERT_TRUE(program.images.ImageInfo(program.AppPath("Canvas.bmp"), facts));
  EXPECT_EQ(facts.width, 50);
  EXPECT_EQ(facts.height, 50);
  const std::string bytes = world.folder.Read("app/Canvas.bmp");
  ASSERT_EQ(bytes.size(), 54U + 50 * 152);
  for (int y = 0; y < 50; ++y) {
    EXPECT_EQ(bytes.substr(54 + static_cast<std::size_t>(y) * 152, 150), std::string(150, '\xFF')) << y;
  }
}

TEST_F(StartTest, DraftsOfAKilledRunAreSwept) {
  WriteApp(".Tmp.jpg.quillon-a0b1c2", "half a picture");
  WriteApp("Tmp.jpg", "a picture");
  ASSERT_TRUE(program.Start());
  EXPECT_FALSE(AppHas(".Tmp.jpg.quillon-a0b1c2"));
  EXPECT_TRUE(AppHas("Tmp.jpg"));
}

TEST_F(StartTest, TheSheetWindowIsShownIfItIsLoaded) {
  controls::Window sheets("FArray", "");
  program.windows.Add(sheets);
  flags.ArrayLoaded = true;
  ASSERT_TRUE(program.Start());
  EXPECT_TRUE(sheets.Visible());
}

TEST_F(StartTest, TheSheetWindowIsNotShownIfItIsNotLoaded) {
  controls::Window sheets("FArray", "");
  program.windows.Add(sheets);
  ASSERT_TRUE(program.Start());
  EXPECT_FALSE(sheets.Visible());
}

class UnloadTest : public StartTest {
 protected:
  static constexpr const char* kQuestion = "关闭程序？";

  void SetUp() override {
    for (const char* name : {"PicHandler", "TessaExifHandler", "SavePicsToTiff", "QxImgTool", "PicCutConverter"}) {
      WriteApp(std::string(name) + ".dll");
    }
    ASSERT_TRUE(program.Start());
    WriteApp("DCTiffsMaker.exe");
    WriteApp("CutMedia.exe");
    WriteApp("Pdfs/deep/page.pdf");
  }
};

TEST_F(UnloadTest, CancelKeepsTheProgramOpen) {
  world.boxes.Answer(kQuestion, Reply::Cancel);
  form.Close();
  EXPECT_FALSE(program.Ended());
  EXPECT_TRUE(form.Visible());
  EXPECT_TRUE(AppHas("Pdfs/deep/page.pdf"));
  EXPECT_TRUE(AppHas("QxImgTool.exe"));
  ASSERT_EQ(world.boxes.All().size(), 1U);
  EXPECT_EQ(world.boxes.All()[0].box.text, kQuestion);
  EXPECT_EQ(world.boxes.All()[0].box.type, 65);
  EXPECT_EQ(world.boxes.All()[0].box.title, "消息");
}

TEST_F(UnloadTest, OkCleansUp) {
  AddProcess(1, "QxImgTool.exe", world.host.programFolder);
  AddProcess(2, "PicCirleCut.exe", world.host.programFolder);
  AddProcess(3, "QxBackImg.exe", world.host.programFolder);
  AddProcess(4, "QxImgTool.exe", "/elsewhere");
  Click("MenuExit");
  EXPECT_TRUE(program.Ended());
  EXPECT_FALSE(form.Visible());
  EXPECT_FALSE(AppHas("Pdfs"));
  for (const char* name :
       {"PicHandler", "TessaExifHandler", "SavePicsToTiff", "QxImgTool", "DCTiffsMaker", "PicCutConverter"}) {
    EXPECT_FALSE(AppHas(std::string(name) + ".exe")) << name;
  }
  for (const char* name : {"CutMedia.exe", "QxImgTool.dll", "PicHandler.dll", "Canvas.bmp"}) {
    EXPECT_TRUE(AppHas(name)) << name;
  }
  EXPECT_EQ(world.processes.Ended(), (std::vector{2, 1}));
}

TEST_F(UnloadTest, AProgramThatCannotBeRemovedIsPassedOver) {
  world.faults.Set({.call = host::testing::DiskCall::Remove,
                    .error = EBUSY,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "TessaExifHandler.exe"});
  form.Close();
  EXPECT_GT(world.faults.Fired(), 0);
  EXPECT_TRUE(program.Ended());
  EXPECT_TRUE(AppHas("TessaExifHandler.exe"));
  EXPECT_FALSE(AppHas("PicCutConverter.exe"));
  EXPECT_EQ(world.boxes.All().size(), 1U);
}

TEST_F(UnloadTest, TheStepsHaveTheirOrder) {
  WatchedProcesses watched(world.processes);
  host::Host other{world.boxes,
                   world.dialogs,
                   world.pump,
                   world.clock,
                   world.files,
                   world.settings,
                   watched,
                   world.shell,
                   world.screen,
                   world.instance,
                   world.host.programFolder};
  Program second(other);
  ASSERT_TRUE(second.Start());
  int scans = 0;
  watched.OnScan([&] {
    ++scans;
    EXPECT_FALSE(AppHas("Pdfs"));
    EXPECT_FALSE(AppHas("PicCutConverter.exe"));
    EXPECT_FALSE(second.Ended());
  });
  world.boxes.OnShow([&](const host::Box&) {
    EXPECT_TRUE(AppHas("Pdfs"));
    EXPECT_TRUE(AppHas("QxImgTool.exe"));
  });
  EXPECT_TRUE(second.Unload());
  EXPECT_EQ(scans, 2);
}

TEST_F(UnloadTest, WhileSomethingRunsItIsAskedToStopInstead) {
  flags.Busy = true;
  form.BeginRun();
  form.Close();
  EXPECT_EQ(world.boxes.Count(kQuestion), 0);
  EXPECT_EQ(world.boxes.Count("终止当前操作？"), 1);
  EXPECT_FALSE(program.Ended());
  EXPECT_FALSE(flags.StopRequested);  // the default is to go on
  world.boxes.Answer("终止当前操作？", Reply::Ok);
  form.Close();
  EXPECT_TRUE(flags.StopRequested);
  EXPECT_FALSE(program.Ended());
  const int beeps = world.boxes.Beeps();
  form.Close();
  EXPECT_EQ(world.boxes.Beeps(), beeps + 1);
  EXPECT_FALSE(program.Ended());
  form.EndRun();
  flags.Busy = false;
  form.Close();
  EXPECT_TRUE(program.Ended());
}

}  // namespace
}  // namespace quillon::job
