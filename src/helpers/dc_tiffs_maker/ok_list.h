// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "tools/ok_list.h"

namespace quillon::helpers {

using tools::OkList;

// Reads an order. Fails if the file is missing, damaged or has too few lines, if it has no pictures, or if the target
// or a picture is not an absolute path without "..".
host::Status ReadOkList(const host::Files& files, const std::string& path, OkList& order);

// Returns true if the name of a picture, without folder and extension, matches a regular expression.
// If rule is not a valid expression, a name that contains it matches. An empty rule matches no name.
enum class Case { Sensitive, Insensitive };
bool NameMatches(const std::string& picture, const std::string& rule, Case letterCase);

// Moves the pictures whose names match headRule to the front. Otherwise the order is kept.
void MoveHeadsFirst(OkList& order);

}  // namespace quillon::helpers
