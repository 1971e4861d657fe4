// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QRegularExpression>
#include <cmath>
#include <memory>

#include "ui/kit/theme/desktop_scheme.h"
#include "ui/kit/theme/theme.h"
#include "ui/ui_world.h"

namespace quillon::ui {
namespace {

double Channel(double part) { return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); }

double Luminance(const QColor& colour) {
  return 0.2126 * Channel(colour.redF()) + 0.7152 * Channel(colour.greenF()) + 0.0722 * Channel(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const double one = Luminance(a) + 0.05;
  const double other = Luminance(b) + 0.05;
  return std::max(one, other) / std::min(one, other);
}

class Palettes : public ::testing::TestWithParam<Scheme> {};

// Contrast 4.5 is needed for text; 3 is enough for hints and symbols.
TEST_P(Palettes, CanBeRead) {
  const QPalette palette = PaletteFor(GetParam());
  const QColor base = palette.color(QPalette::Base);
  const QColor window = palette.color(QPalette::Window);
  EXPECT_GE(Contrast(palette.color(QPalette::Text), base), 7);
  EXPECT_GE(Contrast(palette.color(QPalette::WindowText), window), 7);
  EXPECT_GE(Contrast(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)), 7);
  EXPECT_GE(Contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)), 4);
  EXPECT_GE(Contrast(palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase)), 7);
  for (const QColor& ink : {AccentInk(palette), WarningInk(palette), GoodInk(palette), DangerInk(palette)}) {
    EXPECT_GE(Contrast(ink, base), 4.5) << ink.name().toStdString();
    EXPECT_GE(Contrast(ink, window), 4) << ink.name().toStdString();
  }
  EXPECT_GE(Contrast(FaintInk(palette), base), 3);
  EXPECT_GE(Contrast(palette.color(QPalette::Disabled, QPalette::WindowText), window), 2);
  EXPECT_EQ(IsDark(palette), GetParam() == Scheme::Dark);
}

INSTANTIATE_TEST_SUITE_P(Schemes, Palettes, ::testing::Values(Scheme::Light, Scheme::Dark));

QColor Darkest(const QIcon& icon, QIcon::Mode mode = QIcon::Normal) {
  const QImage image = icon.pixmap(QSize(24, 24), mode).toImage();
  QColor found(Qt::white);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor colour = image.pixelColor(x, y);
      if (colour.alpha() > 250 && colour.lightness() < found.lightness()) found = colour;
    }
  }
  return found;
}

TEST(Icons, FollowThePalette) {
  const QIcon icon = LineIcon(QStringLiteral("browse"));
  ApplyScheme(Scheme::Light);
  const QColor onLight = Darkest(icon);
  const QColor off = Darkest(icon, QIcon::Disabled);
  ApplyScheme(Scheme::Dark);
  const QColor onDark = Darkest(icon);
  ApplyScheme(Scheme::Light);
  EXPECT_LT(onLight.lightness(), 60);
  EXPECT_GT(onDark.lightness(), 150);
  EXPECT_GT(off.lightness(), onLight.lightness() + 40);
}

TEST(Icons, AreAllThere) {
  for (const char* name :
       {"add-files", "read-folder", "input-folder", "output-folder", "cut", "stop", "options", "browse", "drop-here"}) {
    const QImage image = LineIcon(QString::fromLatin1(name)).pixmap(32, 32).toImage();
    ASSERT_FALSE(image.isNull()) << name;
    int painted = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) painted += image.pixelColor(x, y).alpha() > 100;
    }
    EXPECT_GT(painted, 40) << name;
  }
  EXPECT_FALSE(ProgramIcon().isNull());
}

TEST(Theme, ChangesUnderAnOpenWindow) {
  UiWorld ui;
  const auto ground = [&ui] { return ui.window.grab().toImage().pixelColor(4, ui.window.height() - 4); };
  ApplyScheme(Scheme::Dark);
  UiWorld::Turn();
  EXPECT_LT(ground().lightness(), 100);
  ApplyScheme(Scheme::Light);
  UiWorld::Turn();
  EXPECT_GT(ground().lightness(), 200);
}

