// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusVariant>
#include <QObject>

namespace quillon::ui {

// Asks the desktop whether it prefers dark windows, and puts on the palette that fits, now and at each change.
class DesktopScheme : public QObject {
  Q_OBJECT

 public:
  explicit DesktopScheme(QObject* parent);

 public slots:
  void OnSettingChanged(const QString& space, const QString& key, const QDBusVariant& value);
};

}  // namespace quillon::ui
