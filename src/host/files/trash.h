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

// A file in the trash that TakeOutOfTrash can bring back.
struct Trashed {
  std::string path;  // where it was
  std::string file;  // where it is
  std::string note;
};

// Puts a file that is about to be replaced into the trash as MoveToTrash does, but if the disk has hard links, the file
// keeps its name until the new one gets it. A run that is killed in between leaves a file under the name, too.
Status PutIntoTrash(Disk& disk, SyncQueue& syncs, const std::string& path, Trashed& trashed);

// Undoes PutIntoTrash if the file was not replaced after all. A file that cannot be brought back stays in the trash.
void TakeOutOfTrash(Disk& disk, const Trashed& trashed);

// Creates the trash folder that accepts the file of that path, unless it exists, and gives it.
Status PrepareTrash(Disk& disk, const std::string& path, std::string& trashFolder);

}  // namespace quillon::host
