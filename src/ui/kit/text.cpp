// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/text.h"

#include <QByteArray>
#include <QMimeData>

namespace quillon::ui {
namespace {

constexpr char kScheme[] = "file://";

}  // namespace

// The raw list is parsed here, since QUrl decodes names to Unicode and loses those that are not UTF-8.
std::vector<std::string> PathsOf(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QByteArray& line : data.data(QStringLiteral("text/uri-list")).split('\n')) {
    const QByteArray address = line.trimmed();
    if (!address.startsWith(kScheme)) continue;
    const qsizetype root = address.indexOf('/', sizeof kScheme - 1);  // after an optional host name
    if (root >= 0) paths.push_back(QByteArray::fromPercentEncoding(address.mid(root)).toStdString());
  }
  return paths;
}

}  // namespace quillon::ui
