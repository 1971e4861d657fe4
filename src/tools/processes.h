// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"

// Helper programs are looked for by name. ASCII upper and lower case do not matter.
namespace quillon::tools {

enum class Want { First, Second };

// Whether a process runs whose name begins with the given one; with Want::Second, whether more than one does. By name
// alone: a process of that name from anywhere counts.
bool ProcessExists(host::Host& host, const std::string& name, Want want = Want::First);

// Whether a process of exactly that name runs.
bool IsProcessRunning(host::Host& host, const std::string& name);

// Ends the first process whose name is or begins with the given one, and only that; 1 when one was ended, else 0. Only
// processes of this user that run from the program folder are ended.
int EndProcess(host::Host& host, const std::string& name);

// Ends all processes of exactly that name, under the same rule. A name that is not running does nothing.
void KillProcessByName(host::Host& host, const std::string& name);

}  // namespace quillon::tools
