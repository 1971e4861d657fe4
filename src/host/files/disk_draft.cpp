// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/disk_draft.h"

#include <algorithm>
#include <cerrno>

#include "base/path_text.h"
#include "host/files/entry_path.h"

namespace quillon::host {
namespace {

constexpr int kTries = 100;
// The length in bytes of the draft's name on disks that accept only short names.
constexpr std::size_t kShortName = 64;

// Returns true if a sweep of another process removed the draft between its creation and its locking.
bool SweptAway(Disk& disk, int handle) {
  const int locked = disk.Lock(handle);
  if (locked == -EWOULDBLOCK) return true;
  DiskFacts facts;
  // A disk without locks is written to all the same; a sweep cannot lock its drafts either, and leaves them.
  return locked == 0 && disk.StatOpen(handle, facts) == 0 && facts.links == 0;
}

}  // namespace

Status DiskDraft::Open(Disk& disk, const std::string& path, unsigned mode, const std::function<std::uint64_t()>& serial,
                       DiskCalls* calls, std::unique_ptr<DiskDraft>& draft) {
  const DiskCalls::Scope scope(calls);
  const EntryPath entry = SplitEntry(path);
  if (entry.name.size() > kLongestName) return Status::FromErrno(ENAMETOOLONG);
  std::size_t longest = kLongestName;
  for (int attempt = 0; attempt < kTries; ++attempt) {
    const std::string place = base::JoinPath(entry.folder, DraftName(entry.name, serial(), longest));
    const int handle = disk.OpenNew(place, mode);
    if (handle == -EEXIST) continue;
    if (handle == -ENAMETOOLONG && longest != kShortName) {
      longest = kShortName;
      continue;
    }
    if (handle == -ENOENT) return {Problem::Missing, "文件夹不存在"};
    if (handle < 0) return Status::FromErrno(-handle);
    std::unique_ptr<DiskDraft> opened(new DiskDraft(disk, place, handle, calls));
    if (SweptAway(disk, handle)) continue;
    draft = std::move(opened);
    return Status::Ok();
  }
  return Status::FromErrno(EEXIST);
}

DiskDraft::DiskDraft(Disk& disk, std::string path, int handle, DiskCalls* calls)
    : disk_(disk), path_(std::move(path)), handle_(handle), calls_(calls) {}

DiskDraft::~DiskDraft() {
  if (handle_ < 0) return;
  const DiskCalls::Scope scope(calls_);
  disk_.Remove(path_);
  disk_.Close(handle_);
}

Status DiskDraft::Fail(int error) {
  Status failure = Status::FromErrno(error);
  if (failure_) failure_ = failure;
  return failure;
}

Status DiskDraft::Write(const void* data, std::size_t size) {
  const char* next = static_cast<const char*>(data);
  while (size > 0) {
    const DiskCalls::Scope scope(calls_);
    const std::int64_t written = disk_.Write(handle_, next, size);
    if (written <= 0) return Fail(written < 0 ? static_cast<int>(-written) : EIO);
    next += written;
    size -= static_cast<std::size_t>(written);
    position_ += static_cast<std::uint64_t>(written);
    size_ = std::max(size_, position_);
  }
  return Status::Ok();
}

Status DiskDraft::Seek(std::uint64_t position) {
  const DiskCalls::Scope scope(calls_);
  const int moved = disk_.Seek(handle_, position);
  if (moved < 0) return Fail(-moved);
  position_ = position;
  return Status::Ok();
}

std::int64_t DiskDraft::Read(void* data, std::size_t size) {
  const DiskCalls::Scope scope(calls_);
  const std::int64_t read = disk_.Read(handle_, data, size);
  if (read < 0) {
    (void)Fail(static_cast<int>(-read));
    return -1;
  }
  position_ += static_cast<std::uint64_t>(read);
  return read;
}

Status DiskDraft::Check(DiskFacts& facts) {
  if (!failure_) return failure_;
  const DiskCalls::Scope scope(calls_);
  if (const int result = disk_.StatOpen(handle_, facts); result < 0) return Status::FromErrno(-result);
  if (facts.links == 0) return {Problem::Other, "写入期间临时文件被删除"};
  if (facts.size != size_) return {Problem::Other, "写入后的文件大小不符"};
  return Status::Ok();
}

Status DiskDraft::Place(const std::string& path, Target target, int& handle) {
  const DiskCalls::Scope scope(calls_);
  const int renamed = target == Target::Free ? disk_.RenameNew(path_, path) : disk_.Rename(path_, path);
  if (renamed == -EEXIST) return {Problem::Denied, "保存期间出现了同名文件"};
  if (renamed < 0) return Status::FromErrno(-renamed);
  disk_.Unlock(handle_);
  handle = handle_;
  handle_ = -1;
  return Status::Ok();
}

}  // namespace quillon::host
