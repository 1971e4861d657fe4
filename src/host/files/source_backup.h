// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

namespace quillon::host {

// Keeps a source beside itself, as "<source>.bak", before its own result takes its place. Another file of that name, as
// that of an earlier cut, goes to the trash; where no trash takes it, nothing is done and the failure says so.
host::Status KeepBackup(host::Files& files, const std::string& source);

}  // namespace quillon::host
