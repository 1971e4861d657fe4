// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The conversations with single helpers.
#include <filesystem>
#include <functional>

#include "tools/back_image.h"
#include "tools/helper_calls.h"
#include "tools/img_tool.h"
#include "tools/pic_handler.h"
#include "tools/tools_fixture.h"

namespace quillon::tools {
namespace {

class PicHandlerTest : public ToolsFixture {
 protected:
  const FileValidator sound = [this](const std::string& file) {
    std::string content;
    return world.files.ReadFile(file, content) && content != "garbage";
  };
};

TEST_F(PicHandlerTest, TheConvertedPictureReplacesTheFirst) {
  const std::string file = world.folder.Write("out/a.jpg", "rgb");
  Helper("PicHandler.exe", 3, [this](const std::string&) { WriteApp("Tmp.jpg", "cmyk"); });
  const double before = world.clock.Seconds();
  ASSERT_TRUE(ConvertToCmyk(tools, file, sound));
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "cmyk");
  EXPECT_EQ(Started(0), "PicHandler.exe: " + CmykText(file, tools.App(), ".jpg"));
  EXPECT_EQ(world.shell.Starts().size(), 1u);
  EXPECT_GE(world.clock.Seconds() - before, 0.2);
  EXPECT_FALSE(AppHas("Tmp.jpg"));
}

TEST_F(PicHandlerTest, AFailureLeavesThePictureAsItWas) {
  const std::string file = world.folder.Write("out/a.jpg", "rgb");
  WriteApp("Tmp.jpg", "of an earlier file");
  Helper("PicHandler.exe", 1);
  const host::Status status = ConvertToCmyk(tools, file, sound);
  EXPECT_FALSE(status);
  EXPECT_EQ(status.Why(), "转CMYK没有成功");
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "rgb");
}

TEST_F(PicHandlerTest, GarbageDoesNotReplaceThePicture) {
  const std::string file = world.folder.Write("out/a.jpg", "rgb");
  Helper("PicHandler.exe", 1, [this](const std::string&) { WriteApp("Tmp.jpg", "garbage"); });
  EXPECT_EQ(ConvertToCmyk(tools, file, sound).Why(), "转CMYK的结果已损坏");
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "rgb");
  Helper("PicHandler.exe", 1, [this](const std::string&) { world.folder.Write("out/a.pdf", "garbage"); });
  EXPECT_EQ(MakePdf(tools, file, world.folder.Path("out/a"), "x").Why(), "生成的PDF已损坏");
  EXPECT_FALSE(world.folder.Exists("out/a.pdf"));
}

TEST_F(PicHandlerTest, TheInterpreterRunsWhatCannotBeStarted) {
  for (const int result : {host::kStartMissing, host::kStartDenied, 33}) {
    const std::string file = world.folder.Write("out/a.jpg", "rgb");
    const std::size_t starts = world.shell.Starts().size();
    const double before = world.clock.Seconds();
    world.shell.SetResult("PicHandler.exe", result);
    Helper("CMD.exe", 4, [this](const std::string&) { WriteApp("Tmp.jpg", "cmyk"); });
    ASSERT_TRUE(ConvertToCmyk(tools, file, sound));
    EXPECT_EQ(Started(starts + 1), "CMD.exe: /c<>PicHandler.exe " + CmykText(file, tools.App(), ".jpg"));
    EXPECT_EQ(world.folder.Read("out/a.jpg"), "cmyk");
    EXPECT_GE(world.clock.Seconds() - before, 0.2);
  }
}

TEST_F(PicHandlerTest, AnOpenConsoleKeepsTheInterpretersWaitGoing) {
  const std::string file = world.folder.Write("out/a.jpg", "rgb");
  world.shell.SetResult("PicHandler.exe", host::kStartMissing);
  world.processes.Add({1, "cmd.exe", "/elsewhere", false}, 50);
  EXPECT_FALSE(ConvertToCmyk(tools, file, sound));
  EXPECT_EQ(world.processes.Scans(), 51);
}

TEST_F(PicHandlerTest, NamesWithQuotesAreRefused) {
  const std::string file = world.folder.Write("out/a\"b.jpg", "rgb");
  EXPECT_EQ(ConvertToCmyk(tools, file, sound).GetProblem(), host::Problem::Unsupported);
  EXPECT_FALSE(MakePdf(tools, file, file, ""));
  EXPECT_TRUE(world.shell.Starts().empty());
}

TEST_F(PicHandlerTest, AStoppedConversionLeavesThePictureAsItWas) {
  const std::string file = world.folder.Write("out/a.jpg", "rgb");
  Helper("PicHandler.exe", 0);
  world.pump.OnTurn(40, [this] { stop = true; });
  EXPECT_EQ(ConvertToCmyk(tools, file, sound).GetProblem(), host::Problem::Stopped);
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "rgb");
  EXPECT_EQ(world.processes.Ended().size(), 1u);
}

