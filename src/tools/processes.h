// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"

// Finds and ends helper processes by name. ASCII case is ignored.
namespace quillon::tools {

enum class Want { First, Second };

// Returns true if a process runs whose name starts with name; with Want::Second, if at least two do.
// Processes from any folder count.
bool ProcessExists(host::Host& host, const std::string& name, Want want = Want::First);

// Returns true if a process with exactly that name runs.
bool IsProcessRunning(host::Host& host, const std::string& name);

// Kills the first process whose name starts with name. Returns 1 if one was killed, otherwise 0.
// Only processes of the current user that were started from the program folder are killed.
int EndProcess(host::Host& host, const std::string& name);

// Kills all processes with exactly that name, under the same condition. Does nothing if there is none.
void KillProcessByName(host::Host& host, const std::string& name);

}  // namespace quillon::tools
