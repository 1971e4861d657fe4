// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace quillon::base {

// Returns the bytes as well-formed UTF-8 for display: each byte that does not start a valid sequence becomes U+FFFD.
// File names are arbitrary bytes, so the user must only see them through this function.
std::string DisplayText(std::string_view bytes);

// Returns true if all bytes are well-formed UTF-8. An empty text is.
bool IsUtf8(std::string_view bytes);

// Returns UTF-8 text as UTF-16 in little-endian order, after a byte order mark (FF FE).
// Conversion stops at the first byte that is not well-formed UTF-8; the text before it is returned.
std::string Utf16WithMark(std::string_view utf8);

}  // namespace quillon::base
