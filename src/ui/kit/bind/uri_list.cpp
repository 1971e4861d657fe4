// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/uri_list.h"

#include <QByteArray>
#include <QMimeData>

namespace quillon::ui {
namespace {

constexpr char kScheme[] = "file://";

}  // namespace

// Read from the raw list, since QUrl would pass names through Unicode and lose those that are not UTF-8.
std::vector<std::string> PathsOf(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QByteArray& line : data.data(QStringLiteral("text/uri-list")).split('\n')) {
    const QByteArray address = line.trimmed();
    if (!address.startsWith(kScheme)) continue;
    const qsizetype root = address.indexOf('/', sizeof kScheme - 1);  // past a host name
    if (root >= 0) paths.push_back(QByteArray::fromPercentEncoding(address.mid(root)).toStdString());
  }
  return paths;
}

}  // namespace quillon::ui
