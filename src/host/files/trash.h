// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/disk.h"
#include "host/files/sync_queue.h"
#include "host/status.h"

namespace quillon::host {

// Moves a file, a folder or a link into the desktop's trash (freedesktop.org rules for the trash, version 1.0).
// The home trash is used if it is on the same disk, otherwise a trash at the top of the disk of the file.
// The note that restores the file is written first. If the name is taken in the trash, a number is added.
// Nothing is ever copied: if the rename fails, the file stays where it is and the status says so in one sentence.
Status MoveToTrash(Disk& disk, SyncQueue& syncs, const std::string& path);

// Creates the trash folder that accepts the file of that path, unless it exists, and gives it.
Status PrepareTrash(Disk& disk, const std::string& path, std::string& trashFolder);

}  // namespace quillon::host
