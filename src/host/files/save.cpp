// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <cerrno>

#include "base/path_text.h"
#include "host/files/disk.h"
#include "host/files/disk_draft.h"
#include "host/files/disk_target.h"
#include "host/files/draft_name.h"
#include "host/files/entry_path.h"
#include "host/files/files.h"
#include "host/files/sync_queue.h"

namespace quillon::host {
namespace {

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

// What a disk without modes, owners or times answers when it is told some.
bool CannotKeep(int result) {
  return result == -EPERM || result == -EACCES || result == -ENOTSUP || result == -ENOSYS || result == -EINVAL;
}

Status KeptOr(int result) { return CannotKeep(result) ? Status::Ok() : Status::FromErrno(result < 0 ? -result : 0); }

// Gives the draft the labels, mode and owner of the file that it is to replace. The owner is kept where the system lets
// us; the bits that lend an owner's rights go only with the owner.
Status CopyAttributes(Disk& disk, const DiskDraft& draft, const DiskFacts& facts, const DiskTarget& target) {
  const DiskFacts& old = target.facts;
  if (Status kept = KeptOr(disk.CopyLabels(target.path, draft.Handle())); !kept) return kept;
  unsigned bits = kAllBits;
  if (facts.user != old.user || facts.group != old.group) {
    const int owned = disk.SetOwner(draft.Handle(), old.user, old.group);
    if (Status kept = KeptOr(owned); !kept) return kept;
    if (owned < 0) bits = kAccessBits;
  }
  return KeptOr(disk.SetMode(draft.Handle(), old.mode & bits));
}

// Reads an open file to its end into a draft.
Status CopyContent(Disk& disk, int handle, const DiskFacts& before, Draft& draft) {
  std::string chunk(kChunk, '\0');
  for (;;) {
    const std::int64_t read = disk.Read(handle, chunk.data(), chunk.size());
    if (read < 0) return Status::FromErrno(static_cast<int>(-read));
    if (read == 0) break;
    if (Status written = draft.Write(chunk.data(), static_cast<std::size_t>(read)); !written) return written;
  }
  DiskFacts after;
  if (const int looked = disk.StatOpen(handle, after); looked < 0) return Status::FromErrno(-looked);
  if (after.size != draft.Size() || after.modified != before.modified) {
    return {Problem::Other, "复制期间源文件有变化"};
  }
  return Status::Ok();
}

// A program cannot be started while it is open for writing: its handle is exchanged for one that only reads.
int ForReading(Disk& disk, const std::string& path, int handle) {
  const int reading = disk.OpenRead(path);
  if (reading < 0) return handle;
  DiskFacts written;
  DiskFacts opened;
  const bool same = disk.StatOpen(handle, written) == 0 && disk.StatOpen(reading, opened) == 0 &&
                    written.device == opened.device && written.inode == opened.inode;
  disk.Close(same ? handle : reading);
  return same ? reading : handle;
}

}  // namespace

// What a save is to give its file beyond the content.
struct Files::Wishes {
  unsigned mode = kFreshMode;  // of a fresh file
  std::optional<Times> times;
};

Status Files::Save(const std::string& path, const std::function<Status(Draft&)>& fill) {
  return SaveAs(path, {}, fill);
}

Status Files::Save(const std::string& path, std::string_view content) {
  return Save(path, [&](Draft& draft) { return draft.Write(content.data(), content.size()); });
}

Status Files::Copy(const std::string& from, const std::string& to) {
  const int handle = disk_.OpenRead(from);
  if (handle < 0) return Status::FromErrno(-handle);
  DiskFacts source;
  DiskFacts standing;
  Status status = Status::FromErrno(-disk_.StatOpen(handle, source));
  const bool itself =
      status && disk_.Stat(to, standing) == 0 && standing.device == source.device && standing.inode == source.inode;
  if (status && !itself) {
    const Wishes wishes{(source.mode & kAccessBits) | kPrivateMode, Times{source.accessed, source.modified}};
    status = SaveAs(to, wishes, [&](Draft& draft) { return CopyContent(disk_, handle, source, draft); });
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

Status Files::SaveAs(const std::string& path, const Wishes& wishes, const std::function<Status(Draft&)>& fill) {
  DiskTarget target;
  if (Status found = FindTarget(disk_, path, target); !found) return found;
  std::unique_ptr<DiskDraft> draft;
  // Until it is dressed like the file that it replaces, a draft is for its owner's eyes only.
  const unsigned mode = target.exists ? kPrivateMode : wishes.mode;
  if (Status opened = DiskDraft::Open(
          disk_, target.path, mode, [this] { return serial_++; }, draft);
      !opened) {
    return opened;
  }
  if (Status filled = fill(*draft); !filled) return draft->FirstFailure() ? filled : draft->FirstFailure();
  DiskFacts facts;
  if (Status checked = draft->Check(facts); !checked) return checked;
  if (target.exists) {
    if (Status dressed = CopyAttributes(disk_, *draft, facts, target); !dressed) return dressed;
  }
  std::optional<Times> times = wishes.times;
  if (!times && target.exists) times = Times{target.facts.accessed, target.facts.modified};
  if (times) {
    if (Status set = KeptOr(disk_.SetTimes(draft->Handle(), times->accessed, times->modified)); !set) return set;
  }
  if (target.exists) return Replace(*draft, target);
  int handle = -1;
  if (Status placed = draft->Place(target.path, DiskDraft::Target::Free, handle); !placed) return placed;
  if ((wishes.mode & kExecutable) != 0) handle = ForReading(disk_, target.path, handle);
  syncs_->Add(target.path, handle, SyncQueue::OnFailure::Remove);
  return Status::Ok();
}

Status Files::Replace(DiskDraft& draft, const DiskTarget& target) {
  if (const int synced = disk_.Sync(draft.Handle()); synced < 0) return Status::FromErrno(-synced);
  int handle = -1;
  if (Status placed = draft.Place(target.path, DiskDraft::Target::Replace, handle); !placed) return placed;
  // After a sync that went well, closing has nothing left to tell.
  disk_.Close(handle);
  // Whether the old or the new file is found after a crash, it is whole: the folder can be synced behind.
  syncs_->AddFolderOf(target.path);
  return Status::Ok();
}

}  // namespace quillon::host
