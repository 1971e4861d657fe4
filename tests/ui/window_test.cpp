// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QBuffer>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTableView>

#include "ui/kit/bind/fold_group.h"
#include "ui/kit/bind/grid_view.h"
#include "ui/main/thumbnails.h"
#include "ui/preview/preview_canvas.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

class WindowTest : public ::testing::Test {
 protected:
  job::Form1& form() { return ui_.program.form1; }
  QAction& Action(const controls::Menu& menu) { return *ui_.Find<QAction>(menu); }

  // Drags files over a widget and drops them; returns false if they are not accepted.
  bool Drop(QWidget& widget, const QByteArray& list) {
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), list);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&widget, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &drop);
    UiWorld::Turn();
    return true;
  }

  std::string WhiteSquare() { return Square(Qt::white); }
  std::string Square(Qt::GlobalColor colour) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImage square(8, 8, QImage::Format_RGB32);
    square.fill(colour);
    square.save(&buffer, "BMP");
    return bytes.toStdString();
  }

  UiWorld ui_;
};

// --- Menus

TEST_F(WindowTest, TheMenuBarHoldsTheRecordsMenusInOrder) {
  QStringList names;
  for (const QAction* action : ui_.window.menuBar()->actions()) names << action->objectName();
  names.removeAll(QString());  // the view menu is not part of the record
  QStringList wanted;
  for (const controls::Control* control : form().Controls()) {
    if (control->GetKind() == controls::Kind::Menu && !control->Parent()) wanted << Shown(control->Name());
  }
  EXPECT_EQ(names, wanted);
}

TEST_F(WindowTest, EveryMenuEntryHasItsShortcut) {
  for (const controls::Control* control : form().Controls()) {
    if (control->GetKind() != controls::Kind::Menu) continue;
    const auto& menu = static_cast<const controls::Menu&>(*control);
    EXPECT_EQ(Action(menu).shortcut(), QKeySequence(Shown(menu.Shortcut()))) << menu.Name();
    EXPECT_TRUE(!menu.Parent() || !menu.Shortcut().empty()) << menu.Name();
  }
}

TEST_F(WindowTest, NoTwoActionsShareAShortcut) {
  QHash<QKeySequence, QString> seen;
  for (const QAction* action : ui_.window.findChildren<QAction*>()) {
    if (action->shortcut().isEmpty()) continue;
    EXPECT_FALSE(seen.contains(action->shortcut()))
        << action->objectName().toStdString() << " and " << seen[action->shortcut()].toStdString();
    seen[action->shortcut()] = action->objectName();
  }
  EXPECT_GE(seen.size(), 25);
}

TEST_F(WindowTest, AMenuEntryRunsItsHandler) {
  int clicks = 0;
  form().MenuChSizeFormat.SetHandler([&] { ++clicks; });
  Action(form().MenuChSizeFormat).trigger();
  EXPECT_EQ(clicks, 1);
}

TEST_F(WindowTest, TheDeleteKeyBelongsToATextBeforeItBelongsToTheList) {
  ui_.List("/in/a.jpg");
  form().MSF.Select(1);
  auto* line = ui_.Find<QLineEdit>(form().LOutDir);
  ui_.window.activateWindow();
  line->setFocus();
  line->setText(QStringLiteral("ab"));
  line->home(false);
  QTest::keyClick(line, Qt::Key_Delete);
  EXPECT_EQ(line->text(), QStringLiteral("b"));
  EXPECT_EQ(ui_.program.files.RowCount(), 1u);
  auto* list = ui_.Find<QTableView>(form().MSF);
  list->setFocus();
  Action(form().MenuDelSelected).trigger();
  EXPECT_EQ(ui_.program.files.RowCount(), 0u);
  EXPECT_EQ(list->model()->rowCount(), 0);
}

TEST_F(WindowTest, DeletingAgainRemovesTheNextRow) {
  for (const char* name : {"a", "b", "c", "d"}) ui_.List(std::string("/in/") + name + ".jpg");
  auto* list = ui_.Find<QTableView>(form().MSF);
  form().MSF.Select(2);
  list->setFocus();
  Action(form().MenuDelSelected).trigger();
  Action(form().MenuDelSelected).trigger();
  ASSERT_EQ(ui_.program.files.RowCount(), 2u);
  EXPECT_EQ(ui_.program.files.Row(0).name, "a");
  EXPECT_EQ(ui_.program.files.Row(1).name, "d");
  EXPECT_EQ(form().MSF.Selected(), 2u);
  EXPECT_EQ(list->currentIndex().row(), 1);
}