TEST_F(PicHandlerTest, ARefusedCopyStops) {
  const std::string file = world.folder.Write("out/a.jpg", "rgb");
  Helper("PicHandler.exe", 1, [this](const std::string&) { WriteApp("Tmp.jpg", "cmyk"); });
  world.faults.Set({.call = host::testing::DiskCall::Write, .error = ENOSPC, .pathHolds = "a.jpg"});
  world.boxes.Answer("盘空间不足", host::Reply::Cancel);
  EXPECT_TRUE(ConvertToCmyk(tools, file, sound).DiskFull());
  EXPECT_TRUE(stop);
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "rgb");
}

TEST_F(PicHandlerTest, APdfIsMadeWithTheTwinCopiedIfItIsMissing) {
  WriteApp("PicHandler.dll", "twin");
  const std::string file = world.folder.Write("out/a.jpg", "rgb");
  const std::string base = world.folder.Path("out/a");
  Helper("PicHandler.exe", 2, [this](const std::string&) { world.folder.Write("out/a.pdf", "%PDF-1.7\n%%EOF\n"); });
  EXPECT_TRUE(MakePdf(tools, file, base, PdfText(file, base)));
  EXPECT_EQ(Started(0), "PicHandler.exe: " + PdfText(file, base));
  EXPECT_TRUE(AppHas("PicHandler.exe"));
}

TEST_F(PicHandlerTest, AnOldPdfDoesNotPassForANewOne) {
  const std::string base = world.folder.Path("out/a");
  world.folder.Write("out/a.pdf", "old");
  Helper("PicHandler.exe", 1);
  EXPECT_EQ(MakePdf(tools, base + ".jpg", base, "x").Why(), "没有生成PDF");
  EXPECT_FALSE(world.folder.Exists("out/a.pdf"));
}

// First from the system's folder, then from the program's, then through the interpreter.
TEST_F(PicHandlerTest, ThePressPreviewIsTriedInTheSystemFolderFirst) {
  const std::string out = world.folder.Path("out/p.jpg");
  const auto act = [this](const std::string&) { world.folder.Write("out/p.jpg", TinyPicture()); };
  world.folder.Write("out/keep", "");
  Helper("PicHandler.exe", 1, act);
  ASSERT_TRUE(MakeCmykPreview(tools, "/in/a.jpg", "Press.icm", out, "/system"));
  ASSERT_EQ(world.shell.Starts().size(), 1u);
  EXPECT_EQ(world.shell.Starts()[0].folder, "/system");
  EXPECT_EQ(Started(0), "PicHandler.exe: " + CmykPreviewText("/in/a.jpg", tools.App(), "Press.icm", out));
  world.shell.SetResult("PicHandler.exe", host::kStartMissing);
  Helper("CMD.exe", 1, act);
  ASSERT_TRUE(MakeCmykPreview(tools, "/in/a.jpg", "Press.icm", out, "/system"));
  ASSERT_EQ(world.shell.Starts().size(), 4u);
  EXPECT_EQ(world.shell.Starts()[1].folder, "/system");
  EXPECT_EQ(world.shell.Starts()[2].folder, world.host.programFolder);
  EXPECT_EQ(Started(3), "CMD.exe: /c<>PicHandler.exe " + CmykPreviewText("/in/a.jpg", tools.App(), "Press.icm", out));
  Helper("CMD.exe", 1);
  EXPECT_EQ(MakeCmykPreview(tools, "/in/a.jpg", "Press.icm", out, "/system").Why(), "没有生成CMYK预览");
}

class ExifTest : public ToolsFixture {
 protected:
  // What the tool does when it goes well.
  void Describe() { world.folder.Write("out/a.jpg", "described"); }

  std::string target = world.folder.Write("out/a.jpg", "plain");
};

TEST_F(ExifTest, TheOrderStandsInTheKeyWhileTheToolRuns) {
  std::string order;
  double started = 0;
  Helper("TessaExifHandler.exe", 5, [&](const std::string&) {
    order = Key("Exif");
    started = world.clock.Seconds();
    std::filesystem::remove(target);
    Describe();
  });
  EXPECT_TRUE(CopyExif(tools, "/in/a.jpg", target));
  EXPECT_EQ(order, "/in/a.jpg|" + target + "|Tessa批量处理系列软件");
  EXPECT_GE(started, 0.09);
  EXPECT_EQ(Started(0), "TessaExifHandler.exe: ");
  EXPECT_EQ(Key("Exif"), "");
}

TEST_F(ExifTest, AToolThatHangsIsLeftAfterTwentySeconds) {
  Helper("TessaExifHandler.exe", 0);
  const double before = world.clock.Seconds();
  EXPECT_EQ(CopyExif(tools, "/in/a.jpg", target).Why(), "TessaExifHandler 没有按时完成");
  EXPECT_NEAR(world.clock.Seconds() - before, 20.1, 0.5);
  EXPECT_TRUE(world.processes.Ended().empty());
  EXPECT_EQ(Key("Exif"), "");
}

