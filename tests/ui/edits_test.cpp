// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QToolButton>
#include <QWheelEvent>

#include "ui/kit/bind/number_edit.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

// --- Typed edits

class Edits : public ::testing::Test {
 protected:
  job::Form1& form() { return ui_.program.form1; }
  NumberEdit& Margin(std::size_t index) { return *ui_.Find<NumberEdit>(form().TCutValue[index]); }
  QString Sentence() {
    const auto* notice = ui_.window.findChild<QLabel*>(QStringLiteral("notice"));
    return notice->isVisible() ? notice->text() : QString();
  }

  QLabel* Note() {
    const auto notes = ui_.window.findChildren<QLabel*>(QStringLiteral("fieldNote"));
    return notes.isEmpty() ? nullptr : notes.front();
  }

  UiWorld ui_;
};

TEST_F(Edits, AreAppliedWhenTheyAreFinished) {
  Margin(0).setFocus();
  Margin(0).selectAll();
  QTest::keyClicks(&Margin(0), QStringLiteral("12"));
  EXPECT_EQ(form().TCutValue[0].Value(), "0");
  QTest::keyClick(&Margin(0), Qt::Key_Return);
  EXPECT_EQ(form().TCutValue[0].Value(), "12");
}

TEST_F(Edits, AreAppliedBeforeACommandActs) {
  Margin(0).setFocus();
  Margin(0).selectAll();
  QTest::keyClicks(&Margin(0), QStringLiteral("9"));
  std::string seen;
  form().menuNormalCut.SetHandler([&] { seen = form().TCutValue[0].Value(); });
  ui_.Find<QAction>(form().menuNormalCut)->trigger();
  EXPECT_EQ(seen, "9");
}

TEST_F(Edits, AreAppliedBeforeTheCutButtonActs) {
  Margin(1).setFocus();
  Margin(1).selectAll();
  QTest::keyClicks(&Margin(1), QStringLiteral("8"));
  std::string seen;
  form().menuNormalCut.SetHandler([&] { seen = form().TCutValue[1].Value(); });
  ui_.window.findChild<QAction*>(QStringLiteral("startCut"))->trigger();
  EXPECT_EQ(seen, "8");
}

TEST_F(Edits, BeyondTheLimitShowWhatTheRecordMadeOfThem) {
  form().ChCutA.Set(false);
  const int beeps = ui_.world.boxes.Beeps();
  Put(ui_, form().TCutValue[2], "95");
  EXPECT_EQ(form().TCutValue[2].Value(), "90");
  EXPECT_EQ(Margin(2).Text(), QStringLiteral("90"));
  EXPECT_EQ(ui_.world.boxes.Beeps(), beeps + 1);
}

TEST_F(Edits, ThatAreRefusedComeBackWithASentence) {
  const int beeps = ui_.world.boxes.Beeps();
  Put(ui_, form().TCutValue[0], "-");
  EXPECT_EQ(form().TCutValue[0].Value(), "0");
  EXPECT_EQ(Margin(0).Text(), QStringLiteral("0"));
  const QString reason = QStringLiteral("只接受数字，例如 12.5；也可以带单位，例如 35mm、3.5cm、2in");
  EXPECT_EQ(Sentence(), QStringLiteral("“左”") + reason);
  EXPECT_EQ(ui_.world.boxes.Beeps(), beeps + 1);
  EXPECT_TRUE(Note()->isVisible());
  EXPECT_EQ(Note()->text(), reason);
}

TEST_F(Edits, ThatAreNoNumberAreRefusedUnderTheField) {
  Put(ui_, form().TCutValue[0], "7");
  for (const char* text : {"1e9", "0x10", "1.5.2", "abc", "1,500"}) {
    Put(ui_, form().TCutValue[0], text);
    EXPECT_EQ(form().TCutValue[0].Value(), "7") << text;
    EXPECT_EQ(Margin(0).Text(), QStringLiteral("7")) << text;
    ASSERT_TRUE(Note()) << text;
    EXPECT_TRUE(Note()->isVisible()) << text;
    const QRect field(Margin(0).mapTo(&Margin(0), QPoint(0, 0)), Margin(0).size());
    const QRect note(Note()->mapTo(&ui_.window, QPoint(0, 0)), Note()->size());
    EXPECT_FALSE(note.intersects(field.translated(Margin(0).mapTo(&ui_.window, QPoint(0, 0))))) << text;
  }
  Put(ui_, form().TCutValue[0], "12,5");
  EXPECT_EQ(form().TCutValue[0].Value(), "12.5");
  EXPECT_FALSE(Note()->isVisible());
}

TEST_F(Edits, ShowAtMostSixDigits) {
  form().TCutValue[0].SetNumber(12.345678901);
  EXPECT_EQ(Margin(0).Text(), QStringLiteral("12.3457"));
  Margin(0).setFocus();
  QTest::keyClick(&Margin(0), Qt::Key_Return);
  EXPECT_EQ(form().TCutValue[0].Value(), "12.345678901");
}

TEST_F(Edits, OfANumberAcceptFullWidthDigits) {
  Put(ui_, form().TCutValue[0], "12");
  Margin(0).findChild<QLineEdit*>()->setText(QStringLiteral("３４"));
  QTest::keyClick(&Margin(0), Qt::Key_Return);
  EXPECT_EQ(form().TCutValue[0].Value(), "34");
  EXPECT_EQ(Margin(0).Text(), QStringLiteral("34"));
}

