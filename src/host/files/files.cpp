// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/files.h"

#include <cerrno>
#include <chrono>

#include "base/path_text.h"
#include "host/files/disk.h"
#include "host/files/file_stamp.h"
#include "host/files/paths.h"
#include "host/files/sync_queue.h"
#include "host/files/trash.h"

namespace quillon::host {
namespace {

constexpr std::size_t kChunk = 1 << 20;
constexpr unsigned kFolderMode = 0777;

// Two processes that save in one folder should rarely try the same draft name. If they do, the next serial is tried.
std::uint64_t FirstSerial(const void* self) {
  const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  return (now ^ reinterpret_cast<std::uintptr_t>(self)) * 0x9E3779B97F4A7C15ull;
}

Status RemoveTree(Disk& disk, const std::string& path) {
  DiskFacts facts;
  int result = disk.StatLink(path, facts);
  if (result == 0 && facts.kind != FileKind::Folder) result = disk.Remove(path);
  if (result == 0 && facts.kind == FileKind::Folder) {
    std::vector<std::string> names;
    const int listed = disk.List(path, [&](const FolderEntry& entry) {
      names.push_back(entry.name);
      return true;
    });
    if (listed < 0) return Status::FromErrno(-listed);
    for (const std::string& name : names) {
      if (Status removed = RemoveTree(disk, base::JoinPath(path, name)); !removed) return removed;
    }
    result = disk.RemoveFolder(path);
  }
  return result == -ENOENT ? Status::Ok() : Status::FromErrno(-result);
}

// Removes a draft unless its writer still holds the lock.
void SweepDraft(Disk& disk, const std::string& path) {
  const int handle = disk.OpenOwn(path);
  if (handle < 0) return;
  if (disk.Lock(handle) == 0) disk.Remove(path);
  disk.Close(handle);
}

Status ReadAll(Disk& disk, int handle, std::string& out, std::uint64_t limit) {
  const Status tooLarge{Problem::TooLarge, "文件太大"};
  DiskFacts facts;
  if (const int result = disk.StatOpen(handle, facts); result < 0) return Status::FromErrno(-result);
  if (facts.size > limit) return tooLarge;
  // The size is only a hint: the file may grow, and some files of the system report 0. One byte more than the size is
  // read, so that the end shows without a second read.
  out.resize(facts.size > 0 ? static_cast<std::size_t>(facts.size) + 1 : kChunk);
  for (std::size_t filled = 0;;) {
    if (filled == out.size()) out.resize(filled + kChunk);
    const std::int64_t read = disk.Read(handle, out.data() + filled, out.size() - filled);
    if (read < 0) return Status::FromErrno(static_cast<int>(-read));
    filled += static_cast<std::size_t>(read);
    if (filled > limit) return tooLarge;
    if (read > 0) continue;
    out.resize(filled);
    return Status::Ok();
  }
}

}  // namespace

ScratchFile::~ScratchFile() { disk_.Close(handle_); }

Status ScratchFile::Write(const void* data, std::size_t size) {
  const auto* from = static_cast<const char*>(data);
  while (size > 0) {
    const std::int64_t written = disk_.Write(handle_, from, size);
    if (written <= 0) return Status::FromErrno(written < 0 ? static_cast<int>(-written) : EIO);
    from += written;
    size -= static_cast<std::size_t>(written);
  }
  return Status::Ok();
}

Status ScratchFile::ReadAt(std::uint64_t position, void* data, std::size_t size) const {
  auto* to = static_cast<char*>(data);
  while (size > 0) {
    const std::int64_t read = disk_.ReadAt(handle_, position, to, size);
    if (read <= 0) return Status::FromErrno(read < 0 ? static_cast<int>(-read) : EIO);
    position += static_cast<std::uint64_t>(read);
    to += read;
    size -= static_cast<std::size_t>(read);
  }
  return Status::Ok();
}

Files::Files(Disk& disk) : disk_(disk), syncs_(std::make_unique<SyncQueue>(disk)), serial_(FirstSerial(this)) {}

Files::~Files() = default;

std::optional<FileFacts> Files::Stat(const std::string& path) const {
  FileFacts facts;
  return Find(path, facts) ? std::optional(facts) : std::nullopt;
}

Status Files::Find(const std::string& path, FileFacts& facts) const {
  DiskFacts found;
  if (const int result = disk_.Stat(path, found); result < 0) return Status::FromErrno(-result);
  facts = {found.kind, found.size, found.modified, found.device, found.inode, found.changed};
  return Status::Ok();
}

bool Files::IsFile(const std::string& path) const {
  const auto facts = Stat(path);
  return facts && facts->kind == FileKind::File;
}

bool Files::IsFolder(const std::string& path) const {
  const auto facts = Stat(path);
  return facts && facts->kind == FileKind::Folder;
}

bool Files::SameFile(const std::string& a, const std::string& b) const {
  DiskFacts one;
  DiskFacts other;
  const int found = disk_.Stat(a, one);
  if (a == b) return found != -ENOENT && found != -ENOTDIR;
  return found >= 0 && disk_.Stat(b, other) >= 0 && host::SameFile(one, other);
}

std::optional<std::string> Files::RealPath(const std::string& path) const {
  std::string real;
  if (disk_.RealPath(path, real) < 0) return std::nullopt;
  return real;
}

std::unique_ptr<ScratchFile> Files::OpenScratch(std::uint64_t size) const {
  const int handle = disk_.OpenScratch(size);
  return handle < 0 ? nullptr : std::make_unique<ScratchFile>(disk_, handle);
}

bool Files::IsLocalDisk(const std::string& folder) const { return disk_.IsLocalDisk(folder); }

Status Files::ListFolder(const std::string& folder, const std::function<bool(const FolderEntry&)>& visit) const {
  std::vector<std::string> drafts;
  const int listed = disk_.List(folder, [&](const FolderEntry& entry) {
    if (!IsDraftName(entry.name)) return visit(entry);
    if (entry.kind == FileKind::File) drafts.push_back(base::JoinPath(folder, entry.name));
    return true;
  });
  for (const std::string& draft : drafts) SweepDraft(disk_, draft);
  return Status::FromErrno(-listed);
}

Status Files::ReadFile(const std::string& path, std::string& out, std::uint64_t limit) const {
  out.clear();
  const int handle = disk_.OpenRead(path);
  if (handle < 0) return Status::FromErrno(-handle);
  Status status = ReadAll(disk_, handle, out, limit);
  disk_.Close(handle);
  if (!status) out.clear();
  return status;
}

bool Files::TryOpen(const std::string& path) const {
  const int handle = disk_.OpenRead(path);
  if (handle >= 0) disk_.Close(handle);
  return handle >= 0;
}

Status Files::MakeFolders(const std::string& folder) const {
  const std::string path = base::TrimTrailingSeparator(folder);
  if (path.empty()) return Status::FromErrno(ENOENT);
  DiskFacts facts;
  int result = disk_.Stat(path, facts);
  if (result == -ENOENT) {
    const EntryPath entry = SplitEntry(path);
    if (Status above = MakeFolders(entry.folder); !above) return above;
    result = disk_.MakeFolder(path, kFolderMode);
    if (result == 0) {
      syncs_->AddFolderOf(path);
      return Status::Ok();
    }
    // Another process may have created it meanwhile.
    if (result == -EEXIST) result = disk_.Stat(path, facts);
  }
  if (result < 0) return Status::FromErrno(-result);
  return facts.kind == FileKind::Folder ? Status::Ok() : Status::FromErrno(ENOTDIR);
}

std::vector<LateFailure> Files::Flush(const GoOn& goOn) { return syncs_->Flush(goOn); }

Status Files::RemoveOwn(const std::string& path) {
  const std::string trimmed = base::TrimTrailingSeparator(path);
  if (trimmed.empty() || trimmed == "/") return Status::FromErrno(EPERM);
  return RemoveTree(disk_, trimmed);
}

Status Files::Discard(const std::string& path) { return MoveToTrash(disk_, *syncs_, path); }

Status Files::PrepareTrash(const std::string& path, std::string& trashFolder) const {
  return host::PrepareTrash(disk_, path, trashFolder);
}

std::uint64_t Files::SizeWithDrafts(const std::string& path) const {
  const EntryPath entry = SplitEntry(path);
  std::uint64_t size = 0;
  disk_.List(entry.folder, [&](const FolderEntry& found) {
    DiskFacts facts;
    const bool counts = found.name == entry.name || IsDraftOf(entry.name, found.name);
    if (counts && disk_.Stat(base::JoinPath(entry.folder, found.name), facts) == 0) size += facts.size;
    return true;
  });
  return size;
}

void Files::SweepDrafts(const std::string& folder) const {
  static_cast<void>(ListFolder(folder, [](const FolderEntry&) { return true; }));
}

Status KeepBackup(Files& files, const std::string& source, const SaveControl& control) {
  const std::string backup = source + ".bak";
  {
    const DiskCalls::Scope scope(control.calls);
    const auto facts = files.Stat(source);
    if (const auto older = files.Stat(backup)) {
      if (older->kind != FileKind::File) return {Problem::Denied, "同名的 .bak 不是普通文件，没有备份"};
      // Copies keep the modified time, so equal times and sizes mean that the backup is already there.
      if (facts && SameContent(*older, *facts)) return Status::Ok();
      if (Status moved = files.Discard(backup); !moved) return moved;
    }
  }
  return files.Copy(source, backup, control);
}

}  // namespace quillon::host