TEST_F(ExifTest, ATargetThatIsNotWrittenAgainIsReported) {
  Helper("TessaExifHandler.exe", 1);
  EXPECT_EQ(CopyExif(tools, "/in/a.jpg", target).Why(), "TessaExifHandler 没有写入");
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "plain");
  world.shell.SetResult("TessaExifHandler", host::kStartMissing);
  EXPECT_EQ(CopyExif(tools, "/in/a.jpg", target).GetProblem(), host::Problem::Missing);
  EXPECT_EQ(Key("Exif"), "");
}

TEST_F(ExifTest, ABarInANameIsRefused) {
  EXPECT_EQ(CopyExif(tools, "/in/a|b.jpg", "/out/a.jpg").GetProblem(), host::Problem::Unsupported);
  EXPECT_TRUE(world.shell.Starts().empty());
}

TEST_F(ExifTest, OtherSignsAreCarried) {
  std::string order;
  Helper("TessaExifHandler.exe", 1, [&](const std::string&) { order = Key("Exif"); });
  EXPECT_FALSE(CopyExif(tools, "/in/a\tb\n\"c\".jpg", target));
  EXPECT_EQ(order, "/in/a\tb\n\"c\".jpg|" + target + "|Tessa批量处理系列软件");
}

TEST_F(ExifTest, AnOrderThatCannotBeReadStartsNothing) {
  world.settings.Refuse();
  EXPECT_EQ(CopyExif(tools, "/in/a.jpg", target).Why(), "设置无法写入，不能把命令交给 TessaExifHandler");
  EXPECT_TRUE(world.shell.Starts().empty());
}

class ImgToolTest : public ToolsFixture {
 protected:
  PdfPages Counted(const std::string& pdf) {
    PdfPages pages{7, 7, 7};
    EXPECT_TRUE(CountPdfPages(tools, pdf, 72, 90, pages));
    return pages;
  }
  int CountedTiff(const std::string& tiff, int number = 1) {
    int pages = 7;
    EXPECT_TRUE(CountTiffPages(tools, tiff, pages, number));
    return pages;
  }
};

TEST_F(ImgToolTest, APdfIsCountedAndMeasured) {
  WriteApp("QxImgTool.dll", "twin");
  Helper("QxImgTool.exe", 2, [this](const std::string&) {
    WriteKey(world.host, "GetPdfPages", "12");
    WriteKey(world.host, "PdfW", "595");
    WriteKey(world.host, "PdfH", "842");
  });
  const PdfPages pages = Counted("/in/a.pdf");
  EXPECT_EQ(pages.count, 12);
  EXPECT_EQ(pages.width, 595);
  EXPECT_EQ(pages.height, 842);
  EXPECT_TRUE(AppHas("QxImgTool.exe"));
  EXPECT_EQ(Started(0), "QxImgTool.exe: " + CountPdfPagesText("/in/a.pdf", tools.App(), 72, 90));
}

TEST_F(ImgToolTest, NoAnswerMeansNoPages) {
  WriteKey(world.host, "GetPdfPages", "7");
  WriteKey(world.host, "GetTiffPages", "8");
  Helper("QxImgTool.exe", 1);
  EXPECT_EQ(Counted("/in/a.pdf").count, 0);
  EXPECT_EQ(CountedTiff("/in/a.tif"), 0);
  Helper("QxImgTool.exe", 1, [this](const std::string&) { WriteKey(world.host, "GetTiffPages", "many"); });
  EXPECT_EQ(CountedTiff("/in/a.tif"), 0);
}

TEST_F(ImgToolTest, TheToolSaysWhyItCountsNoPages) {
  Helper("QxImgTool.exe", 1, [this](const std::string&) { WriteKey(world.host, "GetPdfPages", "文件有密码保护"); });
  PdfPages pages{7, 7, 7};
  EXPECT_EQ(CountPdfPages(tools, "/in/a.pdf", 72, 90, pages).Why(), "文件有密码保护");
  EXPECT_EQ(pages.count, 0);
}

TEST_F(ImgToolTest, ACountBelowZeroIsNone) {
  Helper("QxImgTool.exe", 1, [this](const std::string&) {
    for (const char* key : {"GetPdfPages", "PdfW", "PdfH", "GetTiffPages"}) WriteKey(world.host, key, "-7");
  });
  const PdfPages pages = Counted("/in/a.pdf");
  EXPECT_EQ(pages.count, 0);
  EXPECT_EQ(pages.width, 0);
  EXPECT_EQ(pages.height, 0);
  EXPECT_EQ(CountedTiff("/in/a.tif"), 0);
}

TEST_F(ImgToolTest, AToolThatDoesNotStartIsReported) {
  world.shell.SetResult("QxImgTool", 33);
  PdfPages pages{1, 2, 3};
  EXPECT_EQ(CountPdfPages(tools, "/in/a.pdf", 72, 90, pages).Why(), "无法启动 QxImgTool");
  EXPECT_EQ(pages.count, 0);
  int count = 9;
  EXPECT_EQ(CountTiffPages(tools, "/in/a.tif", count).Why(), "无法启动 QxImgTool");
  EXPECT_EQ(count, 0);
  EXPECT_EQ(StartSplitPdf(tools, "/in/a.pdf", "/out/a.pdf").Why(), "无法启动 QxImgTool");
  EXPECT_EQ(StartMakeTiff(tools, "/in", "/out/a.tif", "lzw", 3).Why(), "无法启动 QxImgTool");
}

