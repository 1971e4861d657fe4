// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

namespace quillon::host {

// Whether an older file stands under the name of a result that could not be made, so that it would pass for the result.
// It does not where nothing was begun (the source is not there, may not be read or is of no known kind, or the result
// may not be written) nor where it is the source itself.
bool WouldBeStaleOutput(const host::Files& files, const std::string& source, const std::string& destination,
                        const host::Status& failure);

// Moves such a file to the trash, so that it does not outlive the failure.
void DiscardStaleOutput(host::Files& files, const std::string& source, const std::string& destination,
                        const host::Status& failure);

}  // namespace quillon::host
