// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

class QMimeData;

namespace quillon::ui {

// The local files and folders that a drag carries, byte for byte; other addresses are left out.
std::vector<std::string> PathsOf(const QMimeData& data);

}  // namespace quillon::ui
