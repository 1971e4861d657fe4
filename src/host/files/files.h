// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/status.h"

namespace quillon::host {

class Disk;
class DiskDraft;
class SyncQueue;
struct DiskTarget;

enum class FileKind { File, Folder, Other };

// What is known of a path without opening it. Times are nanoseconds since 1970.
struct FileFacts {
  FileKind kind = FileKind::Other;
  std::uint64_t size = 0;
  std::int64_t modified = 0;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t changed = 0;  // moves with every change of content, also where the file kept its modified time
};

struct FolderEntry {
  std::string name;
  FileKind kind = FileKind::Other;  // a link counts as what it points to
};

// A file being written aside, in the folder of its final name and invisible under that name until it is committed.
class Draft {
 public:
  virtual ~Draft() = default;
  // All of the bytes or a failure. Appends at the current position.
  virtual Status Write(const void* data, std::size_t size) = 0;
  virtual Status Seek(std::uint64_t position) = 0;
  // Bytes read at the current position, 0 at the end, -1 on failure.
  virtual std::int64_t Read(void* data, std::size_t size) = 0;
  virtual std::uint64_t Size() const = 0;
};

// A write that failed after it had already been handed over, found when it was synced.
struct LateFailure {
  std::string path;
  Status status;
};

// Everything the program does to files. All paths are bytes. Every call may come from any thread.
class Files {
 public:
  explicit Files(Disk& disk);
  ~Files();
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  // Links are followed. Nothing where the path leads nowhere or cannot be looked at.
  std::optional<FileFacts> Stat(const std::string& path) const;
  bool IsFile(const std::string& path) const;
  bool IsFolder(const std::string& path) const;
  // True when both lead to the same file, links followed.
  bool SameFile(const std::string& a, const std::string& b) const;
  // Whether this machine itself answers for the disk that folder lies on, and no other machine or program.
  bool IsLocalDisk(const std::string& folder) const;
  // Hands out entries in the order of the file system, left-over drafts excepted; take returns false to end early.
  Status ListFolder(const std::string& folder, const std::function<bool(const FolderEntry&)>& take) const;
  // Bytes of the file and of the drafts that any program is writing for it; 0 where there are none yet.
  std::uint64_t SizeWithDrafts(const std::string& path) const;
  // The whole file; TooLarge above limit bytes.
  Status ReadFile(const std::string& path, std::string& out, std::uint64_t limit = 1u << 30) const;

  // Makes the folder and all above it; an existing one is fine.
  Status MakeFolders(const std::string& folder) const;

  // The one way to write a file. fill writes the content into a draft beside path; when it and the draft's own checks
  // succeed the draft takes the name, otherwise it vanishes and whatever stood under the name stays whole. An existing
  // file is synced before it is replaced, keeps its mode, owner, times and labels and is refused when it is read-only;
  // links are written through. A fresh file is synced behind the run (see Flush), and does not take the place of one
  // that appeared under its name meanwhile. A fill that passes over a failure of its draft fails all the same.
  Status Save(const std::string& path, const std::function<Status(Draft&)>& fill);
  Status Save(const std::string& path, std::string_view content);
  // A copy through Save, with the time stamps of the source; a fresh one with its mode too, but never read-only. A
  // source that changes while it is read makes it fail. A copy of a file onto itself does nothing.
  Status Copy(const std::string& from, const std::string& to);
  // A copy of a work file of our own that nobody changes any more, cheaply: where the disk allows, the copy is a second
  // name of the same file, and nothing waits for it to reach the disk. A missing source leaves what stands at to.
  Status CopyOwn(const std::string& from, const std::string& to);
  // Waits until everything saved so far stands on disk; returns what failed since the last call.
  std::vector<LateFailure> Flush();

  // Removes a work file or a folder tree of our own; a missing one is fine. Links are removed, not followed.
  Status RemoveOwn(const std::string& path);
  // The one way to delete a user's file or folder: into the desktop's trash, by a rename alone. Where no trash can
  // take it, it stays and the failure says so. A link goes there itself.
  Status Discard(const std::string& path);
  // Removes the drafts that a killed run left in a folder, and none that is still being written.
  void SweepDrafts(const std::string& folder) const;

 private:
  struct Wishes;
  Status SaveAs(const std::string& path, const Wishes& wishes, const std::function<Status(Draft&)>& fill);
  Status Replace(DiskDraft& draft, const DiskTarget& target);

  Disk& disk_;
  std::unique_ptr<SyncQueue> syncs_;
  std::atomic<std::uint64_t> serial_;
};

// True for the names that drafts carry until they are committed; walks and watches pass over them.
bool IsDraftName(std::string_view name);

}  // namespace quillon::host
