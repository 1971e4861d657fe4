// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::helpers {

// The fields of a parameter text, between tabs; an empty text has none. Blanks, quotes and empty fields stay.
std::vector<std::string> Fields(std::string_view text);

// The words of a parameter text, between blanks. What stands between double quotes belongs to one word, blanks
// included, and the quotes go; "" is an empty word. Nothing escapes a quote, so that no other sign in a path means
// anything. A quote without its other half reaches to the end.
std::vector<std::string> Words(std::string_view text);

}  // namespace quillon::helpers