TEST_F(WindowTest, AHeaderSortsTheViewAndTheOrderIsKeptByChoice) {
  for (const char* name : {"10", "9", "8"}) ui_.List(std::string("/in/") + name + ".jpg");
  auto* list = ui_.Find<GridView>(form().MSF);
  list->sortByColumn(0, Qt::AscendingOrder);
  const auto shown = [&](int row) { return list->model()->index(row, 0).data().toString(); };
  EXPECT_EQ(shown(0), QStringLiteral("8"));
  EXPECT_EQ(shown(2), QStringLiteral("10"));
  EXPECT_EQ(ui_.program.files.Row(0).name, "10");
  list->setCurrentIndex(list->model()->index(2, 0));
  EXPECT_EQ(form().MSF.Selected(), 1u);
  ui_.window.findChild<QAction*>(QStringLiteral("viewKeepOrder"))->trigger();
  EXPECT_EQ(ui_.program.files.Row(0).name, "8");
  EXPECT_EQ(ui_.program.files.Row(2).name, "10");
  EXPECT_EQ(shown(0), QStringLiteral("8"));
}

TEST_F(WindowTest, TheListIsSortedFromTheMenuToo) {
  for (const char* path : {"/in/b.jpg", "/in/a.jpg"}) ui_.List(path);
  auto* list = ui_.Find<GridView>(form().MSF);
  list->Model().Flush();
  auto* sorts = ui_.window.findChild<QMenu*>(QStringLiteral("viewSort"));
  const auto pick = [&](int entry) {
    emit sorts->aboutToShow();
    sorts->actions().at(entry)->trigger();
  };
  const auto first = [&] { return list->model()->index(0, 0).data().toString(); };
  pick(0);
  EXPECT_EQ(first(), QStringLiteral("a"));
  pick(0);
  EXPECT_EQ(first(), QStringLiteral("b"));
  pick(0);
  EXPECT_EQ(first(), QStringLiteral("a"));
  EXPECT_EQ(sorts->actions().at(0)->text(), list->model()->headerData(0, Qt::Horizontal).toString());
  pick(static_cast<int>(sorts->actions().size()) - 1);
  EXPECT_EQ(first(), QStringLiteral("b"));
  EXPECT_FALSE(list->Model().IsSorted());
}

TEST_F(WindowTest, NoShortcutIsGivenTwice) {
  QStringList shortcuts;
  for (const QAction* action : ui_.window.findChildren<QAction*>()) {
    if (!action->shortcut().isEmpty()) shortcuts << action->shortcut().toString();
  }
  EXPECT_TRUE(shortcuts.contains(QStringLiteral("Ctrl+Shift+O")));
  EXPECT_TRUE(shortcuts.contains(QStringLiteral("Ctrl+Shift+T")));
  EXPECT_EQ(shortcuts.removeDuplicates(), 0);
}

TEST_F(WindowTest, TheListShowsSmallPicturesByChoice) {
  const std::string file = ui_.world.folder.Write("in/a.bmp", WhiteSquare());
  ui_.List(file);
  auto* list = ui_.Find<GridView>(form().MSF);
  list->Model().Flush();
  const int low = list->rowHeight(0);
  const auto picture = [&] { return list->model()->index(0, 0).data(Qt::DecorationRole).value<QPixmap>(); };
  EXPECT_TRUE(picture().isNull());
  auto* choice = ui_.window.findChild<QAction*>(QStringLiteral("viewThumbnails"));
  choice->setChecked(true);
  EXPECT_GT(list->rowHeight(0), low);
  const auto middle = [&] { return picture().toImage().pixelColor(picture().width() / 2, picture().height() / 2); };
  EXPECT_TRUE(QTest::qWaitFor([&] { return middle() == QColor(Qt::white); }));
  EXPECT_EQ(ui_.program.Setting("ListThumbnails"), "1");
  choice->setChecked(false);
  EXPECT_EQ(list->rowHeight(0), low);
  EXPECT_TRUE(picture().isNull());
}

