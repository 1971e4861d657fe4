// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::host::posix {

// An environment variable, "" where it is not set.
std::string Environment(const char* name);

// The user's home folder: $HOME, else the account's; "" where neither tells one.
std::string HomeFolder();

// A base folder of the desktop's rules: the variable where it holds an absolute path, else the given folder under the
// home folder ("" without a home folder).
std::string BaseFolder(const char* variable, const char* underHome);

}  // namespace quillon::host::posix
