// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What a run of cut mode 2 makes of files that are damaged, or unusual and whole.
#include <filesystem>

#include "formats/png/png_fixture.h"
#include "imaging/png_maker.h"

namespace quillon::formats {
namespace {

using namespace imaging::testing;
using base::Size;

constexpr const char* kDamaged = "图片数据损坏或不完整";

class PngInputTest : public PngTest {
 protected:
  // Runs over a listed png that has these bytes by now, and a good one after it. Returns the reason of the first.
  std::string WhyOf(const std::string& bytes) {
    if (program.files.RowCount() == 0) List({Make("a.png"), Make("b.png")});
    world.folder.Write("in/a.png", bytes);
    std::filesystem::remove_all(outFolder);
    EXPECT_TRUE(world.files.MakeFolders(outFolder));
    Click("MenuPngCut");
    EXPECT_TRUE(world.folder.Read("in/a.png") == bytes);
    EXPECT_EQ(SizeOf(Out("b.png")), (Size{59, 19})) << Whys();
    return Why(1);
  }
  void ExpectDamaged(const std::string& bytes) {
    EXPECT_EQ(WhyOf(bytes), kDamaged);
    EXPECT_EQ(OutNames(), std::vector<std::string>{"b.png"});
  }
};

constexpr Size kSize{100, 80};

TEST_F(PngInputTest, WhatIsDamagedIsNamed) {
  const std::string whole = MakePng({.size = kSize});
  ExpectDamaged(whole.substr(0, ChunkAt(whole, "IDAT") + 500));
  ExpectDamaged(whole.substr(0, whole.size() - 12));
  const std::string text = PngChunkOf("tEXt", std::string("Title\0some words", 16));
  const std::string png = WithChunks(MakePng({.size = kSize, .type = 3, .alphas = {9}}), "IDAT", text);
  EXPECT_EQ(WhyOf(png), "");
  for (const char* type : {"IHDR", "PLTE", "tRNS", "tEXt", "IDAT"}) {
    SCOPED_TRACE(type);
    ExpectDamaged(WithWrongChecksum(png, type));
  }
}

TEST_F(PngInputTest, APaletteThatIsMissingOrTooShortIsNamed) {
  std::string rows(80 * 101, '\0');
  ExpectDamaged(PngOfRows(kSize, 8, 3, "", rows));
  const std::string two = PngChunkOf("PLTE", "abcdef");
  EXPECT_EQ(WhyOf(PngOfRows(kSize, 8, 3, two, rows)), "");
  rows[101 * 30 + 31] = 2;
  ExpectDamaged(PngOfRows(kSize, 8, 3, two, rows));
}

TEST_F(PngInputTest, ABombIsNamed) {
  const std::string bomb = PngOfRows({12000, 12000}, 8, 2, "", std::string(42'000'000, '\0'));
  ASSERT_LT(bomb.size(), 45'000U);
  ExpectDamaged(bomb);
}

TEST_F(PngInputTest, WhatIsUnusualIsCut) {
  EXPECT_EQ(WhyOf(MakePng({.size = kSize, .bits = 16, .key = {1, 2, 3}})), "");
  EXPECT_TRUE(IsRgba("out/a.png"));
  std::string chunks;
  const std::string block = PngChunkOf("tEXt", std::string("Comment\0", 8) + std::string(4'000'000, 'x'));
  for (int i = 0; i < 25; ++i) chunks += block;
  EXPECT_EQ(WhyOf(WithChunks(MakePng({.size = kSize}), "IDAT", chunks)), "");
  EXPECT_LT(world.folder.Read("out/a.png").size(), 10'000U);
  PixelMargins(0, 20, 0, 41);
  world.folder.Write("in/a.png", PngOfRows({1, 500'000}, 8, 0, "", std::string(1'000'000, '\0')));
  Click("MenuPngCut");
  EXPECT_EQ(Why(1), "");
  EXPECT_EQ(SizeOf(Out("a.png")), (Size{1, 499'939}));
}

TEST_F(PngInputTest, OfAnAnimationTheFirstFrameIsCut) {
  const std::string animated =
      WithChunks(MakePng({.size = kSize}), "IDAT", PngChunkOf("acTL", std::string("\0\0\0\3\0\0\0\0", 8)));
  EXPECT_EQ(WhyOf(animated), "源文件有 3 帧，只取第一帧");
  EXPECT_TRUE(IsRgba("out/a.png"));
}

}  // namespace
}  // namespace quillon::formats