TEST_F(ImgToolTest, AStopEndsACount) {
  Helper("QxImgTool.exe", 0);
  stop = true;
  PdfPages pages;
  int count = 0;
  EXPECT_EQ(CountPdfPages(tools, "/in/a.pdf", 72, 90, pages).GetProblem(), host::Problem::Stopped);
  EXPECT_EQ(CountTiffPages(tools, "/in/a.tif", count).GetProblem(), host::Problem::Stopped);
  EXPECT_EQ(world.processes.Ended().size(), 2u);
}

// If it is deleted while the program runs, the next start of any task copies it again.
TEST_F(ImgToolTest, TheTwinIsCopiedAgainBeforeAnyRun) {
  WriteApp("QxImgTool.dll", "twin");
  BinderFeed feed(tools);
  const std::string picture = world.folder.Write("a.jpg", "x");
  const std::function<void()> runs[] = {
      [&] { Counted("/in/a.pdf"); },
      [&] { CountedTiff("/in/a.tif"); },
      [&] { static_cast<void>(CutPdf(tools, "/in/a.pdf", "/out/a.pdf", {}, [](const std::string&) {})); },
      [&] { EXPECT_TRUE(StartSplitPdf(tools, "/in/a.pdf", "/out/a.pdf")); },
      [&] { EXPECT_TRUE(StartMakeTiff(tools, "/in", "/out/a.tif", "lzw", 3)); },
      [&] { EXPECT_FALSE(feed.Add(picture, {})); },
  };
  std::size_t starts = 0;
  for (const auto& run : runs) {
    static_cast<void>(world.files.RemoveOwn(App("QxImgTool.exe")));
    run();
    EXPECT_EQ(world.folder.Read("app/QxImgTool.exe"), "twin") << starts;
    EXPECT_EQ(world.shell.Starts().size(), ++starts);
  }
}

TEST_F(ImgToolTest, ATiffThatThisProcessCanCountNeverStartsTheTool) {
  // A page of one pixel: the directory follows the header, and each entry is a number of 16 bits.
  using namespace std::string_literals;
  std::string tiff = "II*\0\x08\0\0\0\x09\0"s;
  for (const auto& [tag, value] :
       {std::pair{0x00, 1}, {0x01, 1}, {0x02, 8}, {0x03, 1}, {0x06, 1}, {0x11, 8}, {0x15, 1}, {0x16, 1}, {0x17, 1}}) {
    tiff += {static_cast<char>(tag), 1, 3, 0, 1, 0, 0, 0, static_cast<char>(value), 0, 0, 0};
  }
  tiff += "\0\0\0\0"s;
  int pages = 0;
  EXPECT_TRUE(TiffPages(tools, world.folder.Write("a.tif", tiff), pages));
  EXPECT_EQ(pages, 1);
  EXPECT_TRUE(world.shell.Starts().empty());
  Helper("QxImgTool.exe", 1, [this](const std::string&) { WriteKey(world.host, "GetTiffPages", "3"); });
  EXPECT_TRUE(TiffPages(tools, world.folder.Write("b.tif", "no tiff for this process"), pages, 4));
  EXPECT_EQ(pages, 3);
  EXPECT_EQ(Started(0), "QxImgTool.exe: " + CountTiffPagesText(world.folder.Path("b.tif"), tools.App(), 4));
}

TEST_F(ImgToolTest, TheOldFirstPageIsGoneBeforeATiffIsCounted) {
  WriteApp("Tmp.jpg", "old");
  bool there = true;
  Helper("QxImgTool.exe", 1, [&](const std::string&) {
    there = AppHas("Tmp.jpg");
    WriteKey(world.host, "GetTiffPages", "3");
  });
  EXPECT_EQ(CountedTiff("/in/a.tif", 4), 3);
  EXPECT_FALSE(there);
  EXPECT_EQ(Started(0), "QxImgTool.exe: " + CountTiffPagesText("/in/a.tif", tools.App(), 4));
}

TEST_F(ImgToolTest, TheProgressOfACutIsShown) {
  Helper("QxImgTool.exe", 5, [this](const std::string&) {
    WriteKey(world.host, "CutPdf", "1/2");
    world.folder.Write("out/a.pdf", "%PDF-1.7\n%%EOF\n");
  });
  world.pump.OnTurn(3, [this] { WriteKey(world.host, "CutPdf", "2/2"); });
  std::vector<std::string> shown;
  const std::string out = world.folder.Path("out/a.pdf");
  EXPECT_TRUE(
      CutPdf(tools, "/in/a.pdf", out, {"0", "0", "0", "5"}, [&](const std::string& text) { shown.push_back(text); }));
  EXPECT_EQ(shown.front(), "1/2");
  EXPECT_EQ(shown.back(), "2/2");
  EXPECT_EQ(Started(0), "QxImgTool.exe: " + CutPdfText("/in/a.pdf", out, {"0", "0", "0", "5"}));
}