TEST_F(WindowTest, ARunRenewsTheSmallPictures) {
  const std::string file = ui_.world.folder.Write("in/a.bmp", WhiteSquare());
  ui_.List(file);
  auto* list = ui_.Find<GridView>(form().MSF);
  list->Model().Flush();
  ui_.window.findChild<QAction*>(QStringLiteral("viewThumbnails"))->setChecked(true);
  const auto middle = [&] {
    const auto picture = list->model()->index(0, 0).data(Qt::DecorationRole).value<QPixmap>();
    return picture.toImage().pixelColor(picture.width() / 2, picture.height() / 2);
  };
  ASSERT_TRUE(QTest::qWaitFor([&] { return middle() == QColor(Qt::white); }));
  ui_.world.folder.Write("in/a.bmp", Square(Qt::black));
  ui_.program.observer->RunEnded({});
  EXPECT_TRUE(QTest::qWaitFor([&] { return middle() == QColor(Qt::black); }));
}

TEST_F(WindowTest, HidingSmallPicturesWaitsForNone) {
  QSemaphore answer;
  bool loaded = false;
  Thumbnails thumbnails([&loaded] { loaded = true; });
  thumbnails.Show([&answer](const std::string&, QSize) {
    answer.acquire();
    return QImage();
  });
  thumbnails.Of("/silent/a.jpg");
  thumbnails.Hide();  // would never return
  answer.release();
  QTest::qWait(0);
  EXPECT_FALSE(loaded);
}

TEST_F(WindowTest, APictureThatCannotBeReadLeavesNoOtherOnShow) {
  const std::string file = ui_.world.folder.Write("in/a.bmp", WhiteSquare());
  ui_.List(file);
  ui_.List(ui_.world.folder.Write("in/b.jpg", "no picture"));
  auto* list = ui_.Find<GridView>(form().MSF);
  list->Model().Flush();
  list->selectRow(0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return ui_.program.fCutPre.preview.Path() == file; }));
  list->selectRow(1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return ui_.program.fCutPre.preview.Path().empty(); }));
}

TEST_F(WindowTest, NewsDoesNotHideTheCountsOfTheRun) {
  job::RunTotals totals;
  totals.written = 3;
  ui_.program.observer->RunEnded(totals);
  ui_.window.ShowNotice(QStringLiteral("处理完毕！失败：0"));
  const auto* counts = ui_.window.findChild<QLabel*>(QStringLiteral("statusWord"));
  const auto* news = ui_.window.findChild<QLabel*>(QStringLiteral("notice"));
  EXPECT_TRUE(counts->isVisible());
  EXPECT_TRUE(counts->text().contains(QStringLiteral("写出 3")));
  EXPECT_TRUE(news->isVisible());
  EXPECT_FALSE(news->geometry().intersects(counts->geometry()));
}

// --- Windows follow their records

TEST_F(WindowTest, TheOptionsFollowTheirRecord) {
  EXPECT_TRUE(ui_.window.Options().isVisible());
  EXPECT_EQ(ui_.window.Options().windowTitle(), Shown(ui_.program.fBaseOpt.Title()));
  ui_.window.Options().close();
  EXPECT_FALSE(ui_.program.fBaseOpt.Visible());
  EXPECT_FALSE(ui_.window.Options().isVisible());
  ui_.program.fBaseOpt.ChInvert.Set(true);
  Action(form().MenuBaseOptions).trigger();
  EXPECT_TRUE(ui_.program.fBaseOpt.Visible());
  EXPECT_TRUE(ui_.window.Options().isVisible());
  EXPECT_TRUE(ui_.Find<QAbstractButton>(ui_.program.fBaseOpt.ChInvert)->isChecked());
}

TEST_F(WindowTest, EscapeHidesTheOptionsAndKeepsWhatWasTyped) {
  controls::TextBox& box = ui_.program.fBaseOpt.TSmalS[0];
  auto* edit = ui_.Find<QWidget>(box);
  edit->setFocus();
  QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(edit, QStringLiteral("77"));
  QTest::keyClick(&ui_.window.Options(), Qt::Key_Escape);
  EXPECT_FALSE(ui_.window.Options().isVisible());
  EXPECT_EQ(box.Value(), "77");
}

