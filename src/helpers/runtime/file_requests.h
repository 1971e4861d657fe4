// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

// The helper's end of a companion (host/companion.h): questions about files come through its standard input.
namespace quillon::helpers {

// Waits for the next file and returns its handle, which the caller closes. Returns nothing if the program has ended.
std::optional<int> NextFile();

// Answers the question about the latest file, with 1 to 4096 bytes. Fails silently if the program has ended.
void Answer(std::string_view text);

}  // namespace quillon::helpers