TEST_F(ImgToolTest, ACutThatLeavesNothingFails) {
  const std::string out = world.folder.Write("out/a.pdf", "old");
  Helper("QxImgTool.exe", 1);
  EXPECT_FALSE(CutPdf(tools, "/in/a.pdf", out, {}, [](const std::string&) {}));
  EXPECT_FALSE(world.folder.Exists("out/a.pdf"));
}

TEST_F(ImgToolTest, ACutThatIsNoPdfFails) {
  const std::string out = world.folder.Path("out/a.pdf");
  for (const char* garbage : {"garbage", "%PDF-1.7\nno end"}) {
    Helper("QxImgTool.exe", 1, [&](const std::string&) { world.folder.Write("out/a.pdf", garbage); });
    const host::Status cut = CutPdf(tools, "/in/a.pdf", out, {}, [](const std::string&) {});
    EXPECT_EQ(cut.GetProblem(), host::Problem::Damaged);
    EXPECT_EQ(cut.Why(), "没有得到裁剪后的PDF：结果已损坏");
    EXPECT_FALSE(world.folder.Exists("out/a.pdf"));
  }
}

TEST_F(ImgToolTest, ACutOntoItsSourceThatLeavesNothingKeepsIt) {
  const std::string pdf = world.folder.Write("in/a.pdf", "torn");
  std::filesystem::create_symlink(pdf, world.folder.Path("in/link.pdf"));
  Helper("QxImgTool.exe", 1);
  for (const std::string& out : {pdf, world.folder.Path("in/../in/a.pdf"), world.folder.Path("in/link.pdf")}) {
    EXPECT_EQ(CutPdf(tools, pdf, out, {}, [](const std::string&) {}).Why(), "没有得到裁剪后的PDF");
    EXPECT_EQ(world.folder.Read("in/a.pdf"), "torn");
    EXPECT_TRUE(world.folder.Exists("in/link.pdf"));
  }
}

TEST_F(ImgToolTest, ASplitIsStartedAndNotWaitedFor) {
  WriteKey(world.host, "SplitPdf", "9");
  std::string seen = "?";
  Helper("QxImgTool.exe", 0, [&](const std::string&) { seen = Key("SplitPdf"); });
  EXPECT_TRUE(StartSplitPdf(tools, "/in/a.pdf", "/out/a.pdf"));
  EXPECT_EQ(seen, "");
  EXPECT_EQ(world.pump.Turns(), 0);
  EXPECT_EQ(Started(0), "QxImgTool.exe: " + SplitPdfText("/in/a.pdf", "/out/a.pdf", tools.App()));
}

TEST_F(ImgToolTest, TheSizeOfAnAssemblyIsShown) {
  const std::string out = world.folder.Path("out/a.tif");
  Helper("QxImgTool.exe", 4);
  EXPECT_TRUE(StartMakeTiff(tools, "/pages", out, "ccitt4", 12));
  EXPECT_EQ(Started(0), "QxImgTool.exe: " + MakeTiffText("/pages", out, "ccitt4", 12));
  world.pump.OnTurn(2, [this] { world.folder.Write("out/.a.tif.quillon-abc123", "12345"); });
  std::vector<std::uint64_t> shown;
  EXPECT_EQ(WaitMakeTiff(tools, out, [&](std::uint64_t size) { shown.push_back(size); }), WaitResult::Exited);
  EXPECT_EQ(shown.front(), 0u);
  EXPECT_EQ(shown.back(), 5u);
}

class BinderTest : public ToolsFixture {
 protected:
  const BindOrder order{"0", "/out/a.pdf", "", "", "1", "2", "3"};
  std::string first = world.folder.Write("a.jpg", "x");
};

TEST_F(BinderTest, EachPictureWaitsUntilItIsRead) {
  BinderFeed feed(tools);
  Helper("QxImgTool.exe", 0);
  world.pump.OnTurn(3, [this] {
    EXPECT_EQ(Key("QxImgTool"), first);
    WriteKey(world.host, "QxImgTool", "");
  });
  EXPECT_TRUE(feed.Add(first, order));
  EXPECT_EQ(world.pump.Turns(), 3);
  EXPECT_EQ(Started(0), "QxImgTool.exe: " + BindPdfText(order));
  world.pump.OnTurn(2, [this] { WriteKey(world.host, "QxImgTool", ""); });
  EXPECT_TRUE(feed.Add(first, order));
  EXPECT_EQ(world.shell.Starts().size(), 1u);
  EXPECT_TRUE(feed.End());
  EXPECT_EQ(Key("QxImgTool"), "end");
}

TEST_F(BinderTest, AnAnswerThatNamesNoFileIsAFailure) {
  BinderFeed feed(tools);
  Helper("QxImgTool.exe", 0);
  world.pump.OnTurn(2, [this] { WriteKey(world.host, "QxImgTool", "磁盘已满"); });
  EXPECT_EQ(feed.Add(first, order).Why(), "磁盘已满");
}

