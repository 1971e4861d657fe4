// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/disk_calls.h"
#include "host/status.h"

namespace quillon::host {

class Disk;
class DiskDraft;
class SyncQueue;
struct DiskTarget;

enum class FileKind { File, Folder, Other };

// The attributes of a path that are known without opening it. Times are nanoseconds since 1970.
struct FileFacts {
  FileKind kind = FileKind::Other;
  std::uint64_t size = 0;
  std::int64_t modified = 0;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t changed = 0;  // ctime: advances with every change, even if the modified time was set back
};

// An entry of a folder listing.
struct FolderEntry {
  std::string name;
  FileKind kind = FileKind::Other;  // of a link, what it leads to
  bool link = false;                // a symbolic link
};

// A file that is being written under a temporary name in the folder of its final name.
class Draft {
 public:
  virtual ~Draft() = default;
  // Writes all bytes at the current position, or fails.
  virtual Status Write(const void* data, std::size_t size) = 0;
  // Moves the current position, in bytes from the start.
  virtual Status Seek(std::uint64_t position) = 0;
  // Returns the number of bytes read at the current position, 0 at the end, -1 on failure.
  virtual std::int64_t Read(void* data, std::size_t size) = 0;
  // The size in bytes of what was written so far.
  virtual std::uint64_t Size() const = 0;
};

// A file without a name for work that is too large for memory. It is gone when the object is destroyed or the process
// ends. The disk has to live as long. Write is called by one thread at a time, ReadAt by any number.
class ScratchFile {
 public:
  ScratchFile(Disk& disk, int handle) : disk_(disk), handle_(handle) {}
  ~ScratchFile();
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  // Appends all bytes, or fails.
  Status Write(const void* data, std::size_t size);
  // Reads bytes that were written; fails if it cannot read all of them.
  Status ReadAt(std::uint64_t position, void* data, std::size_t size) const;

 private:
  Disk& disk_;
  const int handle_;
};

// The time stamps of a copy.
//   OfSource: those of the copied file.
//   OfReplaced: those of the file that the copy replaces, as Save keeps them; a new file has the present time. For a
//   finished work file that becomes a result.
enum class CopyTimes { OfSource, OfReplaced };

// A file that was saved without an error but could not be written to the disk later.
struct LateFailure {
  std::string path;
  Status status;
};

// All file operations of the program. Paths are arbitrary bytes. Every method may be called from any thread.
class Files {
 public:
  explicit Files(Disk& disk);
  ~Files();
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  // Returns the attributes of a path, with links followed; nullopt if it does not exist or cannot be read.
  std::optional<FileFacts> Stat(const std::string& path) const;
  // As Stat, with the reason. Fails with Missing if nothing has that name.
  Status Find(const std::string& path, FileFacts& facts) const;
  bool IsFile(const std::string& path) const;
  bool IsFolder(const std::string& path) const;
  // Returns true if both paths lead to the same file, with links followed. Equal ones do, even if it cannot be read.
  bool SameFile(const std::string& a, const std::string& b) const;
  // Returns the absolute path without links, "." and ".."; nothing if it leads to nothing.
  std::optional<std::string> RealPath(const std::string& path) const;
  // Returns true if this machine serves the disk of folder itself; false for network disks and user-space file systems.
  bool IsLocalDisk(const std::string& folder) const;
  // Calls visit for each entry in the order of the file system, except for drafts, until visit returns false. Then
  // removes the drafts that a killed run has left there.
  Status ListFolder(const std::string& folder, const std::function<bool(const FolderEntry&)>& visit) const;
  // Returns the size in bytes of the file and of all drafts that any program is writing for it; 0 if there are none.
  std::uint64_t SizeWithDrafts(const std::string& path) const;
  // Reads the whole file. Fails with TooLarge if it has more than limit bytes.
  Status ReadFile(const std::string& path, std::string& out, std::uint64_t limit = 1u << 30) const;

  // Opens the file for reading and closes it again. Returns false for anything but a regular file.
  bool TryOpen(const std::string& path) const;

  // Creates a file without a name for size bytes. Returns nullptr if the disk for temporary files has less than twice
  // that free, or if no file can be created there.
  std::unique_ptr<ScratchFile> OpenScratch(std::uint64_t size) const;

