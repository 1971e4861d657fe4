// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

namespace quillon::host {

// Returns true if the failure can have come after the work on a result began, so that a stale output is possible. Asks
// no disk.
bool MayLeaveStaleOutput(const Status& failure);

// Returns true if an older file exists at destination although the run failed to write its result there. The user could
// mistake such a stale output for the result.
// Returns false if the failure came before anything was written (the source is missing, unreadable or of an unknown
// format, or the destination must not be written), and if destination is the source itself.
bool WouldBeStaleOutput(const host::Files& files, const std::string& source, const std::string& destination,
                        const host::Status& failure);

// Moves the file at destination to the trash, so that it does not remain after a failure. Does nothing if it is the
// source.
void DiscardStaleOutput(host::Files& files, const std::string& source, const std::string& destination);

}  // namespace quillon::host
