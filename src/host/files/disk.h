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

// All that the disk tells of an entry. Times are nanoseconds since 1970; mode holds the permission bits only.
struct DiskFacts {
  FileKind kind = FileKind::Other;
  bool link = false;
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

// Every call to the system that Files makes, one method each, so that any of them can be made to fail. Results are
// never negative where the call went well, and minus the system's error number where it failed. Interrupted calls are
// repeated inside. Every call may come from any thread.
class Disk {
 public:
  virtual ~Disk() = default;

  // --- Open files. A handle is not negative and is not inherited by programs that are started.
  // Makes a file for reading and writing; fails where anything stands under the name, a dangling link included.
  virtual int OpenNew(const std::string& path, unsigned mode) = 0;
  // Links are followed; anything but a regular file is refused without waiting for it.
  virtual int OpenRead(const std::string& path) = 0;
  // An existing regular file for reading and writing; a link is refused.
  virtual int OpenOwn(const std::string& path) = 0;
  // Bytes written or read, which may be fewer than asked for.
  virtual std::int64_t Write(int handle, const void* data, std::size_t size) = 0;
  virtual std::int64_t Read(int handle, void* data, std::size_t size) = 0;
  virtual int Seek(int handle, std::uint64_t position) = 0;
  virtual int StatOpen(int handle, DiskFacts& facts) = 0;
  virtual int SetMode(int handle, unsigned mode) = 0;
  virtual int SetOwner(int handle, unsigned user, unsigned group) = 0;
  virtual int SetTimes(int handle, std::int64_t accessed, std::int64_t modified) = 0;
  // Gives the file the labels that other programs put on the one under path: ratings, tags, comments.
  virtual int CopyLabels(const std::string& path, int handle) = 0;
  // A lock that ends with the handle, or with the process however that ends. Does not wait: -EWOULDBLOCK where
  // another holds it.
  virtual int Lock(int handle) = 0;
  virtual int Unlock(int handle) = 0;
  // Lets the disk begin to write what is still in memory, without waiting.
  virtual int StartSync(int handle) = 0;
  // Waits until the file stands on the disk; also brings to light what closing it would report.
  virtual int Sync(int handle) = 0;
  // As Sync for each of them, at a small part of the price where they lie on one disk; the results in their order.
  // kSyncedWithName where the name under which the file lies needs no SyncFolder any more.
  static constexpr int kSyncedWithName = 1;
  virtual std::vector<int> SyncAll(const std::vector<int>& handles) = 0;
  virtual int Close(int handle) = 0;

  // --- Entries of folders.
  virtual int Stat(const std::string& path, DiskFacts& facts) = 0;
  virtual int StatLink(const std::string& path, DiskFacts& facts) = 0;  // the link itself
  virtual int MayWrite(const std::string& path) = 0;
  virtual int ReadLink(const std::string& path, std::string& target) = 0;
  // The absolute path without links, "." and "..".
  virtual int RealPath(const std::string& path, std::string& real) = 0;
  // Every entry but "." and ".."; take returns false to end early.
  virtual int List(const std::string& folder, const std::function<bool(const FolderEntry&)>& take) = 0;
  virtual int MakeFolder(const std::string& path, unsigned mode) = 0;
  virtual int Remove(const std::string& path) = 0;        // a file or a link
  virtual int RemoveFolder(const std::string& path) = 0;  // an empty folder
  virtual int Rename(const std::string& from, const std::string& to) = 0;
  // -EEXIST where something stands under the new name already.
  virtual int RenameNew(const std::string& from, const std::string& to) = 0;
  virtual int SyncFolder(const std::string& folder) = 0;
  // A second name, still free, for the file that from leads to.
  virtual int Link(const std::string& from, const std::string& to) = 0;

  // --- What surrounds the disk; these never fail.
  // Whether this machine itself answers for the disk that folder lies on, and no other machine or program. Asks the
  // disk, as every look does.
  virtual bool IsLocalDisk(const std::string& folder) = 0;
  // The user's folder for data of programs, "" where there is none.
  virtual std::string DataHome() = 0;
  virtual unsigned User() = 0;
  // Nothing above this folder is taken for the top of a disk: "/", or less for runs that must keep to themselves.
  virtual std::string Root() = 0;
  // The local time as YYYY-MM-DDThh:mm:ss.
  virtual std::string TimeStamp() = 0;
};

}  // namespace quillon::host