TEST_F(BinderTest, ABinderThatEndsIsNotWaitedFor) {
  BinderFeed feed(tools);
  Helper("QxImgTool.exe", 3);
  EXPECT_EQ(feed.Add(first, order).Why(), "QxImgTool 已中断");
}

// It would wait for ever for an answer to what was never heard.
TEST_F(BinderTest, APictureThatTheBinderCannotHearOfFailsAtOnce) {
  BinderFeed feed(tools);
  Helper("QxImgTool.exe", 0);
  world.pump.OnTurn(3, [this] { WriteKey(world.host, "QxImgTool", ""); });
  EXPECT_TRUE(feed.Add(first, order));
  const int turns = world.pump.Turns();
  world.settings.Refuse();
  EXPECT_EQ(feed.Add(first, order).Why(), "设置无法写入，不能把命令交给 QxImgTool");
  EXPECT_EQ(feed.End().Why(), "设置无法写入，不能把命令交给 QxImgTool");
  EXPECT_FALSE(feed.Add(first, order));
  EXPECT_EQ(world.pump.Turns(), turns);
  EXPECT_EQ(world.shell.Starts().size(), 1u);
}

TEST_F(BinderTest, EndSaysNothingBeforeAnyPicture) {
  EXPECT_TRUE(BinderFeed(tools).End());
  EXPECT_EQ(Key("QxImgTool"), "");
}

class BackImageTest : public ToolsFixture {
 protected:
  bool started = false;
};

TEST_F(BackImageTest, TheFirstCommandStartsTheServer) {
  WriteKey(world.host, "QxBackImg", "1");
  Helper("QxBackImg.exe", 0);
  world.pump.OnTurn(4, [this] { WriteKey(world.host, "QxBackImg", "1"); });
  EXPECT_TRUE(SendToBackImg(tools, "command", "QxBackImg", started));
  EXPECT_TRUE(started);
  EXPECT_EQ(Started(0), "QxBackImg.exe: command");
  EXPECT_EQ(world.pump.Turns(), 4);
}

TEST_F(BackImageTest, LaterCommandsGoIntoTheKey) {
  started = true;
  world.processes.Add({1, "QxBackImg.exe", world.host.programFolder, true});
  std::string seen;
  world.pump.OnTurn(2, [&] {
    seen = Key("QxBackImg");
    WriteKey(world.host, "QxBackImg", "1");
  });
  EXPECT_TRUE(SendToBackImg(tools, "cut|x", "QxBackImg", started));
  EXPECT_EQ(seen, "cut|x");
  EXPECT_TRUE(world.shell.Starts().empty());
}

TEST_F(BackImageTest, OnlyAOneIsAnAnswer) {
  started = true;
  world.processes.Add({1, "QxBackImg.exe", world.host.programFolder, true});
  world.pump.OnTurn(2, [this] { WriteKey(world.host, "QxBackImg", "10"); });
  world.pump.OnTurn(5, [this] { WriteKey(world.host, "QxBackImg", "1"); });
  EXPECT_TRUE(SendToBackImg(tools, "c", "QxBackImg", started));
  EXPECT_EQ(world.pump.Turns(), 5);
}

TEST_F(BackImageTest, AServerThatIsGoneIsStartedAgainByTheNextCommand) {
  Helper("QxBackImg.exe", 2);
  EXPECT_FALSE(SendToBackImg(tools, "c", "QxBackImg", started));
  EXPECT_FALSE(started);
  world.shell.SetResult("QxBackImg", host::kStartMissing);
  EXPECT_FALSE(SendToBackImg(tools, "c", "QxBackImg", started));
  EXPECT_FALSE(started);
}

TEST_F(BackImageTest, ACommandThatTheServerCannotHearOfFailsAtOnce) {
  world.settings.Refuse();
  EXPECT_FALSE(SendToBackImg(tools, "c", "QxBackImg", started));
  EXPECT_FALSE(started);
  EXPECT_TRUE(world.shell.Starts().empty());
  started = true;
  world.processes.Add({1, "QxBackImg.exe", world.host.programFolder, true});
  EXPECT_FALSE(SendToBackImg(tools, "c", "QxBackImg", started));
  EXPECT_EQ(world.pump.Turns(), 0);
}

TEST_F(BackImageTest, ThePictureComesByTheLane) {
  Helper("QxBackImg.exe", 0, [this](const std::string& parameters) {
    EXPECT_EQ(parameters, "Quillon\tQxBackImg\t/in/a.jpg\tload|/in/a.jpg|0");
    EXPECT_FALSE(world.files.IsFile(LanePath(world.host)));
    WriteApp("ClipBoard.lane", "picture");
    WriteKey(world.host, "QxBackImg", "1");
  });
  WriteApp("ClipBoard.lane", "an earlier picture");
  EXPECT_TRUE(LoadThroughBackImg(tools, "/in/a.jpg", started));
  world.pump.OnTurn(1, [this] { WriteKey(world.host, "QxBackImg", "1"); });
  EXPECT_FALSE(LoadThroughBackImg(tools, "/in/b.jpg", started)) << "nothing in the lane";
  EXPECT_FALSE(LoadThroughBackImg(tools, "/in/b|c.jpg", started));
}

