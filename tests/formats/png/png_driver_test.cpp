// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The run of cut mode 2 and the tool window of that mode.
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "formats/png/png_fixture.h"
#include "job/several_pages.h"

namespace quillon::formats {
namespace {

using base::Size;
using job::Slope;

std::uint32_t Checksum(std::string_view bytes) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = sum & 1 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
  }
  return ~sum;
}

// The png marked as an animation of count frames, with a valid checksum.
std::string WithFrames(const std::string& png, int count) {
  constexpr std::size_t kMark = 8 + 25 + 4;  // the type of the chunk, after signature, IHDR and length
  constexpr std::size_t kLength = 4 + 8;     // of the type and the data
  std::string film = job::Animated(png, count);
  return film.replace(kMark + kLength, 4, imaging::testing::Big(Checksum(film.substr(kMark, kLength)), 4));
}

TEST_F(PngTest, CutsIntoTheOutputFolderWithAlpha) {
  const std::string png = Make("a.png");
  Run({png});
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{59, 19})) << Whys();  // odd sides stay
  EXPECT_EQ(Read(Out("a.png")).At(0, 0), Slope(10, 20));
  EXPECT_TRUE(IsRgba("out/a.png"));
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(world.boxes.Count("处理完毕！\r\n要打开输出目录吗？"), 1);
}

TEST_F(PngTest, ReplacesTheSourceByAPng) {
  const std::string png = Make("a.png");
  Put("ChOver", "1");
  Run({png});
  EXPECT_EQ(SizeOf(png), (Size{59, 19})) << Whys();
  EXPECT_TRUE(IsRgba("in/a.png"));
  EXPECT_TRUE(OutNames().empty());
}

TEST_F(PngTest, APictureOfAnotherKindIsNotReplacedByAPng) {
  const std::string png = Make("a.png");
  List({png});
  Make("b.jpg");
  const std::string jpeg = world.folder.Read("in/b.jpg");
  world.folder.Write("in/a.png", jpeg);
  Put("ChOver", "1");
  Click("MenuPngCut");
  EXPECT_EQ(Why(1), "文件内容不是 png，不能覆盖；请输出到别的文件夹");
  EXPECT_TRUE(world.folder.Read("in/a.png") == jpeg);
  Put("ChOver", "0");
  Click("MenuPngCut");
  EXPECT_TRUE(IsRgba("out/a.png")) << Whys();
}

TEST_F(PngTest, AnOutputInThePlaceOfItsSourceLeavesABackup) {
  const std::string png = Make("a.png");
  const std::string before = world.folder.Read("in/a.png");
  Put("LOutDir", world.folder.Path("in"));
  Run({png});
  EXPECT_EQ(SizeOf(png), (Size{59, 19})) << Whys();
  EXPECT_TRUE(world.folder.Read("in/a.png.bak") == before);
}

TEST_F(PngTest, AnAnimationIsNeverReplacedByItsFirstFrame) {
  Make("a.png");
  const std::string bytes = WithFrames(world.folder.Read("in/a.png"), 5);
  const std::string png = world.folder.Write("in/a.png", bytes);
  Run({png});
  EXPECT_EQ(Why(1), "源文件有 5 帧，只取第一帧");
  EXPECT_EQ(Totals().written, 1u);
  Put("ChOver", "1");
  Click("MenuPngCut");
  EXPECT_TRUE(world.folder.Read("in/a.png") == bytes);
  EXPECT_NE(Why(1).find("未覆盖"), std::string::npos) << Why(1);
}

TEST_F(PngTest, ADamagedFileIsNamedAndTheRunGoesOn) {
  const std::string first = Make("a.png");
  const std::string second = Make("b.png");
  const std::string broken = world.folder.Read("in/a.png").substr(0, 200);
  List({first, second});
  world.folder.Write("in/a.png", broken);
  Put("ChOver", "1");
  Click("MenuPngCut");
  EXPECT_FALSE(Why(1).empty());
  EXPECT_TRUE(world.folder.Read("in/a.png") == broken);
  EXPECT_EQ(SizeOf(second), (Size{59, 19}));
}

TEST_F(PngTest, ARectangleWithoutAreaFailsWithItsNumbers) {
  PixelMargins(60, 0, 60, 0);
  Run({Make("a.png")});
  EXPECT_EQ(Why(1), "裁剪框的宽或高小于 1 像素（-20x80），请检查裁剪参数");
}

TEST_F(PngTest, AFolderIsCutWithoutAList) {
  Make("a.png");
  Make("sub/b.png");
  Make("c.jpg");
  Put("LInDir", world.folder.Path("in"));
  Put("ChSubFold", "1");
  Put("ChBig", "1");
  Click("MenuPngCut");
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.png", "b.png"})) << Whys();
}

