// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace quillon::base {

// UTF-16, little end first, behind a byte order mark, of well-formed UTF-8 (see IsUtf8); of other bytes only what
// stands in front of the first bad one.
std::string Utf16WithMark(std::string_view utf8);

}  // namespace quillon::base