TEST_F(BackImageTest, ACutIsFineWhenItLeavesAFile) {
  const std::string out = world.folder.Path("out/a.jpg");
  EXPECT_FALSE(CutThroughBackImg(tools, {}, out, "80", started));
  started = true;
  world.processes.Add({1, "QxBackImg.exe", world.host.programFolder, true});
  world.pump.OnTurn(1, [this] {
    EXPECT_EQ(Key("QxBackImg"), CutBackText(tools.App(), {1, 2, 3, 4}, world.folder.Path("out/a.jpg"), "80"));
    world.folder.Write("out/a.jpg", TinyPicture());
    WriteKey(world.host, "QxBackImg", "1");
  });
  EXPECT_TRUE(CutThroughBackImg(tools, {1, 2, 3, 4}, out, "80", started));
  world.pump.OnTurn(1, [this] { WriteKey(world.host, "QxBackImg", "1"); });
  EXPECT_FALSE(CutThroughBackImg(tools, {1, 2, 3, 4}, out, "80", started)) << "nothing new";
  world.pump.OnTurn(1, [this] {
    world.folder.Write("out/a.jpg", "garbage");
    WriteKey(world.host, "QxBackImg", "1");
  });
  EXPECT_EQ(CutThroughBackImg(tools, {1, 2, 3, 4}, out, "80", started).GetProblem(), host::Problem::Damaged);
  EXPECT_FALSE(world.folder.Exists("out/a.jpg"));
}

class SmallCallsTest : public ToolsFixture {
 protected:
  std::string Recognised(const std::string& picture) {
    std::string text = "of an earlier picture";
    EXPECT_TRUE(RecogniseText(tools, picture, text));
    return text;
  }
};

TEST_F(SmallCallsTest, TextIsReadWithoutAnEffectiveLimit) {
  WriteKey(world.host, "OCRRes", "of an earlier picture");
  Helper("QxBackOCRer.exe", 3000, [this](const std::string& parameters) {
    EXPECT_EQ(parameters, "Quillon\r\n/in/a.jpg");
    EXPECT_EQ(Key("OCRRes"), "");
    WriteKey(world.host, "OCRRes", "文字");
  });
  const double before = world.clock.Seconds();
  EXPECT_EQ(Recognised("/in/a.jpg"), "文字");
  EXPECT_GT(world.clock.Seconds() - before, 25);
  EXPECT_TRUE(world.processes.Ended().empty());
}

// Before the first scan for a process that may not be seen yet.
TEST_F(SmallCallsTest, TheWaitsBeginWithTheirPauses) {
  WriteApp("QxBackOCRer.dll", "twin");
  double before = world.clock.Seconds();
  Recognised("/in/a.jpg");
  EXPECT_NEAR(world.clock.Seconds() - before, 0.5, 0.05);
  EXPECT_TRUE(AppHas("QxBackOCRer.exe"));
  before = world.clock.Seconds();
  EXPECT_FALSE(CutCircle(tools, "/in/a.jpg", "/out/a.png", {1, 2, 3, 4}));
  EXPECT_NEAR(world.clock.Seconds() - before, 0.1, 0.05);
}

TEST_F(SmallCallsTest, ACircleIsFineWhenItLeavesAFile) {
  const std::string target = world.folder.Write("out/a.png", "old");
  Helper("PicCirleCut.exe", 2, [&](const std::string&) { world.folder.Write("out/b.png", "new"); });
  EXPECT_FALSE(CutCircle(tools, "/in/a.jpg", target, {1, 2, 3, 4}));
  EXPECT_FALSE(world.folder.Exists("out/a.png"));
  EXPECT_EQ(Started(0), "PicCirleCut.exe: " + CircleText("/in/a.jpg", target, {1, 2, 3, 4}));
  Helper("PicCirleCut.exe", 2, [&](const std::string&) { world.folder.Write("out/a.png", TinyPicture()); });
  EXPECT_TRUE(CutCircle(tools, "/in/a.jpg", target, {1, 2, 3, 4}));
  Helper("PicCirleCut.exe", 2, [&](const std::string&) { world.folder.Write("out/a.png", "garbage"); });
  EXPECT_EQ(CutCircle(tools, "/in/a.jpg", target, {1, 2, 3, 4}).GetProblem(), host::Problem::Damaged);
  EXPECT_FALSE(world.folder.Exists("out/a.png"));
}

TEST_F(SmallCallsTest, ACircleOverItsSourceThatWasNotMadeKeepsIt) {
  const std::string source = world.folder.Write("in/a.png", "picture");
  Helper("PicCirleCut.exe", 2);
  EXPECT_FALSE(CutCircle(tools, source, source, {1, 2, 3, 4}));
  EXPECT_EQ(world.folder.Read("in/a.png"), "picture");
}

