// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::host::posix {

// Returns the value of an environment variable, "" if it is not set.
std::string Environment(const char* name);

// Returns the user's home folder: $HOME, or the folder of the account if that is empty; "" if neither is known.
std::string HomeFolder();

// Returns a base folder as freedesktop.org defines the base directories.
// variable is the name of its environment variable; it counts only if it holds an absolute path.
// Otherwise the result is underHome inside the home folder, or "" if there is no home folder.
std::string BaseFolder(const char* variable, const char* underHome);

}  // namespace quillon::host::posix