TEST_F(Edits, OfAWholeNumberAcceptNoPoint) {
  form().ChFixCut.Set(true);
  Put(ui_, form().TFixWH[0], "1.5");
  EXPECT_EQ(form().TFixWH[0].Value(), "1062");
  EXPECT_EQ(Note()->text(), QStringLiteral("只接受 1 到 500000 的整数，例如 300；也可以带单位，例如 35mm、3.5cm、2in"));
}

TEST_F(Edits, ByTheArrowsActAtOnce) {
  Margin(0).setFocus();
  QTest::keyClick(&Margin(0), Qt::Key_Up);
  QTest::keyClick(&Margin(0), Qt::Key_Up);
  EXPECT_EQ(form().TCutValue[0].Value(), "2");
  QTest::keyClick(&Margin(0), Qt::Key_Down);
  EXPECT_EQ(form().TCutValue[0].Value(), "1");
}

TEST_F(Edits, ByTheArrowsStopAtTheLimits) {
  NumberEdit edit;
  edit.SetText(QStringLiteral("98"));
  edit.SetLimits({30, 99});
  QStringList steps;
  edit.SetStepHandler([&steps](const QString& text) { steps << text; });
  edit.stepBy(5);
  edit.stepBy(-500);
  EXPECT_EQ(steps, (QStringList{QStringLiteral("99"), QStringLiteral("30")}));
}

TEST_F(Edits, ByTheArrowsStartFromTheWholeNumber) {
  NumberEdit edit;
  QStringList steps;
  edit.SetStepHandler([&steps](const QString& text) { steps << text; });
  for (const char* typed : {"12,5", "35mm", "1e9"}) {
    edit.SetText(QString::fromLatin1(typed));
    edit.stepBy(1);
  }
  EXPECT_EQ(steps, QStringList{QStringLiteral("13.5")});
}

TEST_F(Edits, AreNotMadeByAWheelThatPasses) {
  Margin(0).clearFocus();
  form().CmbCutStyle.Select(0);
  auto* list = ui_.Find<QComboBox>(form().CmbCutStyle);
  list->clearFocus();
  for (QWidget* widget : {static_cast<QWidget*>(&Margin(0)), static_cast<QWidget*>(list)}) {
    QWheelEvent wheel(QPointF(5, 5), widget->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    wheel.accept();
    QApplication::sendEvent(widget, &wheel);
    EXPECT_FALSE(wheel.isAccepted());
  }
  EXPECT_EQ(form().TCutValue[0].Value(), "0");
  EXPECT_EQ(form().CmbCutStyle.Index(), 0);
}

TEST_F(Edits, OfAListThatIsPutBackShowTheOldEntry) {
  form().CmbCutStyle.SetHandler([this] {
    if (form().CmbCutStyle.Index() > 3) form().CmbCutStyle.Select(0);
  });
  Put(ui_, form().CmbCutStyle, "圆角矩形裁剪");
  EXPECT_EQ(form().CmbCutStyle.Index(), 0);
  EXPECT_EQ(ui_.Find<QComboBox>(form().CmbCutStyle)->currentIndex(), 0);
}

TEST_F(Edits, OfAFolderShowTheWholePath) {
  Put(ui_, form().LOutDir, "/tmp/out/");
  EXPECT_EQ(form().LOutDir.Value(), "/tmp/out");
  auto* line = ui_.Find<QLineEdit>(form().LOutDir);
  EXPECT_EQ(line->text(), QStringLiteral("/tmp/out"));
  EXPECT_EQ(line->toolTip(), QStringLiteral("/tmp/out"));
}

TEST_F(Edits, LeaveAFolderAloneThatWasOnlyViewed) {
  form().LOutDir.SetText("/tmp/\xff/x");
  auto* line = ui_.Find<QLineEdit>(form().LOutDir);
  line->setFocus();
  QTest::keyClick(line, Qt::Key_Return);
  EXPECT_EQ(form().LOutDir.Value(), "/tmp/\xff/x");
}

TEST_F(Edits, OfAColourGoThroughTheDialog) {
  Put(ui_, ui_.program.fBaseOpt.PBoardColor, "#FF8000");
  EXPECT_EQ(ui_.program.fBaseOpt.PBoardColor.Colour(), (base::Colour{0x0080FF}));
}

TEST_F(Edits, GoOnWorkingWhenTheListChanges) {
  form().CmbOutType.SetItems({"甲", "乙"});
  auto* list = ui_.Find<QComboBox>(form().CmbOutType);
  ASSERT_EQ(list->count(), 2);
  EXPECT_EQ(list->itemText(1), QStringLiteral("乙"));
  EXPECT_EQ(list->currentIndex(), 0);
  Put(ui_, form().CmbOutType, "乙");
  EXPECT_EQ(form().CmbOutType.Index(), 1);
}

TEST_F(Edits, TheBrowseButtonsStandForTheMenu) {
  ui_.world.dialogs.ChooseFolderNext(ui_.world.folder.Path());
  QToolButton* browse = nullptr;
  for (QToolButton* button : ui_.window.findChildren<QToolButton*>()) {
    if (button->accessibleName() == QStringLiteral("选择输出目录")) browse = button;
  }
  ASSERT_NE(browse, nullptr);
  browse->click();
  EXPECT_EQ(form().LOutDir.Value(), ui_.world.folder.Path());
}

}  // namespace
}  // namespace quillon::ui
