// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/trash.h"

#include <cerrno>
#include <string_view>
#include <vector>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "host/files/paths.h"

namespace quillon::host {
namespace {

constexpr unsigned kFolderMode = 0700;
constexpr unsigned kNoteMode = 0600;
constexpr unsigned kSticky = 01000;
constexpr int kMostNumbers = 10000;
constexpr std::string_view kNoteEnd = ".trashinfo";

// A trash folder, and the path of the file as its note must state it (absolute, or relative to the top of the disk).
struct Trash {
  enum class Place { Home, Shared };

  std::string folder;
  std::string notedPath;
  Place place;
};

// Creates the folder and its parents, accessible to the user only.
int MakePrivateFolders(Disk& disk, const std::string& path) {
  DiskFacts facts;
  int result = disk.Stat(path, facts);
  if (result == 0) return facts.kind == FileKind::Folder ? 0 : -ENOTDIR;
  if (result != -ENOENT || path == "/" || path == ".") return result;
  result = MakePrivateFolders(disk, SplitEntry(path).folder);
  if (result == 0) result = disk.MakeFolder(path, kFolderMode);
  return result == -EEXIST ? 0 : result;
}

// Returns the highest folder above a path that is on the same disk.
std::string TopFolder(Disk& disk, const std::string& path, std::uint64_t device) {
  std::string top = SplitEntry(path).folder;
  while (top != "/" && top != disk.Root()) {
    const std::string above = SplitEntry(top).folder;
    DiskFacts facts;
    if (disk.StatLink(above, facts) < 0 || facts.device != device) break;
    top = above;
  }
  return top;
}

// Returns the trash folders that may accept a path, best first. real is the path without links above its last name.
std::vector<Trash> TrashesFor(Disk& disk, const std::string& real, std::uint64_t device) {
  std::vector<Trash> trashes;
  DiskFacts facts;
  if (const std::string home = disk.DataHome(); !home.empty()) {
    const std::string folder = base::JoinPath(home, "Trash");
    if (MakePrivateFolders(disk, folder) == 0 && disk.Stat(folder, facts) == 0 && facts.device == device) {
      trashes.push_back({folder, real, Trash::Place::Home});
    }
  }
  const std::string top = TopFolder(disk, real, device);
  const std::string relative = top == "/" ? real.substr(1) : real.substr(top.size() + 1);
  const std::string user = std::to_string(disk.User());
  // A shared trash is used only if the administrator made it as required: a real folder with the sticky bit.
  const std::string shared = base::JoinPath(top, ".Trash");
  if (disk.StatLink(shared, facts) == 0 && facts.kind == FileKind::Folder && (facts.mode & kSticky) != 0) {
    trashes.push_back({base::JoinPath(shared, user), relative, Trash::Place::Shared});
  }
  trashes.push_back({base::JoinPath(top, ".Trash-" + user), relative, Trash::Place::Shared});
  return trashes;
}

// If others may write there too, the trash must be a real folder that belongs to the user. A link, or a folder that
// someone else created, could lead anywhere.
int Prepare(Disk& disk, const Trash& trash) {
  int result = MakePrivateFolders(disk, trash.folder);
  if (result == 0 && trash.place == Trash::Place::Shared) {
    DiskFacts facts;
    result = disk.StatLink(trash.folder, facts);
    if (result == 0 && (facts.kind != FileKind::Folder || facts.user != disk.User())) result = -EACCES;
  }
  if (result == 0) result = MakePrivateFolders(disk, base::JoinPath(trash.folder, "info"));
  if (result == 0) result = MakePrivateFolders(disk, base::JoinPath(trash.folder, "files"));
  return result;
}

// Returns the name in the trash: the file's own name, from the second attempt on with a number before the extension.
std::string TrashName(const std::string& name, int number) {
  const std::string tail = number == 1 ? "" : " " + std::to_string(number);
  const std::size_t room = kLongestName - kNoteEnd.size() - tail.size();
  const std::size_t point = name.rfind('.');
  const bool extended = point != std::string::npos && point > 0 && name.size() - point <= 16;
  const std::string extension = extended ? name.substr(point) : "";
  return HeadOfName(name.substr(0, name.size() - extension.size()), room - extension.size()) + tail + extension;
}

int WriteAll(Disk& disk, int handle, std::string_view text) {
  while (!text.empty()) {
    const std::int64_t written = disk.Write(handle, text.data(), text.size());
    if (written <= 0) return written < 0 ? static_cast<int>(written) : -EIO;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

enum class Way { Rename, LinkIfPossible };

int Carry(Disk& disk, Way way, const std::string& path, const std::string& file) {
  const int linked = way == Way::LinkIfPossible ? disk.Link(path, file) : -ENOTSUP;
  return linked == 0 || linked == -EEXIST ? linked : disk.RenameNew(path, file);
}

// Moves the file into one trash. On failure it stays where it is and no note remains.
int MoveInto(Disk& disk, SyncQueue& syncs, const Trash& trash, const std::string& path, Way way, Trashed& trashed) {
  if (const int prepared = Prepare(disk, trash); prepared < 0) return prepared;
  const std::string text =
      "[Trash Info]\nPath=" + base::PercentEncoded(trash.notedPath) + "\nDeletionDate=" + disk.TimeStamp() + "\n";
  for (int number = 1; number <= kMostNumbers; ++number) {
    const std::string name = TrashName(SplitEntry(path).name, number);
    const std::string note = base::JoinPath(trash.folder, "info/" + name + std::string(kNoteEnd));
    const std::string file = base::JoinPath(trash.folder, "files/" + name);
    // The note is created first: creating it reserves the name, and a trashed file without a note could not be
    // restored.
    const int handle = disk.OpenNew(note, kNoteMode);
    if (handle == -EEXIST) continue;
    if (handle < 0) return handle;
    int result = WriteAll(disk, handle, text);
    if (result == 0) result = Carry(disk, way, path, file);
    if (result < 0) {
      disk.Remove(note);
      disk.Close(handle);
      if (result == -EEXIST) continue;
      return result;
    }
    syncs.Add(note, handle, SyncQueue::OnFailure::Keep);
    syncs.AddFolderOf(file);
    syncs.AddFolderOf(path);
    trashed = {path, file, note};
    return 0;
  }
  return -EEXIST;
}

// Gives the path of an existing file without links above its last name, and the trash folders that may accept it.
Status FindTrashes(Disk& disk, const std::string& path, std::string& real, std::vector<Trash>& trashes) {
  DiskFacts facts;
  const std::string trimmed = base::TrimTrailingSeparator(path);
  if (const int result = disk.StatLink(trimmed, facts); result < 0) return Status::FromErrno(-result);
  const EntryPath entry = SplitEntry(trimmed);
  if (entry.name.empty() || entry.name == "." || entry.name == "..") return Status::FromErrno(EINVAL);
  std::string folder;
  if (const int found = disk.RealPath(entry.folder, folder); found < 0) return Status::FromErrno(-found);
  real = base::JoinPath(folder, entry.name);
  trashes = TrashesFor(disk, real, facts.device);
  return Status::Ok();
}

Status MoveByWay(Disk& disk, SyncQueue& syncs, const std::string& path, Way way, Trashed& trashed) {
  std::string real;
  std::vector<Trash> trashes;
  if (Status found = FindTrashes(disk, path, real, trashes); !found) return found;
  int result = -ENOENT;
  for (const Trash& trash : trashes) {
    result = MoveInto(disk, syncs, trash, real, way, trashed);
    if (result == 0) return Status::Ok();
  }
  const Status reason = Status::FromErrno(-result);
  return {reason.GetProblem(), "无法移入回收站，文件保留原处（" + reason.Why() + "）"};
}

}  // namespace

Status MoveToTrash(Disk& disk, SyncQueue& syncs, const std::string& path) {
  Trashed trashed;
  return MoveByWay(disk, syncs, path, Way::Rename, trashed);
}

Status PutIntoTrash(Disk& disk, SyncQueue& syncs, const std::string& path, Trashed& trashed) {
  return MoveByWay(disk, syncs, path, Way::LinkIfPossible, trashed);
}

void TakeOutOfTrash(Disk& disk, const Trashed& trashed) {
  int result = disk.RenameNew(trashed.file, trashed.path);
  DiskFacts kept;
  DiskFacts standing;
  if (result == -EEXIST && disk.StatLink(trashed.file, kept) == 0 && disk.StatLink(trashed.path, standing) == 0 &&
      SameFile(kept, standing)) {
    result = disk.Remove(trashed.file);
  }
  if (result == 0) disk.Remove(trashed.note);
}

Status PrepareTrash(Disk& disk, const std::string& path, std::string& trashFolder) {
  std::string real;
  std::vector<Trash> trashes;
  if (Status found = FindTrashes(disk, path, real, trashes); !found) return found;
  int result = -ENOENT;
  for (const Trash& trash : trashes) {
    result = Prepare(disk, trash);
    if (result < 0) continue;
    trashFolder = trash.folder;
    return Status::Ok();
  }
  return Status::FromErrno(-result);
}

}  // namespace quillon::host
