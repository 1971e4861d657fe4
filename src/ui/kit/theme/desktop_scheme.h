// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusVariant>
#include <QObject>

namespace quillon::ui {

// Asks the desktop over D-Bus whether it prefers dark windows, and applies the matching palette when it answers and
// after every change. Does nothing on a desktop without that setting.
class DesktopScheme : public QObject {
  Q_OBJECT

 public:
  explicit DesktopScheme(QObject* parent);

 public slots:
  // Called for every setting of the desktop; those other than the colour scheme are ignored.
  void OnSettingChanged(const QString& space, const QString& key, const QDBusVariant& value);
};

}  // namespace quillon::ui
