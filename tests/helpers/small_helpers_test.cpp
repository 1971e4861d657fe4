// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cstdlib>

#include "helpers/helper_process.h"
#include "helpers/pictures.h"
#include "helpers/runtime/child.h"

namespace quillon::helpers {
namespace {

using namespace testing;

class PicCirleCut : public ::testing::Test {
 protected:
  Ran Run(const std::string& source, const std::string& target, const std::string& box) {
    return app.Run("PicCirleCut", {source + "\t" + target + "\t" + box});
  }

  HelperFolder app;
};

TEST_F(PicCirleCut, CutsAnEllipseWithAHardEdge) {
  const Pixels source = Waves(100, 80);
  Save(app.Path("a.png"), source);
  ASSERT_EQ(Run(app.Path("a.png"), app.Path("out.png"), "10\t20\t60\t40").exit, 0);
  const Pixels cut = Load(app.Path("out.png"));
  ASSERT_EQ(cut.width, 60);
  ASSERT_EQ(cut.height, 40);
  ASSERT_EQ(cut.bands, 4);
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 60; ++x) {
      const bool inside = (x - 30) * (x - 30) * 400 + (y - 20) * (y - 20) * 900 <= 900 * 400;
      std::vector<int> expected = source.At(10 + x, 20 + y);
      expected.push_back(255);
      EXPECT_EQ(cut.At(x, y), inside ? expected : std::vector<int>({0, 0, 0, 0})) << x << ", " << y;
    }
  }
}

TEST_F(PicCirleCut, AcceptsAnyPictureAndMayReplaceItsSource) {
  Save(app.Path("a.jpg"), Plain(50, 50, {90, 80, 70}), 300);
  ASSERT_EQ(Run(app.Path("a.jpg"), app.Path("out.png"), "0\t0\t50\t50").exit, 0);
  EXPECT_EQ(DpiOf(app.Path("out.png")), 300);
  ASSERT_EQ(Run(app.Path("out.png"), app.Path("out.png"), "25\t25\t10\t10").exit, 0);
  EXPECT_EQ(Load(app.Path("out.png")).At(5, 5), (std::vector<int>{90, 80, 70, 255}));
}

TEST_F(PicCirleCut, LeavesNoTargetIfItFails) {
  Save(app.Path("a.png"), Waves(10, 10));
  app.Write("text.png", "no picture");
  struct Case {
    std::string source;
    std::string target;
    const char* box;
  };
  const Case cases[] = {
      {app.Path("none.png"), app.Path("out.png"), "0\t0\t5\t5"},
      {app.Path("text.png"), app.Path("out.png"), "0\t0\t5\t5"},
      {app.Path("a.png"), app.Path("out.png"), "0\t0\t0\t5"},
      {app.Path("a.png"), app.Path("out.png"), "0\t0\t-5\t5"},
      {app.Path("a.png"), app.Path("out.png"), "0\t0\t5"},
      {app.Path("a.png"), app.Path("out.png"), "0\t0\t5\t5\t5"},
      {app.Path("a.png"), app.Path("out.png"), "x\t0\t5\t5"},
      {app.Path("a.png"), app.Path("out.jpg"), "0\t0\t5\t5"},
      {app.Path("a.png"), app.Path("no/out.png"), "0\t0\t5\t5"},
      {app.Path("a.png"), app.Path("out.png"), "0\t0\t99999999\t99999999"},
      {app.Path("a\tb.png"), app.Path("out.png"), "0\t0\t5\t5"},
  };
  for (const Case& one : cases) EXPECT_EQ(Run(one.source, one.target, one.box).exit, 1) << one.source << one.box;
  EXPECT_EQ(app.Names(), (std::vector<std::string>{"a.png", "text.png"}));
}

class PicsToAniGif : public ::testing::Test {
 protected:
  Ran Run(const std::string& rest) { return app.Run("PicsToAniGif", {app.Path("work") + "\t0\t0\t98\t0\t" + rest}); }
  std::string Progress() { return app.Get("PicsToGif", "PicsCut"); }

  void SetUp() override {
    app.Write("work/GifTmp/.keep", "");
    Save(app.Path("work/GifTmp/1.png"), Plain(20, 10, {255, 0, 0}));
    Save(app.Path("2.png"), Plain(20, 10, {0, 0, 255}));
  }

  HelperFolder app;
};

