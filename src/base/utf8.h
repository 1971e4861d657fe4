// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace quillon::base {

// The bytes as well-formed UTF-8 for display: every byte that starts no valid sequence becomes U+FFFD. Names of files
// are bytes and are only ever shown through this.
std::string DisplayText(std::string_view bytes);

// True when the bytes are well-formed UTF-8.
bool IsUtf8(std::string_view bytes);

}  // namespace quillon::base
