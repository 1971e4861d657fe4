// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/files/files.h"

namespace quillon::host {

// Whether two looks at a path met the same file with the same content, also where another one was given its times.
inline bool Unchanged(const host::FileFacts& a, const host::FileFacts& b) {
  return a.kind == b.kind && a.size == b.size && a.modified == b.modified && a.changed == b.changed &&
         a.device == b.device && a.inode == b.inode;
}

}  // namespace quillon::host
