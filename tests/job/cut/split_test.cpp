// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Splitting: one cut becomes several files.
#include "job/cut_fixture.h"
#include "job/settings/cut_settings.h"

namespace quillon::job {
namespace {

using Names = std::vector<std::string>;

class SplitTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    form.CmbOutType.SetText("png");
    Split(2, 2);
  }
  void Split(int columns, int rows) {
    Option("ChSplit", "1");
    Put("FBaseOpt.TSmalS(4)", std::to_string(columns));
    Put("FBaseOpt.TSmalS(5)", std::to_string(rows));
  }
  // The part of the slope that begins at left, top.
  static Picture Part(int left, int top, int width, int height) {
    return Painted(width, height, [&](int x, int y) { return Slope(x + left, y + top); });
  }
};

TEST_F(SplitTest, PiecesAreNumberedRowByRow) {
  Split(3, 2);
  Cut({Make("a.png", 60, 40)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(OutNames(), (Names{"a_01.png", "a_02.png", "a_03.png", "a_04.png", "a_05.png", "a_06.png"}));
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 3; ++column) {
      const std::string name = "a_0" + std::to_string(row * 3 + column + 1) + ".png";
      EXPECT_EQ(Difference(Read(Out(name)), Part(column * 20, row * 20, 20, 20)), 0) << name;
    }
  }
  EXPECT_EQ(recorder.done[0].output, Out("a_01.png"));
  EXPECT_EQ(recorder.done[0].more,
            (Names{Out("a_02.png"), Out("a_03.png"), Out("a_04.png"), Out("a_05.png"), Out("a_06.png")}));
}

