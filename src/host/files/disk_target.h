// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/disk.h"

namespace quillon::host {

// Where a save really goes: links followed to the end, a missing end included.
struct DiskTarget {
  std::string path;
  bool exists = false;
  DiskFacts facts;  // of what exists
};

// Fails for what may not be replaced: a folder, a device or pipe, a read-only file, links in a circle.
Status FindTarget(Disk& disk, const std::string& path, DiskTarget& target);

}  // namespace quillon::host
