// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The border after the cut, and the border alone.
#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

constexpr Pixel kBlue{0, 0, 255};

class CutBorderTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    form.CmbOutType.SetText("png");
    options.Load();
    options.ChAddBoard.Set(true);
    options.PBoardColor.Set({0xFF0000});
    flags.OutDpi = 254;  // ten pixels a millimetre
  }
  // In millimetres: left, top, right, bottom.
  void Board(int left, int top, int right, int bottom) {
    const int values[] = {left, top, right, bottom};
    for (std::size_t i = 0; i < 4; ++i) options.TBoard[i].SetText(std::to_string(values[i]));
  }
  // Without handlers, so that only what is under test is set.
  void FixedCutOf(int width, int height) {
    Put("ChCutA", "1");
    form.CmbKeepCut.SetHandler({});
    form.ChFixCut.SetHandler({});
    form.ChFixCut.Set(true);
    flags.FixW = width;
    flags.FixH = height;
  }
  // The picture on a canvas of colour.
  static Picture Framed(base::Size total, int left, int top, const Picture& inner, Pixel colour = kBlue) {
    return Painted(total.width, total.height, [&](int x, int y) {
      const bool inside = x >= left && y >= top && x < left + inner.width && y < top + inner.height;
      return inside ? inner.At(x - left, y - top) : colour;
    });
  }
};

TEST_F(CutBorderTest, MillimetresOfTheSource) {
  Board(1, 2, 3, 4);
  const Picture picture = Painted(60, 40, Slope);
  Cut({Make("a.png", picture, 254)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Difference(Read(Out("a.png")), Framed({60 + 40, 40 + 60}, 10, 20, picture)), 0);
  EXPECT_EQ(DpiOf(Out("a.png")), 254);
}

// 5 mm are 14 pixels at 72 dpi, and 14 * 254 / 72 is 49.4.
TEST_F(CutBorderTest, MillimetresAreScaledToTheOutput) {
  Board(5, 0, 0, 0);
  Cut({Make("a.png", Painted(60, 40, Slope), 72)});
  EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{60 + 49, 40}));
}

// 5 mm are 19 pixels at the 96 dpi of the screen, and 19 * 254 / 96 is 50.3.
TEST_F(CutBorderTest, ASourceWithoutResolutionCountsAtThatOfTheScreen) {
  Board(5, 0, 0, 0);
  Cut({Make("a.png", Painted(60, 40, Slope), 0)});
  EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{60 + 50, 40}));
}

TEST_F(CutBorderTest, TheCutComesFirst) {
  Board(1, 1, 1, 1);
  Margins(50, 0, 0, 0);
  Cut({Make("a.png", Painted(60, 40, Slope), 254)});
  const Picture inner = Painted(30, 40, [](int x, int y) { return Slope(x + 30, y); });
  EXPECT_EQ(Difference(Read(Out("a.png")), Framed({50, 60}, 10, 10, inner)), 0);
}

