// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/disk_target.h"

#include <cerrno>

#include "base/path_text.h"
#include "host/files/entry_path.h"

namespace quillon::host {
namespace {

constexpr int kMostLinks = 40;
constexpr unsigned kOwnerWrites = 0200;

Status FollowLinks(Disk& disk, DiskTarget& target) {
  for (int i = 0; i < kMostLinks; ++i) {
    const int looked = disk.StatLink(target.path, target.facts);
    if (looked == -ENOENT) return Status::Ok();
    if (looked < 0) return Status::FromErrno(-looked);
    target.exists = !target.facts.link;
    if (target.exists) return Status::Ok();
    std::string next;
    const int read = disk.ReadLink(target.path, next);
    if (read < 0) return Status::FromErrno(-read);
    target.path = next.starts_with('/') ? next : base::JoinPath(SplitEntry(target.path).folder, next);
  }
  return Status::FromErrno(ELOOP);
}

}  // namespace

Status FindTarget(Disk& disk, const std::string& path, DiskTarget& target) {
  target = {path, false, {}};
  if (Status followed = FollowLinks(disk, target); !followed) return followed;
  if (SplitEntry(target.path).name.empty()) return Status::FromErrno(EISDIR);
  if (!target.exists) return Status::Ok();
  if (target.facts.kind == FileKind::Folder) return Status::FromErrno(EISDIR);
  if (target.facts.kind != FileKind::File) return {Problem::Unsupported, "不是普通文件"};
  // The mode counts too, since the administrator may write everywhere.
  if ((target.facts.mode & kOwnerWrites) == 0) return {Problem::Denied, "文件是只读的"};
  const int may = disk.MayWrite(target.path);
  if (may == -EACCES) return {Problem::Denied, "文件是只读的"};
  return Status::FromErrno(-may);
}

}  // namespace quillon::host
