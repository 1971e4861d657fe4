// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "base/path_text.h"
#include "host/files/disk.h"
#include "host/files/file_stamp.h"
#include "host/files/files.h"
#include "host/files/paths.h"
#include "host/files/sync_queue.h"
#include "host/files/trash.h"

// How a file is saved, so that a crash at any moment leaves either the old or the new file complete:
//
//   1. Follow links to the target and refuse what must not be replaced.
//   2. Write the content into a draft in the same folder, and compare its size with what was written.
//   3. Copy mode, owner, labels and times of the file that is replaced to the draft.
//   4. To replace a file: sync the draft, rename it over the file, queue the folder for syncing.
//      To create a file: rename the draft to the free name, queue the file and its folder for syncing.
//
// A new file needs no sync before the rename: if syncing fails later, the file is removed again and reported by Flush.

namespace quillon::host {

// A draft on a disk. Its file is locked while it is written. A sweep can therefore recognise a draft that a killed run
// left: a lock ends with its process, even in another container or on another machine, where a process number means
// nothing.
// A draft that was not placed removes its file when it is destroyed.
class DiskDraft final : public Draft {
 public:
  // Creates an empty draft in the folder of path, with the given mode. serial must return a new number on each call.
  // calls counts what the draft asks of the disk, if set, and has to outlive it.
  static Status Open(Disk& disk, const std::string& path, unsigned mode, const std::function<std::uint64_t()>& serial,
                     DiskCalls* calls, std::unique_ptr<DiskDraft>& draft);
  ~DiskDraft() override;
  DiskDraft(const DiskDraft&) = delete;
  DiskDraft& operator=(const DiskDraft&) = delete;

  Status Write(const void* data, std::size_t size) override;
  Status Seek(std::uint64_t position) override;
  std::int64_t Read(void* data, std::size_t size) override;
  std::uint64_t Size() const override { return size_; }

  // The first failure of the calls above. A writer that ignores a failure must not get its file placed.
  const Status& FirstFailure() const { return failure_; }
  // Compares the file on disk with what was written and fails if they differ. Gives the attributes of the draft.
  Status Check(DiskFacts& facts);
  int Handle() const { return handle_; }

  // Renames the draft to the final path and hands over the open handle. Free fails if the path exists; Replace does
  // not.
  // On failure the draft stays as it was.
  enum class Target { Replace, Free };
  Status Place(const std::string& path, Target target, int& handle);

 private:
  DiskDraft(Disk& disk, std::string path, int handle, DiskCalls* calls);
  Status Fail(int error);

