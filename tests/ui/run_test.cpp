// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QTableView>

#include "job/several_pages.h"
#include "ui/kit/bind/elided_label.h"
#include "ui/kit/theme/theme.h"
#include "ui/main/file_list_model.h"
#include "ui/main/list_view.h"
#include "ui/main/run_monitor.h"
#include "ui/main/status_strip.h"
#include "ui/ui_world.h"

namespace quillon::ui {
namespace {

// --- Texts

TEST(RunText, Rate) {
  EXPECT_EQ(RateText(0), QString());
  EXPECT_EQ(RateText(2.34), QStringLiteral("2.3 张/秒"));
  EXPECT_EQ(RateText(128.4), QStringLiteral("128 张/秒"));
}

TEST(RunText, TimeLeft) {
  EXPECT_EQ(TimeLeftText(0), QString());
  EXPECT_EQ(TimeLeftText(7.2), QStringLiteral("剩余 8 秒"));
  EXPECT_EQ(TimeLeftText(59.5), QStringLiteral("剩余 1 分 00 秒"));
  EXPECT_EQ(TimeLeftText(65), QStringLiteral("剩余 1 分 05 秒"));
  EXPECT_EQ(TimeLeftText(7384), QStringLiteral("剩余 2 小时 03 分"));
}

TEST(RunText, Summary) {
  EXPECT_EQ(SummaryText({.planned = 3, .written = 3, .seconds = 1.26}), QStringLiteral("完成：写出 3，用时 1.3 秒"));
  EXPECT_EQ(SummaryText({.planned = 9, .written = 3, .none = 2, .skipped = 1, .seconds = 2, .stopped = true}),
            QStringLiteral("已终止：写出 3，未写出 2，跳过 1，用时 2.0 秒"));
}

// --- Figures

TEST(RunMonitor, CountsRateAndTimeLeft) {
  host::testing::FakeClock clock;
  std::vector<RunFigures> reported;
  std::vector<job::RunTotals> ended;
  RunMonitor monitor(
      clock, [&](const RunFigures& figures) { reported.push_back(figures); },
      [&](const job::RunTotals& totals) { ended.push_back(totals); });
  monitor.RunStarted(10);
  ASSERT_EQ(reported.size(), 1u);
  EXPECT_TRUE(reported[0].running);
  EXPECT_EQ(reported[0].planned, 10u);

  clock.Advance(2);
  for (int i = 0; i < 4; ++i) {
    monitor.FileDone(
        {.source = "/in/图" + std::to_string(i) + ".jpg", .result = i == 1 ? job::Result::None : job::Result::Written});
  }
  const RunFigures figures = monitor.Figures();
  EXPECT_EQ(figures.done, 4u);
  EXPECT_EQ(figures.failed, 1u);
  EXPECT_DOUBLE_EQ(figures.rate, 2);
  EXPECT_DOUBLE_EQ(figures.secondsLeft, 3);
  EXPECT_EQ(figures.file, QStringLiteral("图3.jpg"));

  monitor.FileLost({.source = "/in/图0.jpg"}, "/out/图0.jpg");
  EXPECT_EQ(monitor.Figures().failed, 2u);
  EXPECT_EQ(monitor.Figures().done, 4u);
  monitor.RunEnded({.planned = 10, .written = 2});
  EXPECT_FALSE(reported.back().running);
  ASSERT_EQ(ended.size(), 1u);
}

TEST(RunMonitor, KnowsNoRateAtTheStart) {
  host::testing::FakeClock clock;
  RunMonitor monitor(
      clock, [](const RunFigures&) {}, [](const job::RunTotals&) {});
  monitor.RunStarted(10);
  monitor.FileDone({.source = "/a.jpg"});
  clock.Advance(0.1);
  EXPECT_EQ(monitor.Figures().rate, 0);
  EXPECT_EQ(monitor.Figures().secondsLeft, 0);
}

TEST(RunMonitor, KnowsNoTimeLeftWithoutAPlan) {
  host::testing::FakeClock clock;
  RunMonitor monitor(
      clock, [](const RunFigures&) {}, [](const job::RunTotals&) {});
  monitor.RunStarted(0);
  monitor.FileDone({.source = "/a.jpg"});
  clock.Advance(1);
  EXPECT_DOUBLE_EQ(monitor.Figures().rate, 1);
  EXPECT_EQ(monitor.Figures().secondsLeft, 0);
}

TEST(RunMonitor, LearnsTheNumberOfFilesOnTheWay) {
  host::testing::FakeClock clock;
  RunMonitor monitor(
      clock, [](const RunFigures&) {}, [](const job::RunTotals&) {});
  monitor.RunStarted(0);
  monitor.FileDone({.source = "/a.jpg"});
  EXPECT_EQ(CountText(monitor.Figures()), QStringLiteral("已处理 1"));
  clock.Advance(1);
  monitor.RunPlanned(11);
  EXPECT_DOUBLE_EQ(monitor.Figures().secondsLeft, 10);
  EXPECT_EQ(CountText(monitor.Figures()), QString());
}

// --- The window during a run

class RunWindow : public ::testing::Test {
 protected:
  template <typename T>
  T& Named(const char* name) {
    return *ui_.window.findChild<T*>(QString::fromLatin1(name));
  }

