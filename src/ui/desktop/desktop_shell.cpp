// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/desktop/desktop_shell.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QUrl>
#include <functional>

namespace quillon::ui {
namespace {

const QString kFileManager = QStringLiteral("org.freedesktop.FileManager1");
constexpr int kTimeoutMilliseconds = 5000;

// Returns the file URL of a path, byte for byte, without a detour over Unicode.
QString AddressOf(const std::string& path) {
  return QStringLiteral("file://") +
         QString::fromLatin1(QByteArray::fromStdString(path).toPercentEncoding(QByteArrayLiteral("/")));
}

// Sends the request without waiting for the answer, since a file manager may take long to start. otherwise runs if
// there is no session bus, or later if the call fails.
void AskFileManager(const QString& method, const std::string& path, const std::function<void()>& otherwise) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return otherwise();
  QDBusMessage call = QDBusMessage::createMethodCall(kFileManager, QStringLiteral("/org/freedesktop/FileManager1"),
                                                     kFileManager, method);
  call << QStringList{AddressOf(path)} << QString();
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, kTimeoutMilliseconds));
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, otherwise] {
    if (watcher->isError()) otherwise();
    watcher->deleteLater();
  });
}

}  // namespace

void DesktopShell::OpenFolder(const std::string& folder) {
  AskFileManager(QStringLiteral("ShowFolders"), folder, [this, folder] { fallback_.OpenFolder(folder); });
}

void DesktopShell::Reveal(const std::string& file) {
  AskFileManager(QStringLiteral("ShowItems"), file, [this, file] { fallback_.Reveal(file); });
}

}  // namespace quillon::ui
