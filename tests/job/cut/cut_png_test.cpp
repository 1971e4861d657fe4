// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What a cut keeps of pngs: 16 bits a sample, and the transparency of an overwritten one.
#include <string>

#include "job/deep_tiff.h"

namespace quillon::job {
namespace {

// Offsets in a png, and values there.
constexpr std::size_t kBits = 24;
constexpr std::size_t kColourType = 25;
constexpr char kRgb = 2;
constexpr char kRgbWithAlpha = 6;

class CutPngTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    form.CmbOutType.SetText("png");
    Margins(10, 0, 0, 0);
  }
  // A png of 16 bits a sample whose left half is transparent.
  std::string MakeDeep(const std::string& name) {
    const auto alpha = [](int x, int) { return x < 20 ? 0 : 255; };
    const std::string tiff = world.folder.Write("deep.tif", DeepTiff(40, 30, Slope, alpha));
    imaging::Image image;
    EXPECT_TRUE(program.images.LoadImageFromFile(tiff, image));
    EXPECT_TRUE(world.files.MakeFolders(In("")));
    EXPECT_TRUE(program.images.SaveByEncoder(image, In(name), imaging::Encoder::Png, 80));
    EXPECT_EQ(world.folder.Read("in/" + name)[kBits], 16);
    return In(name);
  }
};

TEST_F(CutPngTest, SixteenBitsStayWithAndWithoutEffects) {
  const std::string path = MakeDeep("a.png");
  for (const char* inverted : {"0", "1"}) {
    Option("ChInvert", inverted);
    for (const bool prefetched : {false, true}) {
      program.recovering = !prefetched;
      program.files.Clear();
      Cut({path});
      ASSERT_EQ(Totals().written, 1u) << Whys();
      EXPECT_EQ(world.folder.Read("out/a.png")[kBits], 16) << inverted << prefetched;
      EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{36, 30}));
    }
  }
}

TEST_F(CutPngTest, APlainCutIsOpaque) {
  Cut({MakeDeep("a.png")});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(world.folder.Read("out/a.png")[kColourType], kRgb);
  EXPECT_EQ(Read(Out("a.png")).At(0, 0), kWhitePixel);
  EXPECT_EQ(Read(Out("a.png")).At(20, 5), Slope(24, 5));
}

TEST_F(CutPngTest, AnOverwrittenPngKeepsItsTransparency) {
  Put("ChOver", "1");
  for (const bool prefetched : {false, true}) {
    program.recovering = !prefetched;
    program.files.Clear();
    Cut({MakeDeep("a.png")});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(world.folder.Read("in/a.png")[kColourType], kRgbWithAlpha);
    EXPECT_EQ(world.folder.Read("in/a.png")[kBits], 16);
    EXPECT_EQ(Read(In("a.png")).At(0, 0), kWhitePixel);
    EXPECT_EQ(Read(In("a.png")).At(20, 5), Slope(24, 5));
  }
}

// The border colour must not shine through.
TEST_F(CutPngTest, ABorderIsDrawnAroundAnOpaqueCut) {
  Put("ChOver", "1");
  Option("ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "3");
  Put("FBaseOpt.PBoardColor", "#0000FF");
  Cut({MakeDeep("a.png")});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(world.folder.Read("in/a.png")[kColourType], kRgb);
  const Picture made = Read(In("a.png"));
  EXPECT_EQ(made.At(made.width - 34, made.height - 1), kWhitePixel);
}

TEST_F(CutPngTest, TheRowOfABorderedPngSaysThatItIsOpaqueNow) {
  Option("ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "3");
  for (const char* option : {"ChOver", "FBaseOpt.ChFrmOnly", "FBaseOpt.ChInvert"}) {
    for (const bool prefetched : {false, true}) {
      program.recovering = !prefetched;
      program.files.Clear();
      Put(option, "1");
      Cut({MakeDeep("a.png"), Make("b.png", 40, 30)});
      ASSERT_EQ(Totals().written, 2u) << Whys();
      EXPECT_EQ(Why(1), "加了边框，透明部分填上了颜色，不再透明") << option;
      EXPECT_EQ(Why(2), "") << option;
    }
    Put(option, "0");
  }
}

TEST_F(CutPngTest, ABorderOfAnotherTypeIsNotNoted) {
  Option("ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "3");
  form.CmbOutType.SetText("jpg");
  Cut({MakeDeep("a.png")});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Why(1), "");
}

}  // namespace
}  // namespace quillon::job
