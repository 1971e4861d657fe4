// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The windows of the cut of animated gifs and of the png tool.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

class FormatWindows : public ::testing::Test {
 protected:
  FormatWindows() { ui_.world.folder.Write("app/CutMedia.dll", "twin"); }
  QWidget& Window(const controls::Window& record) { return *ui_.window.WindowOf(record); }
  void SelectMode(const char* mode) { ASSERT_TRUE(form_.CmbCutMode.UserEdit(mode).Accepted()); }

  UiWorld ui_;
  job::Form1& form_ = ui_.program.form1;
  formats::FGifCut& gif_ = ui_.suite.formats.fGifCut;
  formats::FPngCut& png_ = ui_.suite.formats.fPngCut;
};

TEST_F(FormatWindows, TheGifOptionsOpenInTheirModeAlone) {
  EXPECT_FALSE(ui_.Find<QAction>(form_.MenuGifCutOps)->isEnabled());
  SelectMode("1");
  ui_.Find<QAction>(form_.MenuGifCutOps)->trigger();
  EXPECT_TRUE(Window(gif_).isVisible());
  EXPECT_EQ(Window(gif_).windowTitle(), QStringLiteral("动态Gif裁剪选项"));
  ui_.Find<QCheckBox>(gif_.ChHighGifCut)->click();
  EXPECT_TRUE(gif_.HighQuality());
  EXPECT_EQ(ui_.Find<QCheckBox>(gif_.ChHighGifCut)->text(), QStringLiteral("高清裁剪"));
  ui_.program.flags.PreviewImageWidth = 80;
  ui_.program.flags.PreviewImageHeight = 60;
  ui_.Find<QCheckBox>(gif_.ChNoCutGif)->click();
  EXPECT_TRUE(gif_.RemovesLogo());
  EXPECT_EQ(ShownValue(ui_, form_.TCutValue[0]), "1");
  Window(gif_).close();
  EXPECT_FALSE(gif_.Visible());
  EXPECT_TRUE(gif_.RemovesLogo()) << "closing only hides";
  ui_.Find<QAction>(form_.MenuGifCutOps)->trigger();
  SelectMode("0");
  EXPECT_FALSE(Window(gif_).isVisible());
}

TEST_F(FormatWindows, TheToolShowsDegreesForARotationAlone) {
  SelectMode("2");
  ui_.Find<QAction>(form_.MenuPngCutOps)->trigger();
  EXPECT_TRUE(Window(png_).isVisible());
  EXPECT_EQ(Window(png_).windowTitle(), QStringLiteral("Png图裁剪"));
  auto* operations = ui_.Find<QComboBox>(png_.CmbOp);
  auto* degrees = ui_.Find<QWidget>(png_.TDu);
  ASSERT_NE(operations, nullptr);
  ASSERT_NE(degrees, nullptr);
  ASSERT_EQ(operations->count(), 6);
  EXPECT_FALSE(degrees->isVisible());
  Put(ui_, png_.CmbOp, "3-png分切(不开通，有需要请定制)");
  EXPECT_EQ(operations->currentIndex(), 0);
  EXPECT_EQ(ui_.world.boxes.Beeps(), 1);
  Put(ui_, png_.CmbOp, "5-png旋转");
  EXPECT_TRUE(degrees->isVisible());
  EXPECT_EQ(ShownValue(ui_, png_.TDu), "20");
  for (const auto& [typed, kept] : {std::pair{"181", "180"}, {"-999", "-180"}, {"-12.5", "-12.5"}}) {
    Put(ui_, png_.TDu, typed);
    EXPECT_EQ(ShownValue(ui_, png_.TDu), kept);
  }
}

TEST_F(FormatWindows, TheToolStaysOpenWhileItRuns) {
  SelectMode("2");
  ui_.Find<QAction>(form_.MenuPngCutOps)->trigger();
  // The files are missing, so that both rows fail.
  for (const char* name : {"in/a.png", "in/b.png"}) ui_.List(ui_.world.folder.Path(name));
  form_.LOutDir.SetText(ui_.world.folder.Path("out"));
  ui_.Find<QCheckBox>(png_.ChBat)->click();
  auto* pause = ui_.Find<QPushButton>(png_.CmdPause);
  EXPECT_FALSE(pause->isEnabled());
  int turns = 0;
  ui_.world.pump.EveryTurn([&, this] {
    if (!png_.Running() || ++turns > 2) return;
    if (turns == 2) return pause->click();
    EXPECT_TRUE(pause->isEnabled());
    EXPECT_FALSE(ui_.Find<QPushButton>(png_.CmdDo)->isEnabled());
    Window(png_).close();
    EXPECT_TRUE(Window(png_).isVisible());
    EXPECT_EQ(ui_.world.boxes.Beeps(), 1);
    pause->click();
    EXPECT_EQ(pause->text(), QStringLiteral("继续"));
  });
  ui_.Find<QPushButton>(png_.CmdDo)->click();
  EXPECT_GE(turns, 2);
  EXPECT_EQ(pause->text(), QStringLiteral("暂停"));
  EXPECT_EQ(ui_.Find<QLabel>(png_.LSt)->text(), QStringLiteral("状态： 处理完毕！已处理2/2"));
  EXPECT_TRUE(ui_.Find<QPushButton>(png_.CmdDo)->isEnabled());
  Window(png_).close();
  EXPECT_FALSE(Window(png_).isVisible());
}

}  // namespace
}  // namespace quillon::ui
