// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/source_backup.h"

namespace quillon::host {

host::Status KeepBackup(host::Files& files, const std::string& source) {
  const std::string backup = source + ".bak";
  const auto facts = files.Stat(source);
  if (const auto older = files.Stat(backup)) {
    // A copy has the time of what it was made of.
    if (facts && older->size == facts->size && older->modified == facts->modified) return host::Status::Ok();
    if (host::Status moved = files.Discard(backup); !moved) return moved;
  }
  return files.Copy(source, backup);
}

}  // namespace quillon::host