TEST(Theme, FieldsAreAsDarkAsTheyCount) {
  UiWorld ui;  // with open options and pixels, their size counts
  job::Form1& form = ui.program.form1;
  QWidget& idle = *ui.Find<QWidget>(form.TCutValue[3]);
  QWidget& counted = *ui.Find<QWidget>(form.TQuality);
  const auto ink = [](const QWidget& widget) { return widget.palette().color(QPalette::Text); };
  ASSERT_TRUE(idle.isEnabled());
  ASSERT_FALSE(counted.isEnabled());
  for (const Scheme scheme : {Scheme::Dark, Scheme::Light}) {
    ApplyScheme(scheme);
    UiWorld::Turn();
    const QPalette palette = QApplication::palette();
    EXPECT_EQ(ink(idle), FaintInk(palette));
    EXPECT_EQ(ink(counted), palette.color(QPalette::Active, QPalette::Text));
  }
  EXPECT_EQ(idle.toolTip().section(u'\n', 0, 0), QStringLiteral("本项不起作用：裁出的大小由高级选项的“保留裁剪”决定"));
  EXPECT_EQ(counted.toolTip().section(u'\n', 0, 1), QStringLiteral("请先启用“压缩”\n没有启用“压缩”，也按这个品质写入"));
  form.BeginRun();
  EXPECT_EQ(ink(counted), QApplication::palette().color(QPalette::Disabled, QPalette::Text));
  form.EndRun();
  form.ChCutA.Set(false);
  EXPECT_EQ(ink(idle), QApplication::palette().color(QPalette::Active, QPalette::Text));
  EXPECT_FALSE(idle.toolTip().contains(QStringLiteral("不起作用")));
}

TEST(Theme, FollowsTheDesktopsWish) {
  DesktopScheme scheme(nullptr);
  const auto change = [&scheme](const char* space, const char* key, uint value) {
    scheme.OnSettingChanged(QString::fromLatin1(space), QString::fromLatin1(key), QDBusVariant(value));
  };
  ApplyScheme(Scheme::Light);
  change("org.freedesktop.appearance", "accent-color", 1);
  change("org.gnome.desktop", "color-scheme", 1);
  EXPECT_FALSE(IsDark(QApplication::palette()));
  change("org.freedesktop.appearance", "color-scheme", 1);
  EXPECT_TRUE(IsDark(QApplication::palette()));
  change("org.freedesktop.appearance", "color-scheme", 2);
  EXPECT_FALSE(IsDark(QApplication::palette()));
}

TEST(Theme, ChineseUsesItsSimplifiedShapes) {
  EXPECT_TRUE(QApplication::font().families().contains(QStringLiteral("Noto Sans CJK SC")));
}

// --- The dialogs of the toolkit

// The text without what is the same in every language: mnemonics, format names, numbers.
QString LatinIn(QString text) {
  static const QRegularExpression same(QStringLiteral("\\(&[A-Z]\\)|HTML|#[0-9a-f]{6}"));
  static const QRegularExpression latin(QStringLiteral("[A-Za-z]+"));
  return latin.match(text.remove(same)).captured();
}

void ExpectChinese(const QWidget& dialog, int least) {
  int seen = 0;
  const auto check = [&seen](const QString& text) {
    EXPECT_EQ(LatinIn(text), QString()) << text.toStdString();
    seen += !text.isEmpty();
  };
  for (const auto* label : dialog.findChildren<QLabel*>()) check(label->text());
  for (const auto* button : dialog.findChildren<QAbstractButton*>()) {
    check(button->text());
    check(button->toolTip());
  }
  EXPECT_GE(seen, least);
}

TEST(ToolkitTexts, ColourDialogIsChinese) {
  QColorDialog dialog;
  dialog.setOption(QColorDialog::DontUseNativeDialog);
  dialog.show();
  ExpectChinese(dialog, 12);
}

TEST(ToolkitTexts, FileDialogIsChinese) {
  QFileDialog dialog;
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.show();
  ExpectChinese(dialog, 10);
}

TEST(ToolkitTexts, MenuOfATextBoxIsChinese) {
  QLineEdit line;
  const std::unique_ptr<QMenu> menu(line.createStandardContextMenu());
  ASSERT_GE(menu->actions().size(), 6);
  for (const QAction* action : menu->actions()) {
    EXPECT_EQ(LatinIn(action->text().section(u'\t', 0, 0)), QString()) << action->text().toStdString();
  }
}

}  // namespace
}  // namespace quillon::ui
