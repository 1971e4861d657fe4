// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string>

#include "base/utf8.h"

namespace quillon::ui {

// A record's text as the screen shows it; bytes that are not UTF-8 become U+FFFD.
inline QString Shown(const std::string& text) { return QString::fromStdString(base::DisplayText(text)); }

// What a user typed, for a record.
inline std::string Bytes(const QString& text) { return text.toStdString(); }

}  // namespace quillon::ui
