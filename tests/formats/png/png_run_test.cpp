// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Runs of cut mode 2 and of its tool that meet a full disk, an update, the manual frame or a user who stops.
#include <filesystem>

#include "formats/manual_answer.h"
#include "formats/png/png_fixture.h"

namespace quillon::formats {
namespace {

using base::Size;
using host::Reply;
using host::testing::DiskCall;
using host::testing::Fault;
using job::Slope;

constexpr const char* kFull = "盘空间不足，请释放空间后重试保存！";

// The menu, with and without ChOver, and the tool.
enum class Way { Menu, Over, Tool };

class PngFullDisk : public PngTest, public ::testing::WithParamInterface<Way> {
 protected:
  void SetUp() override {
    PngTest::SetUp();
    Put("ChOver", GetParam() == Way::Over ? "1" : "0");
    FixedSize("59", "19");
    tool.Show();
    png_ = Make("a.png");
    before_ = world.folder.Read("in/a.png");
    List({png_, Make("b.png")});
  }
  void FillDiskOfResult(Fault::Length length) {
    const std::string folder = GetParam() == Way::Over ? world.folder.Path("in") : outFolder;
    world.faults.Set({.call = DiskCall::Write, .error = ENOSPC, .length = length, .pathHolds = folder});
  }
  void Start() { Click(GetParam() == Way::Tool ? "FPngCut.CmdDo" : "MenuPngCut"); }

  std::string png_;
  std::string before_;
};

TEST_P(PngFullDisk, IsAskedAboutUntilTheUserGivesUp) {
  FillDiskOfResult(Fault::Length::ForEver);
  world.boxes.Answer(kFull, Reply::Retry, 1);
  world.boxes.Answer(kFull, Reply::Cancel);
  Start();
  EXPECT_EQ(world.boxes.Count(kFull), 2);
  EXPECT_TRUE(Totals().stopped);
  EXPECT_EQ(Totals().written, 0u);
  EXPECT_TRUE(world.folder.Read("in/a.png") == before_);
  EXPECT_TRUE(OutNames().empty());
  EXPECT_TRUE(tool.CmdDo.Enabled());
}

TEST_P(PngFullDisk, IsTriedAgain) {
  FillDiskOfResult(Fault::Length::Once);
  world.boxes.Answer(kFull, Reply::Retry);
  Start();
  EXPECT_EQ(world.boxes.Count(kFull), 1);
  EXPECT_FALSE(Totals().stopped);
  EXPECT_EQ(SizeOf(GetParam() == Way::Over ? png_ : Out("a.png")), (Size{59, 19})) << Whys();
}

INSTANTIATE_TEST_SUITE_P(Ways, PngFullDisk, ::testing::Values(Way::Menu, Way::Over, Way::Tool));

TEST_F(PngTest, AnUpdateMustBeInstalledFirst) {
  flags.UpdatePending = true;
  Run({Make("a.png")});
  EXPECT_EQ(world.boxes.Count("请先更新再行使用！"), 1);
  EXPECT_TRUE(OutNames().empty());
  EXPECT_FALSE(Enabled("MenuPngCut"));
}

TEST_F(PngTest, TheUserPlacesTheFrame) {
  ManualAnswer frame(program);
  flags.ManualCutMode = true;
  const std::string png = Make("a.png");
  Run({png});
  EXPECT_EQ(frame.asked, std::vector<std::string>{png});
  EXPECT_EQ(frame.whyNotTurned, "透明Png裁剪只裁剪，不能旋转或扩边");
  EXPECT_EQ(frame.rests, 1);
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{29, 19})) << Whys();
  EXPECT_EQ(Read(Out("a.png")).At(0, 0), Slope(40, 20));
}

TEST_F(PngTest, APictureThatIsNotCutIsCopiedOrStays) {
  ManualAnswer frame(program);
  frame.skip = true;
  flags.ManualCutMode = true;
  const std::string png = Make("a.png");
  const std::string before = world.folder.Read("in/a.png");
  Run({png});
  EXPECT_TRUE(world.folder.Read("out/a.png") == before);
  EXPECT_EQ(Totals().written, 1u) << Whys();
  std::filesystem::remove(Out("a.png"));
  Put("ChOver", "1");
  Click("MenuPngCut");
  EXPECT_EQ(Why(1), "按“本图不裁剪”保留原文件");
  EXPECT_TRUE(world.folder.Read("in/a.png") == before);
  EXPECT_TRUE(OutNames().empty());
}

TEST_F(PngTest, TheToolGoesOnIfTheUserDoesNotAgreeToStop) {
  tool.Show();
  FixedSize("30", "20");
  Put("FPngCut.ChBat", "1");
  List({Make("a.png"), Make("b.png")});
  world.boxes.Answer("终止执行?", Reply::No);
  recorder.onFileDone = [&](const job::FileResult& file) {
    if (file.row == 1) tool.CmdStop.UserClick();
  };
  Click("FPngCut.CmdDo");
  EXPECT_EQ(world.boxes.Count("终止执行?"), 1);
  EXPECT_EQ(Totals().written, 2u) << Whys();
}

TEST_F(PngTest, TheToolStopsWhileItIsPaused) {
  tool.Show();
  FixedSize("30", "20");
  Put("FPngCut.ChBat", "1");
  List({Make("a.png"), Make("b.png")});
  world.boxes.Answer("终止执行?", Reply::Yes);
  recorder.onFileDone = [&](const job::FileResult& file) {
    if (file.row == 1) tool.CmdPause.UserClick();
  };
  int turns = 0;
  world.pump.EveryTurn([&] {
    if (tool.Paused() && ++turns == 5) tool.CmdStop.UserClick();
  });
  Click("FPngCut.CmdDo");
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_TRUE(Totals().stopped);
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.png"});
  EXPECT_EQ(tool.CmdPause.Caption(), "暂停");
  EXPECT_FALSE(tool.CmdStop.Enabled());
}

}  // namespace
}  // namespace quillon::formats
