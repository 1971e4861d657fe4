// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

#include "host/files/files.h"

// Compares two stats of a path: same file? same content? Every comparison of files uses one of these functions.
namespace quillon::host {

// The result of one stat, stored to recognise the file at a later one. Times are nanoseconds since 1970.
struct FileStamp {
  std::uint64_t size = 0;
  std::int64_t modified = 0;
  std::uint64_t inode = 0;
  std::int64_t changed = 0;
  std::uint64_t device = 0;  // 0 in a stamp that was read from text

  bool operator==(const FileStamp&) const = default;
};

inline FileStamp StampOf(const FileFacts& facts) {
  return {facts.size, facts.modified, facts.inode, facts.changed, facts.device};
}
// Of the file at path, links followed. Nothing if no file stands there.
std::optional<FileStamp> StampOf(const Files& files, const std::string& path);

// --- While the disk stays mounted.

// The same file with the same content, also if another one was given its times.
inline bool Unchanged(const FileStamp& before, const FileStamp& now) { return before == now; }
inline bool Unchanged(const FileFacts& before, const FileFacts& now) {
  return before.kind == now.kind && StampOf(before) == StampOf(now);
}

// Device and inode: the same for all names of one file.
using FileId = std::pair<std::uint64_t, std::uint64_t>;

// Facts: FileFacts or DiskFacts.
template <class Facts>
FileId IdOf(const Facts& facts) {
  return {facts.device, facts.inode};
}

// Two paths lead to the same file.
template <class Facts>
bool SameFile(const Facts& a, const Facts& b) {
  return IdOf(a) == IdOf(b);
}

// --- Also if the disk was mounted anew meanwhile, for what a journal keeps. Removable and network disks number their
// files anew with each mount, and some do not store the time of the last change: it is that of the content then.

// The same size and time, so very probably the same bytes; maybe in another file. Stats: FileStamp, FileFacts or
// DiskFacts.
template <class Stats>
bool SameContent(const Stats& before, const Stats& now) {
  return before.size == now.size && before.modified == now.modified;
}
// The same file, whatever its content is now: it was not replaced as a whole.
bool SameFileOverMounts(const FileStamp& before, const FileStamp& now);
// The same file with the same content.
inline bool UnchangedOverMounts(const FileStamp& before, const FileStamp& now) {
  return SameContent(before, now) && SameFileOverMounts(before, now);
}

// As text for journals: size, modified, inode and changed in decimal, with a blank between them. The device is left
// out, since the path leads to the disk, whose number may differ after each mount.
std::ostream& operator<<(std::ostream& out, const FileStamp& stamp);
std::istream& operator>>(std::istream& in, FileStamp& stamp);

}  // namespace quillon::host
