// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files.h"

namespace quillon::imaging {

// An older file under the name of a result does not outlive a failure to make the new one, so that nobody takes it for
// the result: it goes to the trash. It stays where nothing was begun (the source is not there, may not be read or is of
// no known kind, or the result may not be written) and where it is the source itself.
void DropOlderResult(host::Files& files, const std::string& source, const std::string& destination,
                     const host::Status& failure);

}  // namespace quillon::imaging
