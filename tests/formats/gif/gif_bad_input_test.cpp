// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What a run of cut mode 1 makes of files that are damaged, or unusual and whole.
#include <filesystem>

#include "formats/gif/gif_fixture.h"
#include "imaging/gif/gif_film.h"
#include "imaging/png_maker.h"

namespace quillon::formats {
namespace {

using base::Size;
using Drawn = imaging::testing::Film;
using imaging::testing::FilmBytes;
using imaging::testing::PlainFrame;

class GifInputTest : public GifTest {
 protected:
  void SetUp() override {
    GifTest::SetUp();
    PixelMargins(10, 20, 30, 40);
  }
  static Drawn TwoFrames() {
    return {
        .screen = {100, 80}, .tableBits = 2, .frames = {PlainFrame({0, 0, 100, 80}, 1), PlainFrame({5, 5, 90, 70}, 2)}};
  }
  static Drawn SmallFramesOn(Size screen) {
    Drawn film{.screen = screen, .tableBits = 2};
    for (int i = 0; i < 10; ++i) film.frames.push_back(PlainFrame({2000 * i, 2000 * i, 5, 2}, 1));
    return film;
  }
  // Runs over a listed gif that has these bytes by now, and a good one after it. Returns the reason of the first.
  std::string WhyOf(const std::string& bytes) {
    if (program.files.RowCount() == 0) List({Film("a.gif"), Film("b.gif")});
    world.folder.Write("in/a.gif", bytes);
    std::filesystem::remove_all(outFolder);
    EXPECT_TRUE(world.files.MakeFolders(outFolder));
    Click("MenuGifCut");
    EXPECT_TRUE(world.folder.Read("in/a.gif") == bytes);
    EXPECT_EQ(SizeOf(Out("b.gif")), (Size{60, 20})) << Whys();
    return Why(1);
  }
};

constexpr std::size_t kHead = 13 + 12;  // signature, screen and table of TwoFrames

TEST_F(GifInputTest, WhatIsDamagedIsNamed) {
  const std::string whole = FilmBytes(TwoFrames());
  EXPECT_EQ(WhyOf(whole.substr(0, 9)), "图片数据损坏或不完整");
  EXPECT_EQ(WhyOf(whole.substr(0, 20)), "GIF 文件不完整：文件头或颜色表中断");
  EXPECT_EQ(WhyOf(whole.substr(0, kHead)), "GIF 文件里没有任何一帧");
  EXPECT_EQ(WhyOf(whole.substr(0, whole.size() - 4)), "GIF 第 2 帧的数据中断，文件不完整");
  std::string damaged = whole;
  damaged.replace(kHead + 8 + 10 + 20, 3, "\xFF\xFF\xFF");
  EXPECT_EQ(WhyOf(damaged), "图片数据损坏或不完整");
  Drawn bare = TwoFrames();
  bare.tableBits = 0;
  EXPECT_EQ(WhyOf(FilmBytes(bare)), "GIF 第 1 帧没有颜色表");
  constexpr std::size_t kCodeSize = kHead + 8 + 10;
  for (const int bits : {0, 12}) {
    std::string bad = whole;
    bad[kCodeSize] = static_cast<char>(bits);
    EXPECT_EQ(WhyOf(bad), "GIF 第 1 帧的编码位数无效（" + std::to_string(bits) + "）");
  }
  for (const std::string& row : OutNames()) EXPECT_EQ(row, "b.gif");
}

TEST_F(GifInputTest, PicturesOfAnotherKindAreNamed) {
  Make("c.jpg");
  const std::string why = "文件内容不是 gif，本模式只裁动态Gif";
  EXPECT_EQ(WhyOf(world.folder.Read("in/c.jpg")), why);
  EXPECT_EQ(WhyOf(imaging::testing::MakePng({.size = {100, 80}})), why);
}

TEST_F(GifInputTest, WhatIsUnusualIsCut) {
  const std::string whole = FilmBytes(TwoFrames());
  EXPECT_EQ(WhyOf(whole.substr(0, whole.size() - 1)), "");
  EXPECT_EQ(world.folder.Read("out/a.gif").back(), ';');
  Drawn outside = TwoFrames();
  outside.frames[1] = PlainFrame({90, 70, 30, 30}, 1);
  outside.frames.push_back(PlainFrame({200, 200, 3, 3}, 1));
  EXPECT_EQ(WhyOf(FilmBytes(outside)), "");
  EXPECT_EQ(FramesOf(Out("a.gif")), 3);
  EXPECT_EQ(WhyOf(FilmBytes(SmallFramesOn({30000, 30000}))), "");
  EXPECT_EQ(SizeOf(Out("a.gif")), (Size{29960, 29940}));
}

TEST_F(GifInputTest, ALargerScreenThanAPictureMayBeIsNamed) {
  EXPECT_EQ(WhyOf(FilmBytes(SmallFramesOn({65535, 65535}))), "图片尺寸超出允许的范围");
}

TEST_F(GifInputTest, AHundredThousandFramesAreCut) {
  constexpr int kFrames = 100'000;
  Drawn film = TwoFrames();
  film.frames.resize(1);
  film.end = "";
  std::string bytes = FilmBytes(film);
  const std::string frame = FilmBytes(PlainFrame({20, 30, 2, 2}, 1), 1);
  for (int i = 1; i < kFrames; ++i) bytes += frame;
  EXPECT_EQ(WhyOf(bytes), "");
  EXPECT_EQ(FramesOf(Out("a.gif")), kFrames);
}

TEST_F(GifInputTest, AFolderIsNeverTakenForAWorkFile) {
  formats.fGifCut.Load();
  Put("FGifCut.ChHighGifCut", "1");
  List({Film("a.gif")});
  WriteApp("paletten.png/mine.txt", "a");
  Click("MenuGifCut");
  EXPECT_EQ(Why(1), "程序文件夹里的“paletten.png”是文件夹，请先移走");
  EXPECT_TRUE(AppHas("paletten.png/mine.txt"));
  std::filesystem::remove_all(Palette());
  WriteApp("Tmp.gif/mine.txt", "a");
  Click("MenuGifCut");
  EXPECT_EQ(Why(1), "程序文件夹里的“Tmp.gif”是文件夹，请先移走");
  EXPECT_TRUE(AppHas("Tmp.gif/mine.txt"));
  EXPECT_TRUE(OutNames().empty());
}

// An older palette is that of another file.
TEST_F(GifInputTest, APaletteOfAnotherFileIsNotUsed) {
  formats.fGifCut.Load();
  Put("FGifCut.ChHighGifCut", "1");
  WriteApp("paletten.png", "older");
  bool stale = false;
  world.shell.OnStart([&](const auto& start) {
    if (start.arguments.at(0).find("paletteuse") != std::string::npos) stale = AppHas("paletten.png");
  });
  Run({Film("a.gif")});
  EXPECT_FALSE(stale);
  EXPECT_EQ(Why(1), "CutMedia 没有得到结果，Gif 可能已损坏");
}

// The reason of one file is not that of the next one.
TEST_F(GifInputTest, AnAnswerCountsForOneFile) {
  Answer("an older failure");
  EXPECT_EQ(WhyOf(FilmBytes(TwoFrames())), "");
}

}  // namespace
}  // namespace quillon::formats
