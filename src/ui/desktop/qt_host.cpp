// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/desktop/qt_host.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QScreen>
#include <QStandardPaths>
#include <QUrl>

namespace quillon::ui {
namespace {

constexpr int kLongestTurnMilliseconds = 20;
constexpr int kAnswerMilliseconds = 500;  // an unresponsive gsettings must not block the program

// Returns the path in a setting, which may be quoted or a file URL, or "" if no such file exists.
std::string PathIn(QString text) {
  text = text.trimmed();
  if (text.size() >= 2 && (text.startsWith(u'\'') || text.startsWith(u'"'))) text = text.mid(1, text.size() - 2);
  const QString path = text.startsWith(QLatin1String("file:")) ? QUrl(text).toLocalFile() : text;
  return QFileInfo(path).isFile() ? QFile::encodeName(path).toStdString() : std::string();
}

// Returns the last capture of a pattern in a settings file. Desktops write one entry for each screen.
std::string LastIn(const QString& file, const char* pattern) {
  QFile settings(file);
  if (!settings.open(QIODevice::ReadOnly)) return {};
  const QString text = QString::fromUtf8(settings.readAll());
  std::string found;
  auto matches = QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption).globalMatch(text);
  while (matches.hasNext()) {
    const std::string path = PathIn(matches.next().captured(1));
    if (!path.empty()) found = path;
  }
  return found;
}

QString AskGSettings(const QString& schema, const QString& key) {
  QProcess process;
  process.start(QStringLiteral("gsettings"), {QStringLiteral("get"), schema, key}, QIODevice::ReadOnly);
  if (!process.waitForFinished(kAnswerMilliseconds) || process.exitCode() != 0) return {};
  return QString::fromUtf8(process.readAllStandardOutput());
}

}  // namespace

std::string WallpaperOf(const QString& desktop, const QString& configHome, const DesktopSetting& setting) {
  const auto is = [&desktop](const char* name) { return desktop.contains(QLatin1String(name), Qt::CaseInsensitive); };
  const auto from = [&setting](const char* schema, const char* key) {
    return PathIn(setting(QLatin1String(schema), QLatin1String(key)));
  };
  if (is("KDE")) {
    return LastIn(configHome + QStringLiteral("/plasma-org.kde.plasma.desktop-appletsrc"), "^Image=(.+)$");
  }
  if (is("XFCE")) {
    return LastIn(configHome + QStringLiteral("/xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml"),
                  "name=\"last-image\"[^>]*value=\"([^\"]+)\"");
  }
  if (is("MATE")) return from("org.mate.background", "picture-filename");
  if (is("Cinnamon")) return from("org.cinnamon.desktop.background", "picture-uri");
  if (is("GNOME") || is("Unity") || is("Budgie") || is("UKUI")) {
    return from(is("UKUI") ? "org.mate.background" : "org.gnome.desktop.background",
                is("UKUI") ? "picture-filename" : "picture-uri");
  }
  return {};
}

void QtPump::Turn() { QCoreApplication::processEvents(QEventLoop::AllEvents, kLongestTurnMilliseconds); }

base::Size QtScreen::DesktopSize() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QSizeF size = screen->size() * screen->devicePixelRatio();
  return {qRound(size.width()), qRound(size.height())};
}

int QtScreen::Dpi() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return qRound(screen->logicalDotsPerInch() * screen->devicePixelRatio());
}

std::string QtScreen::Wallpaper() {
  return WallpaperOf(qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
                     QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), AskGSettings);
}

}  // namespace quillon::ui
