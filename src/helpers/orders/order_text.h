// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/files.h"

// Order files: texts that the program writes for its helpers, a value a line.
namespace quillon::helpers {

// UTF-16 with a byte order mark, or UTF-8 with or without one, as UTF-8. Nothing where it is cut inside a character or
// holds half a pair.
std::optional<std::string> DecodeOrder(std::string_view bytes);

// Without their ends, "\r\n" or "\n"; one behind the last line adds none.
std::vector<std::string> LinesOf(std::string_view text);

// The lines of an order file. Missing: there is none. TooLarge: above 64 MB. Damaged: no text, or torn.
host::Status ReadOrder(const host::Files& files, const std::string& path, std::vector<std::string>& lines);

// Whether an order may name this path: absolute, and nowhere leading back up.
bool IsPlainPath(std::string_view path);

}  // namespace quillon::helpers