  UiWorld ui_;
};

TEST_F(RunWindow, ShowsProgressWhileItLasts) {
  auto& progress = Named<QProgressBar>("progress");
  EXPECT_TRUE(progress.isHidden());
  job::RunObserver& observer = *ui_.program.observer;
  observer.RunStarted(8);
  EXPECT_FALSE(progress.isHidden());
  EXPECT_EQ(progress.maximum(), 8);
  ui_.world.clock.Advance(1);
  observer.FileDone({.source = "/in/a.jpg", .result = job::Result::Written});
  observer.FileDone({.source = "/in/b.jpg", .result = job::Result::Written});
  ASSERT_TRUE(QTest::qWaitFor([&] { return progress.value() == 2; }));
  EXPECT_EQ(Named<QLabel>("rate").text(), QStringLiteral("2.0 张/秒"));
  EXPECT_EQ(Named<QLabel>("timeLeft").text(), QStringLiteral("剩余 3 秒"));
  EXPECT_EQ(Named<QLabel>("statusWord").text(), QStringLiteral("b.jpg"));
  observer.FileDone({.source = "/in/c.jpg", .result = job::Result::Skipped, .reached = false});
  observer.RunEnded({.planned = 8, .written = 2, .seconds = 1, .stopped = true});
  EXPECT_FALSE(progress.isHidden());
  EXPECT_EQ(progress.value(), 2);
  EXPECT_EQ(progress.maximum(), 8);
  EXPECT_TRUE(Named<QLabel>("rate").isHidden());
  EXPECT_EQ(Named<QLabel>("statusWord").text(), QStringLiteral("已终止：写出 2，用时 1.0 秒"));
}

TEST_F(RunWindow, CountsWithoutAPlanAndShowsThePercentageOnceItIsKnown) {
  auto& progress = Named<QProgressBar>("progress");
  job::RunObserver& observer = *ui_.program.observer;
  observer.RunStarted(0);
  EXPECT_FALSE(progress.isHidden());
  ui_.world.clock.Advance(1);
  for (const char* source : {"/in/a.jpg", "/in/b.jpg"}) {
    observer.FileDone({.source = source, .result = job::Result::Written});
  }
  ASSERT_TRUE(QTest::qWaitFor([&] { return Named<QLabel>("rate").text() == QStringLiteral("已处理 2  2.0 张/秒"); }));
  EXPECT_TRUE(Named<QLabel>("timeLeft").isHidden());
  observer.RunPlanned(8);
  ASSERT_TRUE(QTest::qWaitFor([&] { return progress.maximum() == 8; }));
  EXPECT_EQ(progress.value(), 2);
  EXPECT_EQ(Named<QLabel>("rate").text(), QStringLiteral("2.0 张/秒"));
  EXPECT_EQ(Named<QLabel>("timeLeft").text(), QStringLiteral("剩余 3 秒"));
  observer.RunEnded({.planned = 8, .written = 8, .seconds = 1});
}

TEST_F(RunWindow, KeepsTheSummaryWhenTheTitleComesBack) {
  job::RunObserver& observer = *ui_.program.observer;
  ui_.program.form1.ShowStatus("  正在处理...1/2");
  observer.RunStarted(2);
  observer.RunEnded({.planned = 2, .written = 2, .seconds = 1});
  ui_.program.form1.ShowStatus("");
  EXPECT_EQ(Named<QLabel>("statusWord").text(), QStringLiteral("完成：写出 2，用时 1.0 秒"));
}

TEST_F(RunWindow, ShowsAListingWithoutACount) {
  ui_.program.form1.ShowStatus("  文件自动读取中...已读取：7");
  EXPECT_EQ(ui_.window.windowTitle(), QStringLiteral("  文件自动读取中...已读取：7Quillon"));
  EXPECT_EQ(Named<QLabel>("statusWord").text(), QStringLiteral("文件自动读取中...已读取：7"));
  EXPECT_FALSE(Named<QProgressBar>("progress").isHidden());
  EXPECT_EQ(Named<QProgressBar>("progress").maximum(), 0);
  ui_.program.form1.ShowStatus("");
  EXPECT_TRUE(Named<QProgressBar>("progress").isHidden());
  EXPECT_EQ(Named<QLabel>("statusWord").text(), QString());
  EXPECT_EQ(ui_.window.windowTitle(), QStringLiteral("Quillon"));
}

TEST_F(RunWindow, LeavesOnlyStopToPress) {
  ui_.program.form1.BeginRun();
  EXPECT_TRUE(ui_.Find<QAction>(ui_.program.form1.MenuStop)->isEnabled());
  EXPECT_FALSE(ui_.Find<QAction>(ui_.program.form1.MenuAddFiles)->isEnabled());
  EXPECT_FALSE(Named<QAction>("startCut").isEnabled());
  EXPECT_FALSE(ui_.Find<QWidget>(ui_.program.form1.TCutValue[0])->isEnabled());
  ui_.program.form1.EndRun();
  EXPECT_TRUE(Named<QAction>("startCut").isEnabled());
  EXPECT_FALSE(ui_.Find<QAction>(ui_.program.form1.MenuStop)->isEnabled());
}

TEST_F(RunWindow, TheCutButtonStartsTheDriverOfTheMode) {
  std::string started;
  ui_.program.form1.menuNormalCut.SetHandler([&] { started = "normal"; });
  ui_.program.form1.MenuTiffCut.SetHandler([&] { started = "tiff"; });
  Named<QAction>("startCut").trigger();
  EXPECT_EQ(started, "normal");
  ui_.program.form1.menuNormalCut.SetEnabled(false);
  ui_.program.form1.MenuTiffCut.SetEnabled(true);
  Named<QAction>("startCut").trigger();
  EXPECT_EQ(started, "tiff");
}

// --- The result column of the list

class ResultColumn : public RunWindow {
 protected:
  ResultColumn() {
    for (const char* name : {"a", "b", "c", "d"}) ui_.List(std::string("/in/") + name + ".jpg");
    ui_.program.files.SetResult(0, job::Result::Written, "", 2048);
    ui_.program.files.SetResult(1, job::Result::None, "图片已损坏", 0);
    ui_.program.files.SetResult(2, job::Result::Skipped, "小于指定尺寸", 0);
    model().Flush();
  }
  FileListModel& model() { return *static_cast<FileListModel*>(ui_.Find<QTableView>(ui_.program.form1.MSF)->model()); }
  QVariant At(int row, int role, int column = 9) { return model().data(model().index(row, column), role); }
};

TEST_F(ResultColumn, FollowsTheEightOfTheRecord) {
  EXPECT_EQ(model().columnCount(), 10);
  EXPECT_EQ(model().headerData(8, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("将裁出"));
  EXPECT_EQ(model().headerData(9, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("结果"));
  EXPECT_EQ(model().headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("文 件 名"));
  EXPECT_EQ(At(0, Qt::DisplayRole, 0).toString(), QStringLiteral("a"));
  EXPECT_EQ(At(0, Qt::DisplayRole, 3).toString(), QStringLiteral("400"));
}

TEST_F(ResultColumn, ShowsTheResultAndWhy) {
  EXPECT_EQ(At(0, Qt::DisplayRole).toString(), QStringLiteral("✓"));
  EXPECT_EQ(At(1, Qt::DisplayRole).toString(), QStringLiteral("✗ 图片已损坏"));
  EXPECT_EQ(At(2, Qt::DisplayRole).toString(), QStringLiteral("– 小于指定尺寸"));
  EXPECT_EQ(At(3, Qt::DisplayRole).toString(), QString());
}

TEST_F(ResultColumn, StandsBesideTheName) {
  auto* list = ui_.Find<QTableView>(ui_.program.form1.MSF);
  EXPECT_EQ(list->horizontalHeader()->visualIndex(model().ResultColumn()), 1);
  EXPECT_EQ(list->horizontalHeader()->visualIndex(0), 0);
}

TEST_F(ResultColumn, IsEmptyAgainWhenAnotherRunStarts) {
  ui_.program.files.ForgetResults();
  model().Flush();
  for (int row = 0; row < 4; ++row) EXPECT_EQ(At(row, Qt::DisplayRole).toString(), QString());
  EXPECT_EQ(ui_.program.files.Cell(0, 6), "");
}

TEST_F(ResultColumn, MarksWholeRowsWithoutOutput) {
  const QColor warning = WarningInk(QApplication::palette());
  for (int column = 0; column < 10; ++column) {
    if (column == model().OutcomeColumn()) continue;
    EXPECT_EQ(At(1, Qt::ForegroundRole, column).value<QColor>(), warning);
    EXPECT_EQ(At(1, Qt::ToolTipRole, column).toString(), QStringLiteral("图片已损坏"));
    EXPECT_NE(At(0, Qt::ForegroundRole, column).value<QColor>(), warning);
  }
  EXPECT_EQ(At(0, Qt::ToolTipRole, 0).toString(), QStringLiteral("/in/a.jpg"));
}

TEST_F(ResultColumn, MakesRoomForTheReasons) {
  auto* list = ui_.Find<QTableView>(ui_.program.form1.MSF);
  const int before = list->columnWidth(9);
  ui_.program.files.SetResult(1, job::Result::None, "裁剪区域的宽或高为零，或者超出了图片", 0);
  model().Flush();
  EXPECT_GT(list->columnWidth(9), before);
  EXPECT_LE(list->columnWidth(9), list->viewport()->width() / 3 + 1);
}

// --- What the present settings will make of the rows

class OutcomeColumn : public RunWindow {
 protected:
  OutcomeColumn() {
    ui_.List("/in/a.jpg", 400, 300);
    ui_.List("/in/b.jpg", 40, 30);
    model().Flush();
  }
  FileListModel& model() { return *static_cast<FileListModel*>(ui_.Find<QTableView>(ui_.program.form1.MSF)->model()); }
  QVariant At(int row, int role) { return model().data(model().index(row, model().OutcomeColumn()), role); }
  // Waits until the button says so.
  bool Says(const QString& text) {
    return QTest::qWaitFor([&] { return Named<QAction>("startCut").text() == text; });
  }
  // Cuts nothing off, in per cent.
  void Open() {
    ui_.program.form1.ChCutA.UserEdit("0");
    for (controls::TextBox& margin : ui_.program.form1.TCutValue) margin.UserEdit("0");
  }
};

TEST_F(OutcomeColumn, FollowsTheSettings) {
  Open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return At(0, Qt::DisplayRole).toString() == QStringLiteral("400×300"); }));
  EXPECT_EQ(At(1, Qt::DisplayRole).toString(), QStringLiteral("40×30"));
  EXPECT_FALSE(At(1, Qt::ForegroundRole).isValid());
  EXPECT_EQ(At(0, Qt::ToolTipRole).toString(), QStringLiteral("400 × 300 像素，33.9 × 25.4 毫米（300 DPI）"));
  ui_.program.form1.TCutValue[0].UserEdit("50");
  EXPECT_TRUE(QTest::qWaitFor([&] { return At(0, Qt::DisplayRole).toString() == QStringLiteral("200×300"); }));
}

TEST_F(OutcomeColumn, MarksRowsThatGiveNoFileAndCountsThem) {
  Open();
  ui_.program.form1.ChCutA.UserEdit("1");
  ui_.program.form1.ChFixCut.UserEdit("1");
  ui_.program.form1.TFixWH[0].UserEdit("100");
  ui_.program.form1.TFixWH[1].UserEdit("100");
  ASSERT_TRUE(Says(QStringLiteral("开始裁剪（2 张，其中 1 张裁不出图）")));
  EXPECT_EQ(At(0, Qt::DisplayRole).toString(), QStringLiteral("300×200"));
  EXPECT_EQ(At(1, Qt::DisplayRole).toString(), QStringLiteral("裁不出图"));
  EXPECT_EQ(At(1, Qt::ForegroundRole).value<QColor>(), DangerInk(QApplication::palette()));
  EXPECT_TRUE(At(1, Qt::ToolTipRole).toString().contains(QStringLiteral("宽或高小于 1 像素")));
  ui_.program.form1.TFixWH[0].UserEdit("10");
  ui_.program.form1.TFixWH[1].UserEdit("10");
  EXPECT_TRUE(Says(QStringLiteral("开始裁剪")));
}

TEST_F(OutcomeColumn, CountsAgainWhenTheListChanges) {
  Open();
  ui_.program.form1.ChCutA.UserEdit("1");
  ui_.program.form1.ChFixCut.UserEdit("1");
  ui_.program.form1.TFixWH[0].UserEdit("100");
  ui_.program.form1.TFixWH[1].UserEdit("100");
  ASSERT_TRUE(Says(QStringLiteral("开始裁剪（2 张，其中 1 张裁不出图）")));
  ui_.List("/in/c.jpg", 50, 500);
  EXPECT_TRUE(Says(QStringLiteral("开始裁剪（3 张，其中 2 张裁不出图）")));
  ui_.program.files.Clear();
  EXPECT_TRUE(Says(QStringLiteral("开始裁剪")));
}

TEST_F(OutcomeColumn, ForeseesThatAFileOfSeveralPagesIsNotReplaced) {
  Open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return At(0, Qt::DisplayRole).toString() == QStringLiteral("400×300"); }));
  const std::string path = ui_.world.folder.Write("pages.tif", job::TwoPages(40, 30));
  ui_.List(path, 40, 30);
  ui_.program.form1.ChOver.UserEdit("1");
  EXPECT_TRUE(Says(QStringLiteral("开始裁剪（3 张，其中 1 张裁不出图）")))
      << Named<QAction>("startCut").text().toStdString();
  EXPECT_EQ(At(2, Qt::DisplayRole).toString(), QStringLiteral("裁不出图"));
  EXPECT_EQ(At(2, Qt::ToolTipRole).toString(), QStringLiteral("源文件有 2 页，普通裁剪只取第一页，未覆盖；请用模式 5"));
  ui_.program.form1.ChOver.UserEdit("0");
  EXPECT_TRUE(Says(QStringLiteral("开始裁剪")));
}

TEST_F(OutcomeColumn, SortsByThePixelsOfTheResult) {
  Open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return At(0, Qt::DisplayRole).toString() == QStringLiteral("400×300"); }));
  auto* list = ui_.Find<QTableView>(ui_.program.form1.MSF);
  list->sortByColumn(model().OutcomeColumn(), Qt::AscendingOrder);
  EXPECT_EQ(At(0, Qt::DisplayRole).toString(), QStringLiteral("40×30"));
  list->sortByColumn(model().OutcomeColumn(), Qt::DescendingOrder);
  EXPECT_EQ(At(0, Qt::DisplayRole).toString(), QStringLiteral("400×300"));
}

TEST_F(OutcomeColumn, LeavesManualRunsToTheHand) {
  ui_.program.flags.ManualCutMode = true;
  ui_.program.fBaseOpt.ChInvert.UserEdit("1");
  EXPECT_TRUE(QTest::qWaitFor([&] { return At(0, Qt::DisplayRole).toString() == QStringLiteral("手动"); }));
}

}  // namespace
}  // namespace quillon::ui
