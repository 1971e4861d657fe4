// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "cli/parse.h"
#include "cli/report/event.h"

namespace quillon::cli {

// The steps and answers of a script file:
//   {"steps": [{"files": [..]}, {"set": {..}}, {"open": ".."}, {"click": ".."}, {"print": [..]}], "answers": {..}}
// Each step holds one verb: files, set, open, close, click, print or out. Where a list is taken a single text is too;
// values of set may be texts, numbers, true and false. The error names the file, and the line or the step. Relative
// paths are taken from folder.
Parsed ParseScript(const std::string& text, const std::string& file, const std::string& folder);

// Two small digits for each byte.
std::string Hex(const std::string& bytes);

// The event as one JSON object, without a line end. A text that is not UTF-8 is shown with U+FFFD, and its bytes stand
// in the object "bytes" under the same field name, in hexadecimal.
std::string JsonLine(const Event& event);

}  // namespace quillon::cli
