// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/disk.h"

namespace quillon::host::testing {

// The methods of Disk that can be made to fail.
enum class DiskCall {
  OpenNew,
  OpenRead,
  OpenOwn,
  Write,
  Read,
  Seek,
  StatOpen,
  SetMode,
  SetOwner,
  SetTimes,
  CopyLabels,
  Lock,
  Unlock,
  StartSync,
  Sync,
  Close,
  Stat,
  StatLink,
  MayWrite,
  ReadLink,
  RealPath,
  List,
  MakeFolder,
  Remove,
  RemoveFolder,
  Rename,
  RenameNew,
  SyncFolder,
  Link,
  OpenScratch,
  ReadAt,
};

std::string_view NameOf(DiskCall call);

// A fault that a test injects.
struct Fault {
  enum class Kind {
    Error,      // the call fails and does nothing
    Short,      // a write stores, or a read returns, only half of the bytes (at least one)
    HalfError,  // the first write stores half of the bytes, the next ones fail, as on a disk that fills up
  };
  enum class Length { Once, ForEver };

  DiskCall call = DiskCall::Write;
  int nth = 1;  // the first call that fails, counted from 1 since the fault was set
  int error = 0;
  Length length = Length::Once;
  Kind kind = Kind::Error;
  std::string pathHolds;  // only calls whose path contains this text; a handle counts by the path it was opened with
};

// Forwards to another disk and fails on demand. Counts the calls and how often faults fired.
class FaultyDisk final : public Disk {
 public:
  explicit FaultyDisk(Disk& disk) : disk_(disk) {}

  void Set(Fault fault);
  // Runs act once, before the nth call from now on whose path contains the text. The call itself then goes on.
  void Before(DiskCall call, int nth, std::function<void()> act, std::string pathHolds = "");
  // Removes all faults and hooks, and resets the counts.
  void Clear();
  // From now on SyncAll reports that it synced the names too (or that it did not), regardless of the disk below.
  void SyncNamesWithFiles(bool on) { syncNames_ = on; }
  // From now on all inode numbers are higher by this number, as on a disk that was mounted again.
  void Renumber(std::uint64_t by) { renumbered_ += by; }
  // From now on the disk counts as one that another machine serves.
  void MakeRemote() { local_ = false; }
  // How often a fault made a call fail since the last Clear.
  int Fired() const;
  // The number of calls of a kind since the last Clear, and all calls in order.
  int Count(DiskCall call) const;
  std::vector<DiskCall> Calls() const;
  // The number of handles that were opened and not closed yet.
  int OpenHandles() const;

  int OpenNew(const std::string& path, unsigned mode) override;
  int OpenRead(const std::string& path) override;
  int OpenOwn(const std::string& path) override;
  std::int64_t Write(int handle, const void* data, std::size_t size) override;
  std::int64_t Read(int handle, void* data, std::size_t size) override;
  int Seek(int handle, std::uint64_t position) override;
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

  bool IsLocalDisk(const std::string& folder) override { return local_ && disk_.IsLocalDisk(folder); }
  std::string DataHome() override { return disk_.DataHome(); }
  unsigned User() override { return disk_.User(); }
  std::string Root() override { return disk_.Root(); }
  std::string TimeStamp() override { return disk_.TimeStamp(); }

 private:
  struct Armed {
    Fault fault;
    int seen = 0;
    bool spent = false;
  };
  struct Hook {
    DiskCall call;
    int left;
    std::function<void()> act;
    std::string pathHolds;
  };
  // What happens to one call: nothing (0), a negative errno value, or half of its bytes.
  struct Verdict {
    int error = 0;
    bool half = false;
  };

  Verdict Judge(DiskCall call, const std::string& path);
  Verdict JudgeHandle(DiskCall call, int handle);
  Verdict JudgeFaults(DiskCall call, const std::string& path);
  int Opened(int handle, const std::string& path);
  int Renumbered(int result, DiskFacts& facts) const;

  Disk& disk_;
  mutable std::mutex mutex_;
  std::vector<Armed> faults_;
  std::vector<Hook> hooks_;
  std::vector<DiskCall> calls_;
  std::map<int, std::string> paths_;
  int fired_ = 0;
  std::atomic<std::uint64_t> renumbered_ = 0;
  std::atomic<bool> syncNames_ = false;
  std::atomic<bool> local_ = true;
};

}  // namespace quillon::host::testing