  Disk& disk_;
  std::string path_;
  int handle_;
  DiskCalls* calls_;
  std::uint64_t position_ = 0;
  std::uint64_t size_ = 0;
  Status failure_;
};

// The path that a save really writes to: links are followed to their end, even if nothing exists there.
struct DiskTarget {
  std::string path;
  bool exists = false;
  DiskFacts facts;  // of the existing file
};

namespace {

// How many names are tried for a draft.
constexpr int kDraftTries = 100;
// The length in bytes of the draft's name on disks that accept only short names.
constexpr std::size_t kShortName = 64;
constexpr int kMaxLinks = 40;
constexpr unsigned kOwnerWrites = 0200;
constexpr std::size_t kChunk = 1 << 20;
constexpr unsigned kFreshMode = 0666;
constexpr unsigned kPrivateMode = 0600;
constexpr unsigned kAllBits = 07777;
constexpr unsigned kAccessBits = 0777;
constexpr unsigned kExecutable = 0111;

struct Times {
  std::int64_t accessed = 0;
  std::int64_t modified = 0;
};

Status FollowLinks(Disk& disk, DiskTarget& target) {
  for (int i = 0; i < kMaxLinks; ++i) {
    const int result = disk.StatLink(target.path, target.facts);
    if (result == -ENOENT) return Status::Ok();
    if (result < 0) return Status::FromErrno(-result);
    target.exists = !target.facts.link;
    if (target.exists) return Status::Ok();
    std::string next;
    const int read = disk.ReadLink(target.path, next);
    if (read < 0) return Status::FromErrno(-read);
    target.path = next.starts_with('/') ? next : base::JoinPath(SplitEntry(target.path).folder, next);
  }
  return Status::FromErrno(ELOOP);
}

// Fails for a target that must not be replaced: a folder, a device or pipe, a read-only file, a circle of links.
Status FindTarget(Disk& disk, const std::string& path, DiskTarget& target) {
  target = {path, false, {}};
  if (Status followed = FollowLinks(disk, target); !followed) return followed;
  if (SplitEntry(target.path).name.empty()) return Status::FromErrno(EISDIR);
  if (!target.exists) return Status::Ok();
  if (target.facts.kind == FileKind::Folder) return Status::FromErrno(EISDIR);
  if (target.facts.kind != FileKind::File) return {Problem::Unsupported, "不是普通文件"};
  // The mode is checked too, because the administrator may write any file.
  if ((target.facts.mode & kOwnerWrites) == 0) return {Problem::Denied, "文件是只读的"};
  const int may = disk.MayWrite(target.path);
  if (may == -EACCES) return {Problem::Denied, "文件是只读的"};
  return Status::FromErrno(-may);
}

Status Stopped() { return {Problem::Stopped, "已停止"}; }

// Returns true for the errors of a disk that does not support modes, owners, times or labels.
bool IsUnsupported(int result) {
  return result == -EPERM || result == -EACCES || result == -ENOTSUP || result == -ENOSYS || result == -EINVAL;
}

// An attribute that the disk cannot store is no reason to fail.
Status IgnoreUnsupported(int result) {
  return IsUnsupported(result) ? Status::Ok() : Status::FromErrno(result < 0 ? -result : 0);
}

// Copies labels, mode and owner of the file that will be replaced to the draft. The owner is kept if the system permits
// it. Set-user-id, set-group-id and sticky bits are dropped if the owner could not be kept.
Status CopyAttributes(Disk& disk, const DiskDraft& draft, const DiskFacts& facts, const DiskTarget& target) {
  const DiskFacts& old = target.facts;
  if (Status kept = IgnoreUnsupported(disk.CopyLabels(target.path, draft.Handle())); !kept) return kept;
  unsigned bits = kAllBits;
  if (facts.user != old.user || facts.group != old.group) {
    const int owned = disk.SetOwner(draft.Handle(), old.user, old.group);
    if (Status kept = IgnoreUnsupported(owned); !kept) return kept;
    if (owned < 0) bits = kAccessBits;
  }
  return IgnoreUnsupported(disk.SetMode(draft.Handle(), old.mode & bits));
}

// Copies an open file to its end into a draft. Fails if the file changed meanwhile.
Status CopyContent(Disk& disk, int handle, const DiskFacts& before, Draft& draft, DiskCalls* calls) {
  std::string chunk(kChunk, '\0');
  for (;;) {
    std::optional<DiskCalls::Scope> reading(std::in_place, calls);
    const std::int64_t read = disk.Read(handle, chunk.data(), chunk.size());
    reading.reset();
    if (read < 0) return Status::FromErrno(static_cast<int>(-read));
    if (read == 0) break;
    if (Status written = draft.Write(chunk.data(), static_cast<std::size_t>(read)); !written) return written;
  }
  DiskFacts after;
  if (const int result = disk.StatOpen(handle, after); result < 0) return Status::FromErrno(-result);
  if (draft.Size() != before.size || !SameContent(before, after)) {
    return {Problem::Other, "复制期间源文件有变化"};
  }
  return Status::Ok();
}

// A program cannot be started while a process has it open for writing. Returns a handle that only reads instead, or the
// same handle if that fails.
int ForReading(Disk& disk, const std::string& path, int handle) {
  const int reading = disk.OpenRead(path);
  if (reading < 0) return handle;
  DiskFacts written;
  DiskFacts opened;
  const bool same =
      disk.StatOpen(handle, written) == 0 && disk.StatOpen(reading, opened) == 0 && host::SameFile(written, opened);
  disk.Close(same ? handle : reading);
  return same ? reading : handle;
}

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
  for (int attempt = 0; attempt < kDraftTries; ++attempt) {
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

// What a saved file gets besides its content, and how it is saved.
struct Files::SaveOptions {
  unsigned mode = kFreshMode;  // of a new file
  std::optional<Times> times;
  SaveControl control;
  bool replacedToTrash = false;
};

Files::ReplacedToTrash::ReplacedToTrash(Files& files, std::string path) : files_(files), path_(std::move(path)) {
  const std::lock_guard lock(files_.mutex_);
  files_.toTrash_.insert(path_);
}

Files::ReplacedToTrash::~ReplacedToTrash() {
  const std::lock_guard lock(files_.mutex_);
  files_.toTrash_.erase(files_.toTrash_.find(path_));
}

bool Files::GoesToTrash(const std::string& path) {
  const std::lock_guard lock(mutex_);
  return toTrash_.contains(path);
}

Status Files::Save(const std::string& path, const std::function<Status(Draft&)>& fill, const SaveControl& control) {
  return SaveAs(path, {.times = std::nullopt, .control = control}, fill);
}

Status Files::Save(const std::string& path, std::string_view content) {
  return Save(path, [&](Draft& draft) { return draft.Write(content.data(), content.size()); });
}

Status Files::Copy(const std::string& from, const std::string& to, const SaveControl& control, CopyTimes times) {
  std::optional<DiskCalls::Scope> opening(std::in_place, control.calls);
  const int handle = disk_.OpenRead(from);
  if (handle < 0) return Status::FromErrno(-handle);
  DiskFacts source;
  DiskFacts standing;
  Status status = Status::FromErrno(-disk_.StatOpen(handle, source));
  const bool itself = status && disk_.Stat(to, standing) == 0 && host::SameFile(standing, source);
  opening.reset();
  if (status && !itself) {
    SaveOptions options{.mode = (source.mode & kAccessBits) | kPrivateMode, .control = control};
    if (times == CopyTimes::OfSource) options.times = Times{source.accessed, source.modified};
    status =
        SaveAs(to, options, [&](Draft& draft) { return CopyContent(disk_, handle, source, draft, control.calls); });
  }
  disk_.Close(handle);
  return status;
}

Status Files::CopyOwn(const std::string& from, const std::string& to) {
  if (SameFile(from, to)) return Status::Ok();
  const EntryPath entry = SplitEntry(to);
  const std::string link = base::JoinPath(entry.folder, DraftName(entry.name, serial_++, kLongestName));
  if (disk_.Link(from, link) < 0) return Copy(from, to);
  if (disk_.Rename(link, to) == 0) return Status::Ok();
  disk_.Remove(link);
  return Copy(from, to);
}

Status Files::SaveAs(const std::string& path, SaveOptions options, const std::function<Status(Draft&)>& fill) {
  options.replacedToTrash = GoesToTrash(path);
  DiskCalls* const calls = options.control.calls;
  DiskTarget target;
  {
    const DiskCalls::Scope scope(calls);
    if (Status found = FindTarget(disk_, path, target); !found) return found;
  }
  std::unique_ptr<DiskDraft> draft;
  // Nobody else may read the draft before it has the mode of the file that it replaces.
  const unsigned mode = target.exists ? kPrivateMode : options.mode;
  if (Status opened = DiskDraft::Open(
          disk_, target.path, mode, [this] { return serial_++; }, calls, draft);
      !opened) {
    return opened;
  }
  if (Status filled = fill(*draft); !filled) return draft->FirstFailure() ? filled : draft->FirstFailure();
  return Complete(*draft, target, options);
}

// Gives the draft its attributes and then its name.
Status Files::Complete(DiskDraft& draft, const DiskTarget& target, const SaveOptions& options) {
  DiskCalls* const calls = options.control.calls;
  DiskFacts facts;
  if (Status checked = draft.Check(facts); !checked) return checked;
  std::optional<Times> times = options.times;
  if (!times && target.exists) times = Times{target.facts.accessed, target.facts.modified};
  {
    const DiskCalls::Scope scope(calls);
    if (target.exists) {
      if (Status dressed = CopyAttributes(disk_, draft, facts, target); !dressed) return dressed;
    }
    if (times) {
      Status set = IgnoreUnsupported(disk_.SetTimes(draft.Handle(), times->accessed, times->modified));
      if (!set) return set;
    }
  }
  if (target.exists) return Replace(draft, target, options);
  if (options.control.stop.stop_requested()) return Stopped();
  int handle = -1;
  if (Status placed = draft.Place(target.path, DiskDraft::Target::Free, handle); !placed) return placed;
  if ((options.mode & kExecutable) != 0) handle = ForReading(disk_, target.path, handle);
  // The queue may be full.
  const DiskCalls::Scope scope(calls, DiskCalls::Kind::Sync);
  syncs_->Add(target.path, handle, SyncQueue::OnFailure::Remove);
  return Status::Ok();
}

Status Files::Replace(DiskDraft& draft, const DiskTarget& target, const SaveOptions& options) {
  const SaveControl& control = options.control;
  {
    const DiskCalls::Scope scope(control.calls, DiskCalls::Kind::Sync);
    if (const int synced = disk_.Sync(draft.Handle()); synced < 0) return Status::FromErrno(-synced);
  }
  if (control.stop.stop_requested()) return Stopped();
  Trashed trashed;
  if (options.replacedToTrash) {
    const DiskCalls::Scope scope(control.calls);
    const Status gone = PutIntoTrash(disk_, *syncs_, target.path, trashed);
    if (!gone) return {gone.GetProblem(), "已有同名文件，没能移入回收站，未覆盖：" + gone.Why()};
  }
  int handle = -1;
  if (Status placed = draft.Place(target.path, DiskDraft::Target::Replace, handle); !placed) {
    const DiskCalls::Scope scope(control.calls);
    if (options.replacedToTrash) TakeOutOfTrash(disk_, trashed);
    return placed;
  }
  // After a successful sync, closing cannot report a new error.
  disk_.Close(handle);
  // After a crash either the old or the new file is found, and both are complete. The folder can be synced later.
  const DiskCalls::Scope scope(control.calls, DiskCalls::Kind::Sync);
  syncs_->AddFolderOf(target.path);
  return Status::Ok();
}

}  // namespace quillon::host
