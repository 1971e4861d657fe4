// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::host {

// A path as the text of an address: every byte but ASCII letters, digits and -_.!~*'()/ as %XX.
std::string PercentEncoded(const std::string& path);

}  // namespace quillon::host
