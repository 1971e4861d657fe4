// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <unordered_map>

namespace quillon::job {

enum class Wrote { No, Yes };

// Sources that another process has handled, and whether a result of each stands.
using DoneElsewhere = std::unordered_map<std::string, Wrote>;

}  // namespace quillon::job