TEST_F(WindowTest, ThePreviewIsDockedAndComesBack) {
  auto* dock = ui_.window.findChild<QDockWidget*>(QStringLiteral("FCutPre"));
  ASSERT_NE(dock, nullptr);
  ui_.program.fCutPre.Show();
  EXPECT_TRUE(dock->isVisible());
  EXPECT_EQ(dock->windowTitle(), QStringLiteral("裁剪框预览"));
  dock->close();
  EXPECT_FALSE(ui_.program.fCutPre.Visible());
  EXPECT_FALSE(dock->isVisible());
  ui_.window.findChild<QAction*>(QStringLiteral("viewPreview"))->trigger();
  EXPECT_TRUE(ui_.program.fCutPre.Visible());
  EXPECT_TRUE(dock->isVisible());
  dock->setFloating(true);
  EXPECT_EQ(dock->windowTitle(), Shown(ui_.program.fCutPre.Title()));
}

TEST_F(WindowTest, RemembersToCutAsFramed) {
  EXPECT_FALSE(form().ChAsFramed.On());
  form().ChAsFramed.UserEdit("1");
  EXPECT_EQ(ui_.program.Setting("ChAsFramed"), "1");
  form().ChAsFramed.UserEdit("0");
  EXPECT_EQ(ui_.program.Setting("ChAsFramed"), "0");
  EXPECT_TRUE(UiWorld({1920, 1080}, "1").program.form1.ChAsFramed.On());
  EXPECT_FALSE(UiWorld({1920, 1080}, "0").program.form1.ChAsFramed.On());
}

// --- Closing

TEST_F(WindowTest, StaysWhenTheUserCancelsTheQuestion) {
  ui_.world.boxes.Answer("关闭程序", host::Reply::Cancel);
  EXPECT_FALSE(ui_.window.close());
  EXPECT_TRUE(ui_.window.isVisible());
  EXPECT_EQ(ui_.world.boxes.Count("关闭程序"), 1);
}

TEST_F(WindowTest, GoesWhenTheUserAgrees) {
  ui_.world.boxes.Answer("关闭程序", host::Reply::Ok);
  EXPECT_TRUE(ui_.window.close());
  EXPECT_TRUE(ui_.program.Ended());
  EXPECT_FALSE(ui_.window.isVisible());
}

TEST_F(WindowTest, GoesByTheMenuToo) {
  ui_.world.boxes.Answer("关闭程序", host::Reply::Ok);
  Action(form().MenuExit).trigger();
  EXPECT_TRUE(ui_.program.Ended());
  EXPECT_FALSE(ui_.window.isVisible());
}

TEST_F(WindowTest, StopsARunAndClosesAfterIt) {
  ui_.world.boxes.Answer("终止当前操作", host::Reply::Ok);
  ui_.program.flags.Busy = true;
  form().BeginRun();
  EXPECT_FALSE(ui_.window.close());
  EXPECT_TRUE(ui_.program.flags.StopRequested);
  EXPECT_TRUE(ui_.window.isVisible());
  form().EndRun();
  ui_.program.flags.Busy = false;
  EXPECT_TRUE(QTest::qWaitFor([&] { return ui_.program.Ended(); }));
  EXPECT_EQ(ui_.world.boxes.Count("关闭程序"), 0);
  EXPECT_FALSE(ui_.window.isVisible());
}

TEST_F(WindowTest, ClosesAfterARunThatIsStoppingAlready) {
  ui_.world.boxes.Answer("终止当前操作", host::Reply::Ok);
  ui_.program.flags.Busy = true;
  form().BeginRun();
  form().MenuStop.UserClick();
  EXPECT_FALSE(ui_.window.close());
  EXPECT_TRUE(ui_.program.flags.CloseRequested);
  form().EndRun();
  ui_.program.flags.Busy = false;
  EXPECT_TRUE(QTest::qWaitFor([&] { return ui_.program.Ended(); }));
}