TEST_F(SmallCallsTest, MediaArgumentsPassThrough) {
  WriteApp("CutMedia.dll", "twin");
  Helper("CutMedia.exe", 2);
  EXPECT_TRUE(RunCutMedia(tools, "-i \"/in/a.gif\" -y \"/out/a.gif\"", {"/in/a.gif", "/out/a.gif"}));
  EXPECT_EQ(Started(0), "CutMedia.exe: -i \"/in/a.gif\" -y \"/out/a.gif\"");
  EXPECT_TRUE(AppHas("CutMedia.exe"));
}

TEST_F(SmallCallsTest, CutMediaSaysWhyItFailed) {
  const auto run = [&] { return RunCutMedia(tools, "-i \"/in/a.gif\" -y \"/out/a.gif\"", {"/in/a.gif"}); };
  WriteKey(world.host, key::kCutMedia, "of an earlier file");
  EXPECT_TRUE(run());
  EXPECT_EQ(ReadKey(world.host, key::kCutMedia), "");
  world.shell.OnStart([&](const auto&) { WriteKey(world.host, key::kCutMedia, "GIF 第 2 帧没有颜色表"); });
  EXPECT_EQ(run().Why(), "GIF 第 2 帧没有颜色表");
  world.shell.OnStart([&](const auto&) { WriteKey(world.host, key::kCutMedia, kFullDisk); });
  EXPECT_TRUE(run().DiskFull());
}

class TiffsMakerTest : public ToolsFixture {
 protected:
  host::Status Run(int pages = 3) {
    return RunTiffsMaker(tools, "/app/OkList.txt", pictures, out, pages,
                         [this](const std::string& text) { shown = text; });
  }
  void Says(int turn, const std::string& text) {
    world.pump.OnTurn(turn, [this, text] { WriteKey(world.host, "MakeTiffProg", text); });
  }

  std::string out = world.folder.Write("out/a.tif", "older");
  std::vector<std::string> pictures{"/in/a.jpg"};
  std::string shown;
};

TEST_F(TiffsMakerTest, ItsTrueIsTheEnd) {
  WriteKey(world.host, "MakeTiffProg", "True");
  std::string cleared = "?";
  Helper("DCTiffsMaker.exe", 0, [&](const std::string& parameters) {
    EXPECT_EQ(parameters, "/app/OkList.txt");
    cleared = Key("MakeTiffProg");
  });
  Says(3, "Tiff压制中，2/3");
  world.pump.OnTurn(6, [this] {
    std::filesystem::remove(out);
    world.folder.Write("out/a.tif", TinyPicture());
  });
  Says(6, "True");
  EXPECT_TRUE(Run());
  EXPECT_EQ(cleared, "");
  EXPECT_EQ(shown, "Tiff压制中，2/3");
  EXPECT_EQ(world.pump.Turns(), 6);
  EXPECT_EQ(world.processes.Ended().size(), 1u);
}

TEST_F(TiffsMakerTest, TwoSecondsAPageAreTheMost) {
  for (const auto& [pages, seconds] : {std::pair{3, 6.0}, {0, 2.0}}) {
    const std::size_t ended = world.processes.Ended().size();
    Helper("DCTiffsMaker.exe", 0);
    const double before = world.clock.Seconds();
    EXPECT_EQ(Run(pages).Why(), "没有生成Tiff");
    EXPECT_NEAR(world.clock.Seconds() - before, seconds, 0.5);
    EXPECT_EQ(world.processes.Ended().size(), ended + 1);
    EXPECT_FALSE(world.folder.Exists("out/a.tif"));
  }
}

TEST_F(TiffsMakerTest, APictureThatWasToBeReplacedStaysIfNothingWasMade) {
  pictures.push_back(out);
  Helper("DCTiffsMaker.exe", 5);
  EXPECT_EQ(Run().Why(), "没有生成Tiff");
  EXPECT_EQ(world.folder.Read("out/a.tif"), "older");
}

TEST_F(TiffsMakerTest, GarbageIsNoTiff) {
  Helper("DCTiffsMaker.exe", 1, [this](const std::string&) { world.folder.Write("out/a.tif", "some garbage"); });
  EXPECT_EQ(Run().Why(), "没有生成Tiff：结果已损坏");
  EXPECT_FALSE(world.folder.Exists("out/a.tif"));
}

TEST_F(TiffsMakerTest, WhatItFailsWithIsReported) {
  Helper("DCTiffsMaker.exe", 5, [this](const std::string&) { WriteKey(world.host, "MakeTiffProg", "没有图片"); });
  EXPECT_EQ(Run().Why(), "没有图片");
  Helper("DCTiffsMaker.exe", 5, [this](const std::string&) { WriteKey(world.host, "MakeTiffProg", "FullDisk"); });
  EXPECT_TRUE(Run().DiskFull());
  Helper("DCTiffsMaker.exe", 5,
         [this](const std::string&) { WriteKey(world.host, "MakeTiffProg", "Tiff压制中，1/3"); });
  EXPECT_EQ(Run().Why(), "没有生成Tiff");
  world.shell.SetResult("DCTiffsMaker", host::kStartMissing);
  EXPECT_EQ(Run().Why(), "无法启动 DCTiffsMaker");
}

}  // namespace
}  // namespace quillon::tools
