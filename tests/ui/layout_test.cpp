// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QProcess>
#include <QProgressBar>
#include <QScrollArea>
#include <QStyleOptionComboBox>
#include <QTableView>
#include <QToolBar>

#include "helpers/dc_tiffs_maker/window/tiffs_window.h"
#include "ui/kit/bind/elided_label.h"
#include "ui/kit/bind/fold_group.h"
#include "ui/kit/bind/number_edit.h"
#include "ui/kit/theme/theme.h"
#include "ui/main/parameter_panel.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

std::string Describe(const QWidget& widget) {
  const auto* label = dynamic_cast<const QLabel*>(&widget);
  return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString() +
         (label ? " \"" + label->text().toStdString() + "\"" : std::string());
}

bool ShowsWholeText(const QWidget& widget) {
  if (dynamic_cast<const ElidedLabel*>(&widget)) return false;
  return dynamic_cast<const QLabel*>(&widget) || dynamic_cast<const QAbstractButton*>(&widget);
}

bool IsInnerLine(const QWidget& widget) {
  const QWidget* parent = widget.parentWidget();
  return dynamic_cast<const QAbstractSpinBox*>(parent) || dynamic_cast<const QComboBox*>(parent);
}

// No widget is smaller than its content.
void ExpectNothingClipped(const QWidget& window, int atLeast = 50) {
  int seen = 0;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible() || widget->objectName().startsWith(QLatin1String("qt_"))) continue;
    // A progress bar without text may be thin.
    const auto* bar = dynamic_cast<const QProgressBar*>(widget);
    if (bar && !bar->isTextVisible()) continue;
    // A header reports the minimum size of a scroll area; the line of a combo box is measured with the box.
    if (dynamic_cast<const QHeaderView*>(widget) || IsInnerLine(*widget)) continue;
    const QSize least = ShowsWholeText(*widget) ? widget->sizeHint() : widget->minimumSizeHint();
    EXPECT_GE(widget->width(), least.width()) << Describe(*widget);
    EXPECT_GE(widget->height(), least.height()) << Describe(*widget);
    ++seen;
  }
  EXPECT_GE(seen, atLeast);
}

// Widgets of one layout do not overlap and stay within their parent.
void ExpectNothingOverlaps(const QWidget& window, int atLeast = 50) {
  int pairs = 0;
  QList<const QWidget*> parents{&window};
  for (const QWidget* parent : window.findChildren<QWidget*>()) parents << parent;
  for (const QWidget* parent : parents) {
    if (!parent->isVisible() || !parent->layout()) continue;
    QList<QWidget*> children = parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    children.removeIf([](const QWidget* child) { return !child->isVisible() || child->isWindow(); });
    for (qsizetype i = 0; i < children.size(); ++i) {
      const bool bar = dynamic_cast<const QToolBar*>(parent);
      EXPECT_TRUE(bar || parent->rect().contains(children[i]->geometry()))
          << Describe(*children[i]) << " leaves " << Describe(*parent);
      for (qsizetype j = i + 1; j < children.size(); ++j) {
        EXPECT_FALSE(children[i]->geometry().intersects(children[j]->geometry()))
            << Describe(*children[i]) << " over " << Describe(*children[j]);
        ++pairs;
      }
    }
  }
  EXPECT_GE(pairs, atLeast);
}

void ExpectListsShowTheirEntry(const QWidget& window) {
  for (const QComboBox* list : window.findChildren<QComboBox*>()) {
    QStyleOptionComboBox option;
    option.initFrom(list);
    option.editable = list->isEditable();
    const QRect field = list->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list);
    EXPECT_GE(field.width(), list->fontMetrics().horizontalAdvance(list->currentText())) << Describe(*list);
  }
}

void ExpectNumbersHaveRoom(const QWidget& window) {
  for (const NumberEdit* edit : window.findChildren<NumberEdit*>()) {
    const auto* line = edit->findChild<QLineEdit*>();
    EXPECT_GE(line->width(), line->fontMetrics().horizontalAdvance(QStringLiteral("99999")) + 4) << Describe(*edit);
  }
}

void ExpectNoSidewaysScrolling(const QWidget& window) {
  for (const QScrollArea* area : window.findChildren<QScrollArea*>()) {
    EXPECT_LE(area->widget()->minimumSizeHint().width(), area->viewport()->width()) << Describe(*area);
  }
}

