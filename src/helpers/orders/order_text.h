// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/files.h"

// Order files: text files that the program writes for its helpers, with one value a line.
namespace quillon::helpers {

// Converts UTF-16 with a byte order mark, or UTF-8 with or without one, to UTF-8 without one.
// Returns nullopt if UTF-16 is cut inside a character or has an unpaired surrogate.
std::optional<std::string> DecodeOrder(std::string_view bytes);

// Splits a text into lines, which end with "\r\n" or "\n". A line end at the end of the text does not start another
// line.
std::vector<std::string> LinesOf(std::string_view text);

// Reads the lines of an order file.
// Errors: Missing if it does not exist, TooLarge above 64 MB, Damaged if it is not valid text.
host::Status ReadOrder(const host::Files& files, const std::string& path, std::vector<std::string>& lines);

// Returns true if an order may contain this path: it must be absolute and must not contain "..".
bool IsPlainPath(std::string_view path);

}  // namespace quillon::helpers
