// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/disk.h"

namespace quillon::host::posix {

// The real file system of this machine.
class PosixDisk final : public Disk {
 public:
  // Uses the user's data folder from the environment: $XDG_DATA_HOME, otherwise ~/.local/share.
  PosixDisk();
  // Uses the given folders, for runs that must not touch those of the user.
  explicit PosixDisk(std::string dataHome, std::string root = "/");

  int OpenNew(const std::string& path, unsigned mode) override;
  int OpenRead(const std::string& path) override;
  int OpenOwn(const std::string& path) override;
  std::int64_t Write(int handle, const void* data, std::size_t size) override;
  std::int64_t Read(int handle, void* data, std::size_t size) override;
  int Seek(int handle, std::uint64_t position) override;
  // The folder is $TMPDIR if that is an absolute path, otherwise /var/tmp, because /tmp may be in memory.
  int OpenScratch(std::uint64_t size) override;
  std::int64_t ReadAt(int handle, std::uint64_t position, void* data, std::size_t size) override;
  int StatOpen(int handle, DiskFacts& facts) override;
  int SetMode(int handle, unsigned mode) override;
  int SetOwner(int handle, unsigned user, unsigned group) override;
  int SetTimes(int handle, std::int64_t accessed, std::int64_t modified) override;
  int CopyLabels(const std::string& path, int handle) override;
  int Lock(int handle) override;
  int Unlock(int handle) override;
  int StartSync(int handle) override;
  int Sync(int handle) override;
  std::vector<int> SyncAll(const std::vector<int>& handles) override;
  int Close(int handle) override;

  int Stat(const std::string& path, DiskFacts& facts) override;
  int StatLink(const std::string& path, DiskFacts& facts) override;
  int MayWrite(const std::string& path) override;
  int ReadLink(const std::string& path, std::string& target) override;
  int RealPath(const std::string& path, std::string& real) override;
  int List(const std::string& folder, const std::function<bool(const FolderEntry&)>& visit) override;
  int MakeFolder(const std::string& path, unsigned mode) override;
  int Remove(const std::string& path) override;
  int RemoveFolder(const std::string& path) override;
  int Rename(const std::string& from, const std::string& to) override;
  int RenameNew(const std::string& from, const std::string& to) override;
  int SyncFolder(const std::string& folder) override;
  int Link(const std::string& from, const std::string& to) override;

  bool IsLocalDisk(const std::string& folder) override;
  std::string DataHome() override;
  unsigned User() override;
  std::string Root() override;
  std::string TimeStamp() override;

 private:
  std::string dataHome_;
  std::string root_;
};

}  // namespace quillon::host::posix
