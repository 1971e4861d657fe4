// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/theme/desktop_scheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include "ui/kit/theme/theme.h"

namespace quillon::ui {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kSpace = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");
constexpr uint kPrefersDark = 1;

// Portals wrap the value once or twice, depending on their version.
uint SchemeIn(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value.toUInt();
}

}  // namespace

DesktopScheme::DesktopScheme(QObject* parent) : QObject(parent) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(kService, kPath, kSettings, QStringLiteral("SettingChanged"), this,
              SLOT(OnSettingChanged(QString, QString, QDBusVariant)));
  QDBusMessage question = QDBusMessage::createMethodCall(kService, kPath, kSettings, QStringLiteral("Read"));
  question << kSpace << kKey;
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isValid()) OnSettingChanged(kSpace, kKey, reply.value());
    watcher->deleteLater();
  });
}

void DesktopScheme::OnSettingChanged(const QString& space, const QString& key, const QDBusVariant& value) {
  if (space != kSpace || key != kKey) return;
  ApplyScheme(SchemeIn(QVariant::fromValue(value)) == kPrefersDark ? Scheme::Dark : Scheme::Light);
}

}  // namespace quillon::ui