TEST_F(PngTest, TheNextFilesAreCutAhead) {
  const std::string second = Make("b.png");
  bool ahead = false;
  recorder.onFileDone = [&](const job::FileResult& file) {
    if (file.row != 1) return;
    imaging::PngCutRequest request{.source = second, .destination = Out("b.png")};
    request.drawing.rect = {10, 20, 59, 19};
    std::optional<imaging::Services::PrefetchedFiles> files;
    EXPECT_TRUE(program.images.PopPrefetched({{request}}, files));
    ahead = files.has_value();
  };
  Run({Make("a.png"), second, Make("c.png")});
  EXPECT_TRUE(ahead);
  EXPECT_EQ(Totals().written, 3u) << Whys();
  EXPECT_EQ(SizeOf(Out("c.png")), (Size{59, 19}));
}

// In large-capacity mode the window can be used, and the journal describes the run as it was begun.
TEST_F(PngTest, OptionsThatChangeDuringARunCountForTheNextOne) {
  const std::string first = Make("a.png");
  const std::string second = Make("b.png");
  const std::string before = world.folder.Read("in/b.png");
  Put("LInDir", world.folder.Path("in"));
  Put("ChBig", "1");
  recorder.onFileDone = [&](const job::FileResult&) {
    Put("ChOver", "1");
    PixelMargins(50, 0, 0, 0);
  };
  Click("MenuPngCut");
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{59, 19}));
  EXPECT_EQ(SizeOf(Out("b.png")), (Size{59, 19}));
  EXPECT_TRUE(world.folder.Read("in/b.png") == before);
}

// --- The tool window

TEST_F(PngTest, TheToolCutsAheadToo) {
  tool.Show();
  FixedSize("30", "20");
  Put("FPngCut.ChBat", "1");
  const std::string second = Make("b.png");
  bool ahead = false;
  recorder.onFileDone = [&](const job::FileResult& file) {
    if (file.row != 1) return;
    imaging::PngCutRequest request{.source = second, .destination = Out("b.png")};
    request.drawing.rect = {0, 0, 30, 20};
    std::optional<imaging::Services::PrefetchedFiles> files;
    EXPECT_TRUE(program.images.PopPrefetched({{request}}, files));
    ahead = files.has_value();
  };
  List({Make("a.png"), second});
  Click("FPngCut.CmdDo");
  EXPECT_TRUE(ahead);
  EXPECT_EQ(Totals().written, 2u) << Whys();
}

TEST_F(PngTest, TheToolPutsItsHelperIntoTheProgramFolder) {
  tool.Show();
  FixedSize("30", "20");
  WriteApp("DrawTranspText.dll", "twin");
  List({Make("a.png")});
  Click("FPngCut.CmdDo");
  EXPECT_TRUE(AppHas("DrawTranspText.exe"));
  EXPECT_TRUE(world.shell.Starts().empty());
}

// It never overwrites a picture by choice, so that links to folders are no danger.
TEST_F(PngTest, TheToolHandlesPicturesInLinkedFolders) {
  tool.Show();
  FixedSize("30", "20");
  Make("real/a.png");
  std::filesystem::create_directory(world.folder.Path("listed"));
  std::filesystem::create_directory_symlink(world.folder.Path("in/real"), world.folder.Path("listed/link"));
  Put("ChSubFold", "1");
  program.Intake().Admit({world.folder.Path("listed")});
  ASSERT_EQ(program.files.RowCount(), 1u) << Whys();
  Put("ChOver", "1");
  Click("FPngCut.CmdDo");
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{30, 20})) << Whys();
}

TEST_F(PngTest, TheToolReplacesAnOlderResult) {
  tool.Show();
  FixedSize("30", "20");
  List({Make("a.png")});
  world.folder.Write("out/a.png", "older");
  Click("FPngCut.CmdDo");
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{30, 20})) << Whys();
}

TEST_F(PngTest, TheToolLeavesABackupOfASourceInTheOutputFolder) {
  tool.Show();
  FixedSize("30", "20");
  const std::string png = Make("a.png");
  const std::string before = world.folder.Read("in/a.png");
  Put("LOutDir", world.folder.Path("in"));
  List({png});
  for (const char* over : {"1", "0"}) {
    Put("ChOver", over);
    world.folder.Write("in/a.png", before);
    std::filesystem::remove(world.folder.Path("in/a.png.bak"));
    Click("FPngCut.CmdDo");
    EXPECT_EQ(SizeOf(png), (Size{30, 20})) << Whys();
    EXPECT_TRUE(world.folder.Read("in/a.png.bak") == before);
  }
}

TEST_F(PngTest, OperationsThatAreNotThereFallBack) {
  tool.Show();
  for (const char* entry : {"2", "3", "4"}) {
    Put("FPngCut.CmbOp", entry);
    EXPECT_EQ(Value("FPngCut.CmbOp"), "0") << entry;
  }
  EXPECT_EQ(world.boxes.Beeps(), 3);
  EXPECT_FALSE(tool.Frame1.Visible());
  Put("FPngCut.CmbOp", "5");
  EXPECT_TRUE(tool.Frame1.Visible());
  EXPECT_EQ(Value("FPngCut.TDu"), "20");
  Put("FPngCut.CmbOp", "1");
  EXPECT_FALSE(tool.Frame1.Visible());
}