  // Creates the folder and its parents. Succeeds if it exists.
  Status MakeFolders(const std::string& folder) const;

  // The only way to write a file. fill writes the content into a draft in the folder of path. If fill and the checks of
  // the draft succeed, the draft is renamed to path; otherwise it is removed, and a file that exists under path stays
  // unchanged.
  // - An existing file is replaced only after the draft is synced. Mode, owner, times and labels are kept.
  // - A read-only file is refused. A link is written through.
  // - A new file is synced later, in the background (see Flush). It fails if a file appeared under its name meanwhile.
  // - If fill ignores a failure of its draft, Save fails all the same.
  Status Save(const std::string& path, const std::function<Status(Draft&)>& fill, const SaveControl& control = {});
  Status Save(const std::string& path, std::string_view content);
  // Copies a file through Save. A new file also gets the mode of the source, but is never read-only.
  // Fails if the source changes while it is read. Does nothing if both paths lead to the same file.
  Status Copy(const std::string& from, const std::string& to, const SaveControl& control = {},
              CopyTimes times = CopyTimes::OfSource);
  // Copies a work file of the program that nobody changes any more. If the disk allows it, the copy is a hard link, and
  // it is not synced. If the source is missing, the file at to stays unchanged.
  Status CopyOwn(const std::string& from, const std::string& to);
  // As long as the object lives, a file that Save or Copy replaces under that path is moved to the trash, right before
  // the finished draft gets the name. If no trash accepts it, the save fails and the file stays.
  class ReplacedToTrash {
   public:
    ReplacedToTrash(Files& files, std::string path);
    ~ReplacedToTrash();
    ReplacedToTrash(const ReplacedToTrash&) = delete;
    ReplacedToTrash& operator=(const ReplacedToTrash&) = delete;

   private:
    Files& files_;
    const std::string path_;
  };
  // Waits until everything saved so far is on the disk. Returns the failures since the last call.
  // If that lasts, goOn is called every few milliseconds with the paths of what is not on the disk yet. If it
  // returns false, everything that is not on the disk yet counts as failed.
  using GoOn = std::function<bool(const std::vector<std::string>& pending)>;
  std::vector<LateFailure> Flush(const GoOn& goOn = {});

  // Removes a work file or a folder tree of the program itself. Succeeds if it is missing. Does not follow links.
  Status RemoveOwn(const std::string& path);
  // The only way to delete a file or folder of the user: moves it into the desktop's trash, by a rename alone. If no
  // trash accepts it, it stays and the returned failure says so. For a link, the link itself is moved.
  Status Discard(const std::string& path);
  // Creates the trash that Discard would use for an existing file, unless it exists, and gives its folder. For a
  // process that limits its own access to files before it discards one.
  Status PrepareTrash(const std::string& path, std::string& trashFolder) const;
  // Removes the drafts that a killed run left in a folder. Drafts that are still being written stay.
  void SweepDrafts(const std::string& folder) const;

 private:
  struct SaveOptions;
  Status SaveAs(const std::string& path, SaveOptions options, const std::function<Status(Draft&)>& fill);
  Status Complete(DiskDraft& draft, const DiskTarget& target, const SaveOptions& options);
  Status Replace(DiskDraft& draft, const DiskTarget& target, const SaveOptions& options);
  bool GoesToTrash(const std::string& path);

  Disk& disk_;
  std::unique_ptr<SyncQueue> syncs_;
  std::atomic<std::uint64_t> serial_;
  std::mutex mutex_;
  std::multiset<std::string> toTrash_;  // guarded by mutex_; see ReplacedToTrash
};

// Returns true if name is the name of a draft. Folder walks and folder watches skip such entries.
bool IsDraftName(std::string_view name);

// Copies a source to "<source>.bak" before its own result replaces it.
// Does nothing if the backup exists with the same size and modified time. Any other file of that name, such as the
// backup of an earlier cut, is moved to the trash first; if that fails, nothing is copied and the failure is returned.
Status KeepBackup(Files& files, const std::string& source, const SaveControl& control = {});

}  // namespace quillon::host
