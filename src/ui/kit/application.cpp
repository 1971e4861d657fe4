// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/application.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include "ui/kit/theme/icons.h"
#include "ui/kit/theme/theme.h"
#include "ui/kit/toolkit_texts.h"

namespace quillon::ui {

void SetUp(QApplication& application) {
  QApplication::setApplicationName(QStringLiteral("quillon"));
  QApplication::setApplicationDisplayName({});
  QApplication::setApplicationVersion(QStringLiteral(QUILLON_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("quillon"));
  // The main window may be hidden while others work on; it ends the program itself.
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setWindowIcon(ProgramIcon());
  QLocale::setDefault(QLocale(QLocale::Chinese, QLocale::China));
  QApplication::installTranslator(new ToolkitTexts(&application));
  auto* translator = new QTranslator(&application);
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (translator->load(QStringLiteral("qtbase_zh_CN"), folder)) QApplication::installTranslator(translator);
  PreferChineseFonts();
  ApplyTheme(application);
}

}  // namespace quillon::ui
