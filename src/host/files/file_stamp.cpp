// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/file_stamp.h"

#include <istream>
#include <ostream>

namespace quillon::host {

std::optional<FileStamp> StampOf(const Files& files, const std::string& path) {
  const std::optional<FileFacts> facts = files.Stat(path);
  if (!facts || facts->kind != FileKind::File) return std::nullopt;
  return StampOf(*facts);
}

// A rename or new rights move the time of the last change and keep the inode; a new mount may do the opposite.
bool SameFileOverMounts(const FileStamp& before, const FileStamp& now) {
  if (before.inode == now.inode) return true;
  if (before.size != now.size) return false;
  const bool changeTimeNotStored = now.changed == now.modified && now.modified == before.modified;
  return before.changed == now.changed || changeTimeNotStored;
}

std::ostream& operator<<(std::ostream& out, const FileStamp& stamp) {
  return out << stamp.size << ' ' << stamp.modified << ' ' << stamp.inode << ' ' << stamp.changed;
}

std::istream& operator>>(std::istream& in, FileStamp& stamp) {
  stamp.device = 0;
  return in >> stamp.size >> stamp.modified >> stamp.inode >> stamp.changed;
}

}  // namespace quillon::host