TEST_F(WindowTest, StaysDuringARunThatIsNotToStop) {
  ui_.world.boxes.Answer("终止当前操作", host::Reply::Cancel);
  ui_.program.flags.Busy = true;
  form().BeginRun();
  EXPECT_FALSE(ui_.window.close());
  EXPECT_FALSE(ui_.program.flags.StopRequested);
  EXPECT_FALSE(ui_.program.flags.CloseRequested);
  form().EndRun();
  ui_.program.flags.Busy = false;
  ui_.world.boxes.Answer("关闭程序", host::Reply::Cancel);
  EXPECT_FALSE(ui_.window.close());
  EXPECT_EQ(ui_.world.boxes.Count("关闭程序"), 1);
}

TEST_F(WindowTest, HidesEntriesOfPartsThatAreNotThere) {
  form().HideMissingEntries();
  EXPECT_FALSE(Action(form().MenuPdfOps).isVisible());
  EXPECT_FALSE(Action(form().MenuPdfCut).isVisible());
  EXPECT_FALSE(Action(form().MenuUnitConvert).isVisible());
  for (const controls::Menu* menu :
       {&form().menuNormalCut, &form().MenuBaseOptions, &form().MenuGifCut, &form().MenuMulCut}) {
    EXPECT_TRUE(Action(*menu).isVisible()) << menu->Name();
  }
}

TEST_F(WindowTest, AddsTheFilesOfAnotherStart) {
  ui_.List("/in/old.jpg");
  ui_.program.flags.Busy = true;
  EXPECT_FALSE(ui_.window.AddFiles({"/in/x.jpg"}));
  ui_.program.flags.Busy = false;
  const std::string file = ui_.world.folder.Write("in/a.jpg", "no picture");
  EXPECT_TRUE(ui_.window.AddFiles({file}));
  EXPECT_EQ(ui_.world.boxes.Count("获取图片的尺寸数据为0"), 1);
  EXPECT_EQ(ui_.program.files.RowCount(), 1u);
}

// --- Drag and drop

TEST_F(WindowTest, FilesDroppedAnywhereAreListed) {
  const std::string file = ui_.world.folder.Write("in/a.jpg", "no picture");
  EXPECT_TRUE(Drop(ui_.window, QByteArray("file://") + file.c_str()));
  EXPECT_EQ(ui_.world.boxes.Count("每次拖放将清除"), 1);
}

TEST_F(WindowTest, NothingElseIsAcceptedByADrop) {
  EXPECT_FALSE(Drop(ui_.window, "http://somewhere/a.jpg"));
  form().MenuFiles.SetEnabled(false);
  EXPECT_FALSE(Drop(ui_.window, "file:///tmp/a.jpg"));
  EXPECT_TRUE(ui_.world.boxes.All().empty());
}

TEST_F(WindowTest, AFolderDroppedOnItsLineIsChosen) {
  EXPECT_TRUE(Drop(*ui_.Find<QLineEdit>(form().LOutDir), "file:///tmp/%E8%BE%93%E5%87%BA"));
  EXPECT_EQ(form().LOutDir.Value(), "/tmp/输出");
}

// --- Groups

TEST_F(WindowTest, GroupsFoldAndUnfold) {
  auto* group = ui_.Find<FoldGroup>(form().Frame2);
  ASSERT_NE(group, nullptr);
  auto* box = ui_.Find<QWidget>(form().TCutValue[0]);
  EXPECT_TRUE(box->isVisible());
  group->Header()->click();
  EXPECT_FALSE(group->Header()->isChecked());
  EXPECT_FALSE(box->isVisible());
  group->Header()->setFocus();
  QTest::keyClick(group->Header(), Qt::Key_Space);
  EXPECT_TRUE(box->isVisible());
}

TEST_F(WindowTest, TheMarginsGroupShowsTheUnit) {
  auto* header = ui_.Find<FoldGroup>(form().Frame2)->Header();
  EXPECT_EQ(header->text(), Shown(form().Frame2.Caption()));
  form().ChCutA.Set(!form().ChCutA.On());
  EXPECT_EQ(header->text(), Shown(form().Frame2.Caption()));
}

// --- The counts

TEST_F(WindowTest, TheStatusBarShowsCountAndMaxima) {
  form().LStatus.SetText("文件数：3  最大值：10x20像素");
  EXPECT_EQ(ui_.Find<QLabel>(form().LStatus)->text(), QStringLiteral("文件数：3  最大值：10x20像素"));
}

}  // namespace
}  // namespace quillon::ui
