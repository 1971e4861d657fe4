// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "host/companion.h"

namespace quillon::host::posix {

// Starts the program file in its folder, as a companion whose standard input is a socket to this process: each request
// is one byte with the handle of the file, each answer one packet. The program inherits no other handle, and its output
// goes to /dev/null. It ends by itself when the socket is closed; destroying the companion kills it.
// Returns nothing if the program cannot be started. May be called from any thread.
std::unique_ptr<Companion> StartCompanion(const std::string& program);

}  // namespace quillon::host::posix