TEST_F(CutBorderTest, AFixedSizeContainsTheFittedPicture) {
  Board(1, 2, 1, 2);
  FixedCutOf(30, 30);
  Cut({Make("a.png", Painted(90, 50, [](int, int) { return Pixel{0, 255, 0}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  // The cut leaves 60 x 20, which fits 30 x 30 as 30 x 10.
  const Picture inner = Painted(30, 10, [](int, int) { return Pixel{0, 255, 0}; });
  EXPECT_EQ(Difference(Read(Out("a.png")), Framed({50, 70}, 10, 30, inner)), 0);
}

TEST_F(CutBorderTest, PaddingToASizeIsWhite) {
  Board(1, 0, 0, 0);
  form.ChAddToSize.Set(true);
  Cut({Make("a.png", Painted(20, 20, Slope), 254)});
  EXPECT_EQ(options.PBoardColor.Colour(), base::kWhite);
  EXPECT_EQ(Read(Out("a.png")).At(0, 0), kWhitePixel);
}

TEST_F(CutBorderTest, FrameOnlyCutsNothing) {
  Board(1, 2, 3, 4);
  Margins(50, 50, 0, 0);
  options.ChFrmOnly.Set(true);
  world.boxes.Forget();
  const Picture picture = Painted(60, 40, Slope);
  Cut({Make("a.png", picture, 254)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Difference(Read(Out("a.png")), Framed({100, 100}, 10, 20, picture)), 0);
}

TEST_F(CutBorderTest, FrameOnlyWithoutABorderIsReported) {
  options.ChFrmOnly.Set(true);
  options.ChAddBoard.SetHandler({});
  options.ChAddBoard.Set(false);
  Cut({Make("a.png")});
  EXPECT_EQ(Why(1), "仅边框模式没有启用“裁剪后加边框”，没有输出");
  EXPECT_TRUE(OutNames().empty());
}

TEST_F(CutBorderTest, FrameOnlyPadsToASize) {
  Board(5, 5, 5, 5);
  options.ChFrmOnly.Set(true);
  form.ChAddToSize.Set(true);
  flags.FixW = 50;
  flags.FixH = 40;
  Cut({Make("a.png", Painted(20, 40, [](int, int) { return Pixel{0, 0, 0}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture inner = Painted(20, 40, [](int, int) { return Pixel{0, 0, 0}; });
  EXPECT_EQ(Difference(Read(Out("a.png")), Framed({50, 40}, 15, 0, inner, kWhitePixel)), 0);
}

TEST_F(CutBorderTest, PaddingBeyondEveryLimitIsReported) {
  Board(5, 5, 5, 5);
  options.ChFrmOnly.Set(true);
  form.ChAddToSize.Set(true);
  flags.FixW = 600000;
  flags.FixH = 40;
  Cut({Make("a.png")});
  EXPECT_EQ(Why(1), "加上边框后的画布为 600000x40 像素，超过上限：图片尺寸超出允许的范围");
}

struct ExtendCase {
  int preset;
  bool right;
  base::Size total;
};

TEST_F(CutBorderTest, TurnedPicturesOfPresetsThreeAndFour) {
  FixedCutOf(40, 20);
  options.CmbRotate.Select(1);
  Board(1, 2, 3, 4);
  const ExtendCase cases[] = {{3, true, {20 + 40, 40 + 60}},
                              {3, false, {20 + 60, 40 + 40}},
                              {4, true, {60, 100}},
                              {4, false, {80, 80}},
                              {7, true, {40 + 40, 20 + 60}}};
  for (const ExtendCase& c : cases) {
    form.CmbKeepCut.Select(c.preset);
    form.ChMode1.Set(c.right);
    program.files.Clear();
    Cut({Make("a.png", Painted(100, 90, Slope), 254)});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(SizeOf(Out("a.png")), c.total) << c.preset << " " << c.right;
  }
}

// The turned 90 x 100 is cut to 50 x 80, which fits 20 x 40 as 20 x 32 and 40 x 20 as 12 x 20.
TEST_F(CutBorderTest, ATurnedPictureHasItsPlaceInItsBorder) {
  FixedCutOf(40, 20);
  options.CmbRotate.Select(1);
  Board(1, 2, 3, 4);
  const Paint green = [](int, int) { return Pixel{0, 255, 0}; };
  struct Case {
    int preset;
    bool right;
    Picture framed;
  };
  const Case cases[] = {{3, true, Framed({60, 100}, 10, 24, Painted(20, 32, green))},
                        {4, false, Framed({80, 80}, 20, 14, Painted(20, 32, green))},
                        {7, true, Framed({80, 80}, 24, 20, Painted(12, 20, green))}};
  for (const Case& c : cases) {
    form.CmbKeepCut.Select(c.preset);
    form.ChMode1.Set(c.right);
    program.files.Clear();
    Cut({Make("a.png", Painted(100, 90, green), 254)});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(Difference(Read(Out("a.png")), c.framed), 0) << c.preset;
  }
}

// What was turned back lies upright, with and without the option that turns a border.
TEST_F(CutBorderTest, ARestoredPictureLiesUpright) {
  FixedCutOf(40, 20);
  options.CmbRotate.Select(1);
  options.ChRecover.Set(true);
  Board(1, 2, 3, 5);
  for (const int preset : {3, 4}) {
    form.CmbKeepCut.Select(preset);
    program.files.Clear();
    Cut({Make("a.png", Painted(100, 90, Slope), 254)});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{40 + 40, 20 + 70})) << preset;
  }
}

// 5 mm are 14 pixels at the 72 dpi of the source, and 14 * 254 / 72 is 49.4; the picture itself stays.
TEST_F(CutBorderTest, FrameOnlyScalesItsBorderToTheOutput) {
  Board(5, 0, 0, 0);
  options.ChFrmOnly.Set(true);
  const Picture picture = Painted(60, 40, Slope);
  Cut({Make("a.png", picture, 72)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Difference(Read(Out("a.png")), Framed({60 + 49, 40}, 49, 0, picture)), 0);
  EXPECT_EQ(DpiOf(Out("a.png")), 254);
}

TEST_F(CutBorderTest, BrokenMillimetres) {
  Put("FBaseOpt.TBoard(0)", "2.5");
  Put("FBaseOpt.TBoard(3)", "0.04");  // 0.4 pixels
  Cut({Make("a.png", Painted(60, 40, Slope), 254)});
  EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{60 + 25, 40}));
}

// Without a fixed cut its size is no frame: the border goes around what was cut.
TEST_F(CutBorderTest, WithoutAFixedCutTheFixedSizeDoesNotMatter) {
  Board(1, 1, 1, 1);
  flags.FixW = 1062;
  flags.FixH = 1630;
  Margins(50, 50, 0, 0);
  Cut({Make("a.png", Painted(60, 40, Slope), 254)});
  EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{30 + 20, 20 + 20}));
}

TEST_F(CutBorderTest, OverTheSource) {
  Board(1, 1, 1, 1);
  Put("ChOver", "1");
  const std::string path = Make("a.jpg", Painted(60, 40, Slope), 254);
  Cut({path});
  EXPECT_EQ(SizeOf(path), (base::Size{80, 60}));
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.jpg"});
}

// Without its border a cut is not what was asked for: nothing appears, and an overwritten source stays.
TEST_F(CutBorderTest, ABorderThatFailsLeavesNothing) {
  Board(1, 1, 1, 1);
  List({Make("a.png", Painted(60, 40, Slope), 254)});
  world.faults.Set({.call = host::testing::DiskCall::OpenNew,
                    .error = EIO,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "app/.Tmp2.png"});
  Cut();
  EXPECT_EQ(world.faults.Fired(), 2) << "the prefetched border and the step";
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_FALSE(Why(1).empty());
}

TEST_F(CutBorderTest, ACanvasBeyondEveryLimitIsReported) {
  const std::string path = Make("a.png", Painted(60, 40, Slope), 254);
  struct Case {
    double left;
    double bottom;
    const char* canvas;
  };
  // What an int cannot hold ends at its highest.
  for (const Case& c :
       {Case{60000, 0, "600059x40"}, Case{40000, 40000, "400059x400039"}, Case{1e15, 1e15, "2147483647x2147483647"}}) {
    Board(0, 0, 0, 0);
    options.TBoard[0].SetNumber(c.left);
    options.TBoard[3].SetNumber(c.bottom);
    program.files.Clear();
    Cut({path});
    EXPECT_EQ(Why(1), std::string("加上边框后的画布为 ") + c.canvas + " 像素，超过上限：图片尺寸超出允许的范围");
    EXPECT_TRUE(OutNames().empty());
  }
}

TEST_F(CutBorderTest, NoWorkFilesRemain) {
  Board(1, 1, 1, 1);
  Cut({Make("a.png", Painted(60, 40, Slope), 254)});
  EXPECT_FALSE(AppHas("Tmp2.png"));
}

}  // namespace
}  // namespace quillon::job
