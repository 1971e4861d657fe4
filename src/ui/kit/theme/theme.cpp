// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/theme/theme.h"

#include <QApplication>
#include <QFont>
#include <QStyle>
#include <QToolTip>

#include "ui/kit/theme/desktop_scheme.h"
#include "ui/kit/theme/flat_style.h"

namespace quillon::ui {
namespace {

// The colours of a palette, as 0xAARRGGBB.
struct Inks {
  QRgb window, base, alternate, text, button, faint, disabled, highlight, light, mid, dark, tip, link;
};

constexpr Inks kLight = {0xfff4f5f7, 0xffffffff, 0xfff7f9fb, 0xff1f2329, 0xfffbfbfc, 0xff7d8590, 0xffa4abb4,
                         0xff2f6fde, 0xffffffff, 0xffc8cdd4, 0xffa3a9b2, 0xff2a2e35, 0xff2f6fde};
constexpr Inks kDark = {0xff24272c, 0xff1b1d21, 0xff202327, 0xffe4e7eb, 0xff32363d, 0xff8d949e, 0xff6b727c,
                        0xff3574e2, 0xff3d424a, 0xff15171a, 0xff121416, 0xff3a3f47, 0xff6ea8ff};

QColor Pick(const QPalette& palette, QRgb onLight, QRgb onDark) { return IsDark(palette) ? onDark : onLight; }

}  // namespace

QPalette PaletteFor(Scheme scheme) {
  const Inks& inks = scheme == Scheme::Dark ? kDark : kLight;
  QPalette palette;
  palette.setColor(QPalette::Window, inks.window);
  palette.setColor(QPalette::WindowText, inks.text);
  palette.setColor(QPalette::Base, inks.base);
  palette.setColor(QPalette::AlternateBase, inks.alternate);
  palette.setColor(QPalette::Text, inks.text);
  palette.setColor(QPalette::PlaceholderText, inks.faint);
  palette.setColor(QPalette::Button, inks.button);
  palette.setColor(QPalette::ButtonText, inks.text);
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::Light, inks.light);
  palette.setColor(QPalette::Midlight, inks.light);
  palette.setColor(QPalette::Mid, inks.mid);
  palette.setColor(QPalette::Dark, inks.dark);
  palette.setColor(QPalette::Shadow, inks.dark);
  palette.setColor(QPalette::Highlight, inks.highlight);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, inks.link);
  palette.setColor(QPalette::LinkVisited, inks.link);
  palette.setColor(QPalette::ToolTipBase, inks.tip);
  palette.setColor(QPalette::ToolTipText, Qt::white);
  for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, inks.disabled);
  }
  palette.setColor(QPalette::Disabled, QPalette::Base, inks.window);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, inks.mid);
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText, inks.disabled);
  return palette;
}

bool IsDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < 128; }

QColor AccentInk(const QPalette& palette) { return Pick(palette, 0xff2f6fde, 0xff6ea8ff); }
QColor WarningInk(const QPalette& palette) { return Pick(palette, 0xffb3400a, 0xffffab5e); }
QColor GoodInk(const QPalette& palette) { return Pick(palette, 0xff1a7f37, 0xff57c873); }
QColor DangerInk(const QPalette& palette) { return Pick(palette, 0xffd1242f, 0xffff7b72); }
QColor FaintInk(const QPalette& palette) { return palette.color(QPalette::Active, QPalette::PlaceholderText); }

void ApplyScheme(Scheme scheme) {
  const QPalette palette = PaletteFor(scheme);
  QApplication::setPalette(palette);
  QToolTip::setPalette(palette);
}

void ApplyTheme(QApplication& application) {
  const QByteArray wanted = qgetenv("QUILLON_THEME");
  if (wanted == "dark" || wanted == "light") {
    QApplication::setStyle(new FlatStyle);
    ApplyScheme(wanted == "dark" ? Scheme::Dark : Scheme::Light);
    return;
  }
  // If the palette is still that of the style, the desktop has not set colours of its own.
  const QStyle* style = QApplication::style();
  const bool fusion = style->name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0;
  const bool untouched = QApplication::palette().window() == style->standardPalette().window();
  if (!fusion || !untouched) return;
  QApplication::setStyle(new FlatStyle);
  ApplyScheme(Scheme::Light);
  new DesktopScheme(&application);
}

void PreferChineseFonts() {
  QFont font = QApplication::font();
  QStringList families = font.families();
  // Added after the font of the desktop: it keeps its Latin characters.
  for (const char* family : {"Noto Sans CJK SC", "Source Han Sans SC", "WenQuanYi Micro Hei"}) {
    families << QString::fromLatin1(family);
  }
  font.setFamilies(families);
  QApplication::setFont(font);
}

}  // namespace quillon::ui
