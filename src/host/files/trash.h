// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/disk.h"
#include "host/files/sync_queue.h"
#include "host/status.h"

namespace quillon::host {

// Moves a file, a folder or a link into the trash as the desktop keeps it (freedesktop.org trash, version 1.0): the
// home trash for what lies on its disk, else the trash at the top of the disk that the file lies on. The note for
// bringing it back is written first; a taken name gets a number. Nothing is ever copied.
Status MoveToTrash(Disk& disk, SyncQueue& syncs, const std::string& path);

}  // namespace quillon::host
