// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string>
#include <vector>

#include "base/utf8.h"

class QMimeData;

namespace quillon::ui {

// Converts the text of a record for the screen; bytes that are not UTF-8 become U+FFFD.
// The result is for display only: a file name may not survive the way back.
inline QString Shown(const std::string& text) { return QString::fromStdString(base::DisplayText(text)); }

// Converts the text of a widget for a record, as UTF-8.
inline std::string Bytes(const QString& text) { return text.toStdString(); }

// Returns the local files and folders of a drag or a clipboard, byte for byte. Other addresses are left out.
std::vector<std::string> PathsOf(const QMimeData& data);

}  // namespace quillon::ui