TEST_F(PicsToAniGif, AssemblesTheFramesAndCountsThem) {
  app.Write("work/Gif.txt", "1.png\t0\t0\t250\r\n" + app.Path("2.png") + "\r\n");
  app.Set("PicsToGif", "0", "PicsCut");
  ASSERT_EQ(Run("20\t10\t40\t" + app.Path("out.gif")).exit, 0);
  const Film film = LoadFilm(app.Path("out.gif"));
  EXPECT_EQ(film.frames, 2);
  EXPECT_EQ(film.height, 10);
  EXPECT_EQ(film.milliseconds, (std::vector<int>{250, 40}));
  EXPECT_EQ(film.pixels.At(5, 5)[0], 255);
  EXPECT_EQ(film.pixels.At(5, 15)[2], 255);
  EXPECT_EQ(Progress(), "2");
}

TEST_F(PicsToAniGif, HasUsualPlacesForListAndResult) {
  app.Write("Gif.txt", "1.png\n");
  ASSERT_EQ(Run("20\t10").exit, 0);
  EXPECT_EQ(LoadFilm(app.Path("work/Tmp.gif")).frames, 1);
}

TEST_F(PicsToAniGif, LeavesNoTargetIfItFails) {
  EXPECT_EQ(Run("20\t10").exit, 1);
  for (const char* list : {"", "none.png\n", "../../2.png\n", "1.png\nnone.png\n"}) {
    app.Write("work/Gif.txt", list);
    EXPECT_EQ(Run("20\t10").exit, 1) << list;
  }
  app.Write("work/Gif.txt", "1.png\n");
  for (const char* rest : {"0\t10", "20\t-1", "x\ty", "20", "20\t10\t40\tout.gif", "20\t10\t40\t/x/../out.gif"}) {
    EXPECT_EQ(Run(rest).exit, 1) << rest;
  }
  app.Write("work/Gif.txt", std::string(10 << 20, 'x'));
  EXPECT_EQ(Run("20\t10").exit, 1);
  EXPECT_FALSE(app.Exists("work/Tmp.gif"));
}

class QxBackOCRer : public ::testing::Test {
 protected:
  Ran Run(const std::string& text) { return app.Run("QxBackOCRer", {text}); }
  HelperFolder app;
};

TEST_F(QxBackOCRer, ReadsTheTextOfAPicture) {
  if (!RunProgram({"tesseract", "--version"})) GTEST_SKIP() << "Tesseract is not installed";
  SaveText(app.Path("a.png"), "中文识别 2026");
  for (const char* end : {"\n", "\r\n"}) {
    ASSERT_EQ(Run("Quillon" + std::string(end) + app.Path("a.png")).exit, 0);
    EXPECT_NE(app.Get("OCRRes").find("2026"), std::string::npos) << app.Get("OCRRes");
    EXPECT_NE(app.Get("OCRRes").find("中"), std::string::npos) << app.Get("OCRRes");
  }
  EXPECT_EQ(app.Names(), (std::vector<std::string>{"a.png"}));
}

TEST_F(QxBackOCRer, SaysThatTesseractIsMissing) {
  SaveText(app.Path("a.png"), "2026");
  const std::string before = getenv("PATH");
  setenv("PATH", app.Path().c_str(), 1);
  const Ran ran = Run("Quillon\n" + app.Path("a.png"));
  setenv("PATH", before.c_str(), 1);
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(app.Get("OCRRes"), "文字识别失败：本机没有安装Tesseract");
}

TEST_F(QxBackOCRer, LeavesNoOldText) {
  app.Set("OCRRes", "of another picture");
  app.Write("text.png", "no picture");
  EXPECT_EQ(Run("Quillon\n" + app.Path("none.png")).exit, 1);
  EXPECT_EQ(app.Get("OCRRes"), "文字识别失败：图片不存在");
  if (!RunProgram({"tesseract", "--version"})) GTEST_SKIP() << "Tesseract is not installed";
  EXPECT_EQ(Run("Quillon\n" + app.Path("text.png")).exit, 1);
  EXPECT_EQ(app.Get("OCRRes"), "文字识别失败：图片无法识别");
  for (const char* call : {"", "Quillon", "Quillon\n", "Quillon\r\n\r\n"}) EXPECT_EQ(Run(call).exit, 1);
}

}  // namespace
}  // namespace quillon::helpers