TEST_F(SplitTest, SidesThatDoNotDivideDifferByAPixel) {
  Split(3, 2);
  Cut({Make("a.png", 10, 5)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const std::pair<const char*, Picture> pieces[] = {{"a_01.png", Part(0, 0, 3, 2)}, {"a_02.png", Part(3, 0, 3, 2)},
                                                    {"a_03.png", Part(6, 0, 4, 2)}, {"a_04.png", Part(0, 2, 3, 3)},
                                                    {"a_05.png", Part(3, 2, 3, 3)}, {"a_06.png", Part(6, 2, 4, 3)}};
  for (const auto& [name, piece] : pieces) EXPECT_EQ(Difference(Read(Out(name)), piece), 0) << name;
}

TEST_F(SplitTest, ItIsTheCutThatIsSplit) {
  Split(2, 1);
  Margins(10, 20, 30, 40);
  Cut({Make("a.png", 100, 50)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Difference(Read(Out("a_01.png")), Part(10, 10, 30, 20)), 0);
  EXPECT_EQ(Difference(Read(Out("a_02.png")), Part(40, 10, 30, 20)), 0);
}

TEST_F(SplitTest, ManyPiecesHaveAsManyDigitsAsTheirCount) {
  Split(50, 2);
  Cut({Make("a.png", 50, 2)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Names names = OutNames();
  ASSERT_EQ(names.size(), 100u);
  EXPECT_EQ(names.front(), "a_001.png");
  EXPECT_EQ(names.back(), "a_100.png");
}

TEST_F(SplitTest, OneByOneIsNoSplit) {
  Split(1, 1);
  Cut({Make("a.png")});
  EXPECT_EQ(OutNames(), Names{"a.png"});
}

TEST_F(SplitTest, MorePiecesThanPixelsAreRefused) {
  Split(2, 9);
  Cut({Make("a.png", 8, 8)});
  EXPECT_EQ(Why(1), "裁剪后的图片为 8x8 像素，分不成 2 列 9 行");
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Totals().none, 1u);
}

TEST_F(SplitTest, EffectsRotationAndZoomComeFirst) {
  Split(1, 2);
  Put("FBaseOpt.ChInvert", "1");
  Put("FBaseOpt.CmbRotate", "1");
  Put("FBaseOpt.CmbZoom", "40,80");
  Put("FBaseOpt.ChCutAndZoom", "1");
  Cut({Make("a.png", Painted(80, 40, [](int, int) { return Pixel{1, 20, 255}; }), 254)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  for (const char* name : {"a_01.png", "a_02.png"}) {
    const Picture piece = Read(Out(name));
    EXPECT_EQ(piece.width, 40) << name;
    EXPECT_EQ(piece.height, 40) << name;
    EXPECT_EQ(piece.At(20, 20), (Pixel{254, 235, 0})) << name;
  }
}

TEST_F(SplitTest, EachPieceHasItsBorderAndResolution) {
  Put("FBaseOpt.CmbDPI", "254");
  Put("FBaseOpt.ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "1");
  Cut({Make("a.png", Painted(20, 20, Slope), 254)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  for (const char* name : {"a_01.png", "a_02.png", "a_03.png", "a_04.png"}) {
    EXPECT_EQ(SizeOf(Out(name)), (base::Size{20, 10})) << name;
    EXPECT_EQ(Read(Out(name)).At(0, 0), kWhitePixel) << name;
    EXPECT_EQ(DpiOf(Out(name)), 254) << name;
  }
  EXPECT_EQ(Read(Out("a_02.png")).At(10, 0), Slope(10, 0));
}

TEST_F(SplitTest, KeepsFoldersAndExtensionCase) {
  Put("ChKeepDir", "1");
  Put("FBaseOpt.CmbExtCase", "1");
  Cut({Make("deep/a.png")});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(recorder.done[0].output, outFolder + In("deep") + "/a_01.PNG");
}

TEST_F(SplitTest, OverwritingPutsThePiecesBesideTheSource) {
  Put("ChOver", "1");
  const std::string path = Make("a.png");
  const std::string before = world.folder.Read("in/a.png");
  Cut({path});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(world.folder.Names("in"), (Names{"a.png", "a_01.png", "a_02.png", "a_03.png", "a_04.png"}));
  EXPECT_EQ(world.folder.Read("in/a.png"), before);
}

TEST_F(SplitTest, APieceNeverReplacesAPictureBesideTheSource) {
  Put("ChOver", "1");
  const std::string path = Make("a.png");
  const std::string beside = world.folder.Write("in/a_03.png", "mine");
  Cut({path});
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Why(1), "会覆盖另一个文件 " + beside + "，已跳过");
  EXPECT_EQ(world.folder.Names("in"), (Names{"a.png", "a_03.png"}));
  EXPECT_EQ(world.folder.Read("in/a_03.png"), "mine");
}

TEST_F(SplitTest, APieceThatFailsRemovesTheOthersToo) {
  List({Make("a.png"), Make("b.png")});
  world.faults.Set({.call = host::testing::DiskCall::OpenNew,
                    .error = EIO,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "out/.a_03.png"});
  Cut();
  EXPECT_GT(world.faults.Fired(), 0);
  EXPECT_EQ(OutNames(), (Names{"b_01.png", "b_02.png", "b_03.png", "b_04.png"}));
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_FALSE(Why(1).empty());
}

TEST_F(SplitTest, AFullDiskThatIsGivenUpLeavesNoPiece) {
  List({Make("a.png"), Make("b.png")});
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "out/.a_02.png"});
  world.boxes.Answer("盘空间不足", host::Reply::Cancel);
  Cut();
  EXPECT_GT(world.faults.Fired(), 0);
  EXPECT_TRUE(OutNames().empty());
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(SplitTest, APieceThatDoesNotReachTheDiskRevokesTheResult) {
  List({Make("a.png")});
  world.faults.Set({.call = host::testing::DiskCall::Sync, .error = EIO, .pathHolds = "a_02.png"});
  Cut();
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(recorder.lost.size(), 1u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Totals().written, 0u);
}

TEST_F(SplitTest, PiecesOfOneNameCountOnce) {
  Cut({Make("one/a.png"), Make("two/a.png")});
  EXPECT_EQ(OutNames().size(), 4u);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(recorder.lost.size(), 1u);
}

TEST_F(SplitTest, TheRowShowsTheSizeOfAllPieces) {
  Cut({Make("a.png", 40, 40)});
  std::uint64_t bytes = 0;
  for (const std::string& name : OutNames()) bytes += world.folder.Read("out/" + name).size();
  EXPECT_EQ(program.files.Row(0).newBytes, bytes);
}

TEST_F(SplitTest, JpegsKeepTheirQualityAndType) {
  form.CmbOutType.SetText("jpg");
  Cut({Make("a.jpg", 64, 64)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_LE(Difference(Read(Out("a_04.jpg")), Part(32, 32, 32, 32)), 12);
}

TEST_F(SplitTest, OptionsThatWereNeverLoadedDoNotSplit) {
  Program other(world.host);
  other.fBaseOpt.ChSplit.Set(true);
  EXPECT_FALSE(ReadCutSettings(other).split);
  other.fBaseOpt.Load();
  EXPECT_TRUE(ReadCutSettings(other).split);
  EXPECT_EQ(ReadCutSettings(other).columns, 2);
  EXPECT_EQ(ReadCutSettings(other).rows, 2);
}

}  // namespace
}  // namespace quillon::job
