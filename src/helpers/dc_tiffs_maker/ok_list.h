// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "tools/ok_list.h"

namespace quillon::helpers {

using tools::OkList;

// Fails where the file is missing, torn, holds too few lines or names a target or picture by a path that may not be.
host::Status ReadOkList(const host::Files& files, const std::string& path, OkList& order);

// Whether the name of a picture, without folder and extension, fits a regular expression; a rule that is none fits the
// names that hold it. An empty rule fits none.
enum class Letters { AsTheyAre, UpperIsLower };
bool NameFits(const std::string& picture, const std::string& rule, Letters letters);

// Head pictures first, each kind in the order that it had.
void PutHeadsFirst(OkList& order);

}  // namespace quillon::helpers