void ExpectHeadersWhole(UiWorld& ui) {
  const auto* list = ui.Find<QTableView>(ui.program.form1.MSF);
  for (int column = 0; column < list->model()->columnCount(); ++column) {
    const QString words = list->model()->headerData(column, Qt::Horizontal).toString();
    EXPECT_GE(list->columnWidth(column), list->fontMetrics().horizontalAdvance(words) + 4) << words.toStdString();
  }
}

// --- At the scale factor of this process, light and dark, at rest and during a run

class LayoutAtThisScale : public ::testing::TestWithParam<bool> {};

TEST_P(LayoutAtThisScale, Fits) {
  ApplyScheme(GetParam() ? Scheme::Dark : Scheme::Light);
  UiWorld ui;
  ui.program.fCutPre.Show();
  // The initial size on a large screen.
  ui.window.Options().resize(ui.window.Options().findChild<QScrollArea*>()->widget()->sizeHint());
  for (const QSize size : {QSize(1280, 760), QSize(1920, 1000)}) {
    ui.window.resize(size);
    UiWorld::Turn();
    ASSERT_EQ(ui.window.size(), size);
    for (QWidget* window : {static_cast<QWidget*>(&ui.window), static_cast<QWidget*>(&ui.window.Options())}) {
      SCOPED_TRACE(window->objectName().toStdString());
      ExpectNothingClipped(*window);
      ExpectNothingOverlaps(*window);
      ExpectListsShowTheirEntry(*window);
      ExpectNumbersHaveRoom(*window);
      ExpectNoSidewaysScrolling(*window);
    }
    ExpectHeadersWhole(ui);
  }
  ui.program.form1.BeginRun();
  ui.program.observer->RunStarted(300'000);
  UiWorld::Turn();
  ExpectNothingClipped(ui.window);
  ExpectNothingOverlaps(ui.window);
  ui.program.form1.EndRun();
  ApplyScheme(Scheme::Light);
}

TEST_P(LayoutAtThisScale, TheTiffMakerFits) {
  ApplyScheme(GetParam() ? Scheme::Dark : Scheme::Light);
  host::testing::TestHost world;
  helpers::TiffsWindow window(world.host, {.sharpen = true, .pictures = {"/a.jpg"}},
                              "请添加图片，选择保存位置，再点“开始”。", "");
  for (const QSize size : {window.minimumSizeHint(), QSize(1200, 700)}) {
    window.resize(size);
    window.show();
    UiWorld::Turn();
    ExpectNothingClipped(window, 20);
    ExpectNothingOverlaps(window, 20);
    ExpectListsShowTheirEntry(window);
  }
  ApplyScheme(Scheme::Light);
}

INSTANTIATE_TEST_SUITE_P(Schemes, LayoutAtThisScale, ::testing::Bool());

// --- A scale factor applies to a whole process

class LayoutAtScale : public ::testing::TestWithParam<const char*> {};

TEST_P(LayoutAtScale, Fits) {
  QProcess other;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::fromLatin1(GetParam()));
  other.setProcessEnvironment(environment);
  other.setProcessChannelMode(QProcess::MergedChannels);
  other.start(QCoreApplication::applicationFilePath(),
              {QStringLiteral("--gtest_filter=*LayoutAtThisScale*"), QStringLiteral("--gtest_color=no")});
  ASSERT_TRUE(other.waitForFinished(120'000));
  const QByteArray output = other.readAll();
  EXPECT_EQ(other.exitCode(), 0) << output.toStdString();
  EXPECT_TRUE(output.contains("[  PASSED  ] 4 tests")) << output.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Factors, LayoutAtScale, ::testing::Values("1.25", "1.5", "2"));

// --- Small screens: every control can be reached

TEST(SmallWindow, ScrollsInsteadOfCutting) {
  UiWorld ui;
  ui.window.resize(640, 400);  // 1280 x 800 at a scale of 2
  UiWorld::Turn();
  EXPECT_EQ(ui.window.size(), QSize(640, 400));
  ExpectNothingClipped(ui.window);
  ui.window.Options().resize(420, 320);
  UiWorld::Turn();
  ExpectNothingClipped(ui.window.Options());
}

}  // namespace
}  // namespace quillon::ui
