// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The windows of the region lists and of the timed cut.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

#include "ui/regions/region_grid.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

class RegionWindows : public ::testing::Test {
 protected:
  QWidget& Window(const controls::Window& record) { return *ui_.window.WindowOf(record); }

  UiWorld ui_;
  job::Form1& form_ = ui_.program.form1;
  regions::FMultCut& regions_ = ui_.suite.regions.fMultCut;
  regions::FCutTime& timed_ = ui_.suite.regions.fCutTime;
};

TEST_F(RegionWindows, OpenFromTheMenusAndFollowTheirRecords) {
  EXPECT_FALSE(Window(regions_).isVisible());
  ui_.Find<QAction>(form_.MenuMulCut)->trigger();
  EXPECT_TRUE(Window(regions_).isVisible());
  EXPECT_EQ(Window(regions_).windowTitle(), QStringLiteral("多区域裁剪区域设置"));
  Window(regions_).close();
  EXPECT_FALSE(regions_.Visible());
  EXPECT_FALSE(Window(regions_).isVisible());
  ui_.Find<QAction>(form_.MenuCutTime)->trigger();
  EXPECT_TRUE(Window(timed_).isVisible());
  Window(timed_).close();
  EXPECT_FALSE(timed_.Visible());
}

TEST_F(RegionWindows, TheGridFollowsRowsAndHeaders) {
  regions_.Show();
  form_.ChCutA.Set(true);
  auto* grid = ui_.Find<RegionGrid>(regions_.MSFlexGrid1);
  ASSERT_NE(grid, nullptr);
  const auto header = [grid] { return grid->model()->headerData(0, Qt::Horizontal).toString(); };
  EXPECT_EQ(header(), QStringLiteral("上边距/像素"));
  form_.ChCutA.Set(false);
  EXPECT_EQ(header(), QStringLiteral("上边距/%"));
  ui_.Find<QPushButton>(regions_.CmdAdd)->click();
  UiWorld::Turn();
  EXPECT_EQ(grid->model()->rowCount(), 1);
  EXPECT_EQ(grid->currentIndex().row(), 0);
  grid->setFocus();
  QTest::keyClick(grid, Qt::Key_Return);
  EXPECT_EQ(regions_.MSFlexGrid1.RowCount(), 0u);
}

TEST_F(RegionWindows, TheMainWindowHidesWhileTheFolderIsWatched) {
  timed_.Show();
  timed_.LDir.SetText(ui_.world.folder.Path());
  ui_.world.boxes.Answer("终止定时裁剪？", host::Reply::Ok);
  int turns = 0;
  ui_.world.pump.EveryTurn([&, this] {
    if (!timed_.Running()) return;
    ++turns;
    if (turns == 1) {
      EXPECT_FALSE(ui_.window.isVisible());
      EXPECT_TRUE(Window(timed_).isVisible());
      ui_.Find<QAbstractButton>(timed_.Chback)->click();
      EXPECT_TRUE(Window(timed_).isHidden() || Window(timed_).isMinimized());
      if (Window(timed_).isMinimized()) {
        EXPECT_EQ(Window(timed_).windowTitle(), QStringLiteral("定时裁剪器正在运行中..."));
      }
    } else if (turns == 2) {
      timed_.Chback.Set(false);
      EXPECT_TRUE(Window(timed_).isVisible());
      EXPECT_FALSE(Window(timed_).isMinimized());
    } else if (turns == 3) {
      ui_.Find<QPushButton>(timed_.CmdStop)->click();
    }
  });
  ui_.Find<QPushButton>(timed_.CmdDo)->click();
  EXPECT_GE(turns, 3);
  EXPECT_TRUE(ui_.window.isVisible());
  EXPECT_EQ(Window(timed_).windowTitle(), QStringLiteral("Quillon—图片定时裁剪"));
}

TEST_F(RegionWindows, TheTimedCutSaysInFullWhatBecomesOfTheOriginals) {
  timed_.Show();
  const auto* label = ui_.Find<QLabel>(timed_.LPlace);
  for (const char* several : {"1", "0"}) {
    ASSERT_TRUE(timed_.ChMul.UserEdit(several).Accepted());
    QCoreApplication::processEvents();
    EXPECT_EQ(label->text().toStdString(), timed_.LPlace.Value());
    EXPECT_GE(label->width(), label->sizeHint().width());
  }
  const auto* count = ui_.Find<QLabel>(timed_.LFiles);
  EXPECT_GE(count->width(), count->fontMetrics().horizontalAdvance(QStringLiteral("已裁剪数：000000")));
}

TEST_F(RegionWindows, FramesOfTheTimedCutUnfoldWithTheirBoxes) {
  timed_.Show();
  UiWorld::Turn();
  EXPECT_TRUE(ui_.Find<QWidget>(timed_.Frame2)->isHidden());
  Put(ui_, timed_.ChSizeFilter, "1");
  EXPECT_FALSE(ui_.Find<QWidget>(timed_.Frame2)->isHidden());
  EXPECT_TRUE(ui_.Find<QWidget>(timed_.Frame3)->isHidden());
  Put(ui_, timed_.ChMul, "1");
  EXPECT_FALSE(ui_.Find<QWidget>(timed_.Frame3)->isHidden());
}

}  // namespace
}  // namespace quillon::ui
