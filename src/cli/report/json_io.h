// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "cli/parse.h"
#include "cli/report/event.h"

namespace quillon::cli {

// Parses the steps and answers of a script file:
//   {"steps": [{"files": [..]}, {"set": {..}}, {"open": ".."}, {"click": ".."}, {"print": [..]}], "answers": {..}}
// Each step is an object with one verb: files, set, open, close, click, print or out.
// A single text is accepted in place of a list. The values of set are texts, numbers, true or false.
// Relative paths are resolved against folder. file is the name of the script, for error messages.
// On failure the error of the result names the file, and the line or the number of the step.
Parsed ParseScript(const std::string& text, const std::string& file, const std::string& folder);

// Returns the bytes in hexadecimal, two lower-case digits for each.
std::string Hex(const std::string& bytes);

// Returns the event as one JSON object, without a line end.
// A text that is not UTF-8 is written with U+FFFD for its invalid bytes; the exact bytes follow in hexadecimal, in the
// object "bytes" under the name of the field.
std::string JsonLine(const Event& event);

}  // namespace quillon::cli