TEST_F(PngTest, DegreesAreLimitedWhenTheyAreEntered) {
  tool.Show();
  Put("FPngCut.CmbOp", "5");
  for (const auto& [typed, kept] : {std::pair{"181", "180"}, {"-181", "-180"}, {"180", "180"}, {"-12.5", "-12.5"}}) {
    Put("FPngCut.TDu", typed);
    EXPECT_EQ(Value("FPngCut.TDu"), kept) << typed;
  }
}

TEST_F(PngTest, TheToolNeedsAList) {
  tool.Show();
  EXPECT_EQ(tool.LSt.Value(), "状态：未就绪！");
  Click("FPngCut.CmdDo");
  EXPECT_EQ(world.boxes.Count("请先加载文件列表方能执行！"), 1);
  List({Make("a.png")});
  flags.LargeCapacityMode = true;
  Click("FPngCut.CmdDo");
  EXPECT_EQ(world.boxes.Count("本工具只处理文件列表，请先去掉“超大容量”。"), 1);
  EXPECT_TRUE(OutNames().empty());
}

TEST_F(PngTest, TheToolMakesTheOutputFolder) {
  tool.Show();
  FixedSize("30", "20");
  Put("LOutDir", world.folder.Path("new/deep"));
  List({Make("a.png")});
  Click("FPngCut.CmdDo");
  EXPECT_EQ(SizeOf(world.folder.Path("new/deep/a.png")), (Size{30, 20})) << Whys();
}

TEST_F(PngTest, TheToolHandlesTheFirstRowOrAll) {
  tool.Show();
  FixedSize("30", "20");
  List({Make("a.png"), Make("b.png")});
  Click("FPngCut.CmdDo");
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.png"}) << Whys();
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{30, 20}));
  EXPECT_EQ(Read(Out("a.png")).At(3, 4), Slope(3, 4));
  EXPECT_EQ(tool.LSt.Value(), "状态： 处理完毕！已处理1/1");
  Put("FPngCut.ChBat", "1");
  Click("FPngCut.CmdDo");
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.png", "b.png"}));
  EXPECT_EQ(tool.LSt.Value(), "状态： 处理完毕！已处理2/2");
  EXPECT_EQ(world.boxes.Count("处理完毕！\r\n要打开输出目录吗？"), 2);
}

TEST_F(PngTest, TheToolScalesAndRotates) {
  tool.Show();
  FixedSize("50", "40");
  List({Make("a.png")});
  Put("FPngCut.CmbOp", "1");
  Click("FPngCut.CmdDo");
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{50, 40})) << Whys();
  Put("FPngCut.CmbOp", "5");
  Put("FPngCut.TDu", "90");
  Click("FPngCut.CmdDo");
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{80, 100})) << Whys();
  EXPECT_TRUE(IsRgba("out/a.png"));
}

TEST_F(PngTest, TheToolPausesBetweenFilesAndStaysOpen) {
  tool.Show();
  FixedSize("30", "20");
  Put("FPngCut.ChBat", "1");
  List({Make("a.png"), Make("b.png")});
  std::vector<std::string> seen;
  world.pump.EveryTurn([&] {
    if (!tool.Running()) return;
    if (seen.empty()) {
      tool.CmdPause.UserClick();
      seen.push_back(tool.CmdPause.Caption());
      tool.Close();
      EXPECT_TRUE(tool.Visible());
    } else if (seen.size() < 4) {
      seen.push_back(tool.Paused() ? "paused" : "on");
    } else if (tool.Paused()) {
      tool.CmdPause.UserClick();
      EXPECT_EQ(tool.CmdPause.Caption(), "暂停");
    }
  });
  Click("FPngCut.CmdDo");
  EXPECT_EQ(seen, (std::vector<std::string>{"继续", "paused", "paused", "paused"}));
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_EQ(Totals().written, 2u) << Whys();
  tool.Close();
  EXPECT_FALSE(tool.Visible());
}

TEST_F(PngTest, TheToolStopsWhenTheUserAgrees) {
  tool.Show();
  Put("FPngCut.ChBat", "1");
  List({Make("a.png"), Make("b.png")});
  world.boxes.Answer("终止执行?", host::Reply::Yes);
  recorder.onFileDone = [&](const job::FileResult&) {
    if (tool.CmdStop.Enabled() && !flags.StopRequested) tool.CmdStop.UserClick();
  };
  Click("FPngCut.CmdDo");
  EXPECT_EQ(world.boxes.Count("终止执行?"), 1);
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_TRUE(tool.CmdDo.Enabled());
  EXPECT_FALSE(tool.CmdStop.Enabled());
}

}  // namespace
}  // namespace quillon::formats
