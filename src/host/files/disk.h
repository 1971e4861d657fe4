// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/files/files.h"

namespace quillon::host {

// The attributes of an entry, as stat returns them. Times are nanoseconds since 1970; mode holds the permission bits
// only.
struct DiskFacts {
  FileKind kind = FileKind::Other;
  bool link = false;  // a symbolic link; only StatLink reports one
  unsigned mode = 0;
  unsigned user = 0;
  unsigned group = 0;
  std::uint64_t size = 0;
  std::int64_t accessed = 0;
  std::int64_t modified = 0;
  std::int64_t changed = 0;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t links = 0;
};

// The system calls that Files makes, one method each, so that tests can make any of them fail.
// Returns 0 or more on success, and a negative errno value on failure. Calls that a signal interrupts are repeated.
// Every method may be called from any thread.
class Disk {
 public:
  virtual ~Disk() = default;

  // --- Open files. A handle is not negative and is not inherited by programs that are started.
  // Creates a file for reading and writing. Fails if the name exists in any form, even as a dangling link.
  virtual int OpenNew(const std::string& path, unsigned mode) = 0;
  // Opens for reading and follows links. Fails, without blocking, for anything but a regular file.
  virtual int OpenRead(const std::string& path) = 0;
  // Opens an existing regular file for reading and writing. Fails for a link.
  virtual int OpenOwn(const std::string& path) = 0;
  // Return the number of bytes, which may be less than size; Read returns 0 at the end of the file.
  virtual std::int64_t Write(int handle, const void* data, std::size_t size) = 0;
  virtual std::int64_t Read(int handle, void* data, std::size_t size) = 0;
  virtual int Seek(int handle, std::uint64_t position) = 0;
  // Creates a file without a name for reading and writing, in the folder for large temporary files. Fails with -ENOSPC
  // unless twice size bytes are free there: results may lie on the same disk and need room too. The file is gone when
  // its handle is closed.
  virtual int OpenScratch(std::uint64_t size) = 0;
  // Reads at a position of its own, so that several threads may read one handle. Returns as Read does.
  virtual std::int64_t ReadAt(int handle, std::uint64_t position, void* data, std::size_t size) = 0;
  virtual int StatOpen(int handle, DiskFacts& facts) = 0;
  virtual int SetMode(int handle, unsigned mode) = 0;
  virtual int SetOwner(int handle, unsigned user, unsigned group) = 0;
  virtual int SetTimes(int handle, std::int64_t accessed, std::int64_t modified) = 0;
  // Copies the user's extended attributes (ratings, tags, comments) from the file at path to the open file.
  virtual int CopyLabels(const std::string& path, int handle) = 0;
  // Locks the file without waiting; -EWOULDBLOCK if another handle holds the lock. The lock is released when the handle
  // is closed or the process ends in any way.
  virtual int Lock(int handle) = 0;
  virtual int Unlock(int handle) = 0;
  // Starts writing cached data to the disk, without waiting.
  virtual int StartSync(int handle) = 0;
  // Waits until the file is on the disk. Also returns errors that closing the file would report.
  virtual int Sync(int handle) = 0;
  // Does Sync for each handle and returns the results in order. Much cheaper than single calls if files share a disk.
  // A result of kSyncedWithName means that the name of the file is on the disk too and needs no SyncFolder.
  static constexpr int kSyncedWithName = 1;
  virtual std::vector<int> SyncAll(const std::vector<int>& handles) = 0;
  virtual int Close(int handle) = 0;

  // --- Entries of folders.
  virtual int Stat(const std::string& path, DiskFacts& facts) = 0;
  virtual int StatLink(const std::string& path, DiskFacts& facts) = 0;  // of the link itself
  // Fails with -EACCES if the process may not write the file.
  virtual int MayWrite(const std::string& path) = 0;
  virtual int ReadLink(const std::string& path, std::string& target) = 0;
  // Gives the absolute path without links, "." and "..".
  virtual int RealPath(const std::string& path, std::string& real) = 0;
  // Calls visit for every entry but "." and "..", until it returns false.
  virtual int List(const std::string& folder, const std::function<bool(const FolderEntry&)>& visit) = 0;
  virtual int MakeFolder(const std::string& path, unsigned mode) = 0;
  virtual int Remove(const std::string& path) = 0;        // a file or a link
  virtual int RemoveFolder(const std::string& path) = 0;  // an empty folder
  virtual int Rename(const std::string& from, const std::string& to) = 0;
  // Like Rename, but fails with -EEXIST if something exists under the new name.
  virtual int RenameNew(const std::string& from, const std::string& to) = 0;
  virtual int SyncFolder(const std::string& folder) = 0;
  // Creates a hard link to the file that from leads to. Fails if to exists.
  virtual int Link(const std::string& from, const std::string& to) = 0;

  // --- Surroundings of the disk; these calls do not fail.
  // Returns true if this machine serves the disk of folder itself; false for network disks and user-space file systems.
  // Like every other call it may hang if the disk is unresponsive.
  virtual bool IsLocalDisk(const std::string& folder) = 0;
  // The user's folder for application data, "" if there is none.
  virtual std::string DataHome() = 0;
  virtual unsigned User() = 0;
  // The search for the top folder of a disk does not go above this folder. Usually "/"; less for runs that must stay
  // inside a private folder.
  virtual std::string Root() = 0;
  // Returns the local time as YYYY-MM-DDThh:mm:ss.
  virtual std::string TimeStamp() = 0;
};

}  // namespace quillon::host
