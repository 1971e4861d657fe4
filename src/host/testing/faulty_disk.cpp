// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/testing/faulty_disk.h"

#include <algorithm>

namespace quillon::host::testing {

std::string_view NameOf(DiskCall call) {
  constexpr std::string_view kNames[] = {
      "OpenNew",      "OpenRead", "OpenOwn",    "Write",      "Read",     "Seek",        "StatOpen",   "SetMode",
      "SetOwner",     "SetTimes", "CopyLabels", "Lock",       "Unlock",   "StartSync",   "Sync",       "Close",
      "Stat",         "StatLink", "MayWrite",   "ReadLink",   "RealPath", "List",        "MakeFolder", "Remove",
      "RemoveFolder", "Rename",   "RenameNew",  "SyncFolder", "Link",     "OpenScratch", "ReadAt"};
  return kNames[static_cast<std::size_t>(call)];
}

void FaultyDisk::Set(Fault fault) {
  const std::lock_guard lock(mutex_);
  faults_.push_back({std::move(fault)});
}

void FaultyDisk::Before(DiskCall call, int nth, std::function<void()> act, std::string pathHolds) {
  const std::lock_guard lock(mutex_);
  hooks_.push_back({call, nth, std::move(act), std::move(pathHolds)});
}

void FaultyDisk::Clear() {
  const std::lock_guard lock(mutex_);
  faults_.clear();
  hooks_.clear();
  calls_.clear();
  fired_ = 0;
}

int FaultyDisk::Fired() const {
  const std::lock_guard lock(mutex_);
  return fired_;
}

int FaultyDisk::Count(DiskCall call) const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(std::count(calls_.begin(), calls_.end(), call));
}

std::vector<DiskCall> FaultyDisk::Calls() const {
  const std::lock_guard lock(mutex_);
  return calls_;
}

int FaultyDisk::OpenHandles() const {
  const std::lock_guard lock(mutex_);
  return static_cast<int>(paths_.size());
}

FaultyDisk::Verdict FaultyDisk::JudgeFaults(DiskCall call, const std::string& path) {
  for (Armed& armed : faults_) {
    const Fault& fault = armed.fault;
    if (fault.call != call || path.find(fault.pathHolds) == std::string::npos) continue;
    ++armed.seen;
    if (armed.seen < fault.nth || armed.spent) continue;
    const bool first = armed.seen == fault.nth;
    if (fault.kind == Fault::Kind::HalfError) {
      armed.spent = !first && fault.length == Fault::Length::Once;
    } else {
      armed.spent = fault.length == Fault::Length::Once;
    }
    ++fired_;
    if (fault.kind == Fault::Kind::Short || (fault.kind == Fault::Kind::HalfError && first)) return {0, true};
    return {-fault.error, false};
  }
  return {};
}

FaultyDisk::Verdict FaultyDisk::Judge(DiskCall call, const std::string& path) {
  std::vector<std::function<void()>> acts;
  Verdict verdict;
  {
    const std::lock_guard lock(mutex_);
    calls_.push_back(call);
    for (Hook& hook : hooks_) {
      const bool meant = hook.call == call && path.find(hook.pathHolds) != std::string::npos;
      if (meant && --hook.left == 0) acts.push_back(hook.act);
    }
    verdict = JudgeFaults(call, path);
  }
  // Outside of the lock, because a hook may use the disk.
  for (const auto& act : acts) act();
  return verdict;
}

FaultyDisk::Verdict FaultyDisk::JudgeHandle(DiskCall call, int handle) {
  std::string path;
  {
    const std::lock_guard lock(mutex_);
    if (const auto found = paths_.find(handle); found != paths_.end()) path = found->second;
  }
  return Judge(call, path);
}

int FaultyDisk::Opened(int handle, const std::string& path) {
  const std::lock_guard lock(mutex_);
  if (handle >= 0) paths_[handle] = path;
  return handle;
}

int FaultyDisk::Renumbered(int result, DiskFacts& facts) const {
  facts.inode += renumbered_;
  return result;
}

int FaultyDisk::OpenNew(const std::string& path, unsigned mode) {
  const Verdict verdict = Judge(DiskCall::OpenNew, path);
  return verdict.error ? verdict.error : Opened(disk_.OpenNew(path, mode), path);
}

int FaultyDisk::OpenRead(const std::string& path) {
  const Verdict verdict = Judge(DiskCall::OpenRead, path);
  return verdict.error ? verdict.error : Opened(disk_.OpenRead(path), path);
}

int FaultyDisk::OpenOwn(const std::string& path) {
  const Verdict verdict = Judge(DiskCall::OpenOwn, path);
  return verdict.error ? verdict.error : Opened(disk_.OpenOwn(path), path);
}

std::int64_t FaultyDisk::Write(int handle, const void* data, std::size_t size) {
  const Verdict verdict = JudgeHandle(DiskCall::Write, handle);
  if (verdict.error) return verdict.error;
  return disk_.Write(handle, data, verdict.half ? std::max<std::size_t>(size / 2, 1) : size);
}

std::int64_t FaultyDisk::Read(int handle, void* data, std::size_t size) {
  const Verdict verdict = JudgeHandle(DiskCall::Read, handle);
  if (verdict.error) return verdict.error;
  return disk_.Read(handle, data, verdict.half ? std::max<std::size_t>(size / 2, 1) : size);
}

int FaultyDisk::OpenScratch(std::uint64_t size) {
  const Verdict verdict = Judge(DiskCall::OpenScratch, "");
  return verdict.error ? verdict.error : Opened(disk_.OpenScratch(size), "");
}

std::int64_t FaultyDisk::ReadAt(int handle, std::uint64_t position, void* data, std::size_t size) {
  const Verdict verdict = JudgeHandle(DiskCall::ReadAt, handle);
  if (verdict.error) return verdict.error;
  return disk_.ReadAt(handle, position, data, verdict.half ? std::max<std::size_t>(size / 2, 1) : size);
}

int FaultyDisk::Seek(int handle, std::uint64_t position) {
  const Verdict verdict = JudgeHandle(DiskCall::Seek, handle);
  return verdict.error ? verdict.error : disk_.Seek(handle, position);
}

int FaultyDisk::StatOpen(int handle, DiskFacts& facts) {
  const Verdict verdict = JudgeHandle(DiskCall::StatOpen, handle);
  return verdict.error ? verdict.error : Renumbered(disk_.StatOpen(handle, facts), facts);
}

int FaultyDisk::SetMode(int handle, unsigned mode) {
  const Verdict verdict = JudgeHandle(DiskCall::SetMode, handle);
  return verdict.error ? verdict.error : disk_.SetMode(handle, mode);
}

int FaultyDisk::SetOwner(int handle, unsigned user, unsigned group) {
  const Verdict verdict = JudgeHandle(DiskCall::SetOwner, handle);
  return verdict.error ? verdict.error : disk_.SetOwner(handle, user, group);
}

int FaultyDisk::SetTimes(int handle, std::int64_t accessed, std::int64_t modified) {
  const Verdict verdict = JudgeHandle(DiskCall::SetTimes, handle);
  return verdict.error ? verdict.error : disk_.SetTimes(handle, accessed, modified);
}

int FaultyDisk::CopyLabels(const std::string& path, int handle) {
  const Verdict verdict = Judge(DiskCall::CopyLabels, path);
  return verdict.error ? verdict.error : disk_.CopyLabels(path, handle);
}

int FaultyDisk::Lock(int handle) {
  const Verdict verdict = JudgeHandle(DiskCall::Lock, handle);
  return verdict.error ? verdict.error : disk_.Lock(handle);
}

int FaultyDisk::Unlock(int handle) {
  const Verdict verdict = JudgeHandle(DiskCall::Unlock, handle);
  return verdict.error ? verdict.error : disk_.Unlock(handle);
}

int FaultyDisk::StartSync(int handle) {
  const Verdict verdict = JudgeHandle(DiskCall::StartSync, handle);
  return verdict.error ? verdict.error : disk_.StartSync(handle);
}

int FaultyDisk::Sync(int handle) {
  const Verdict verdict = JudgeHandle(DiskCall::Sync, handle);
  return verdict.error ? verdict.error : disk_.Sync(handle);
}

// Each handle counts as one call of Sync, and can be made to fail like one.
std::vector<int> FaultyDisk::SyncAll(const std::vector<int>& handles) {
  std::vector<int> results;
  std::vector<int> sound;
  for (const int handle : handles) {
    results.push_back(JudgeHandle(DiskCall::Sync, handle).error);
    if (results.back() == 0) sound.push_back(handle);
  }
  const std::vector<int> synced = disk_.SyncAll(sound);
  auto next = synced.begin();
  for (int& result : results) {
    if (result != 0) continue;
    result = *next++;
    if (result >= 0) result = syncNames_ ? kSyncedWithName : 0;
  }
  return results;
}

int FaultyDisk::Close(int handle) {
  const Verdict verdict = JudgeHandle(DiskCall::Close, handle);
  {
    // Even a close that fails releases the handle. It leaves the table before the system can assign the number again.
    const std::lock_guard lock(mutex_);
    paths_.erase(handle);
  }
  const int closed = disk_.Close(handle);
  return verdict.error ? verdict.error : closed;
}

int FaultyDisk::Stat(const std::string& path, DiskFacts& facts) {
  const Verdict verdict = Judge(DiskCall::Stat, path);
  return verdict.error ? verdict.error : Renumbered(disk_.Stat(path, facts), facts);
}

int FaultyDisk::StatLink(const std::string& path, DiskFacts& facts) {
  const Verdict verdict = Judge(DiskCall::StatLink, path);
  return verdict.error ? verdict.error : Renumbered(disk_.StatLink(path, facts), facts);
}

int FaultyDisk::MayWrite(const std::string& path) {
  const Verdict verdict = Judge(DiskCall::MayWrite, path);
  return verdict.error ? verdict.error : disk_.MayWrite(path);
}

int FaultyDisk::ReadLink(const std::string& path, std::string& target) {
  const Verdict verdict = Judge(DiskCall::ReadLink, path);
  return verdict.error ? verdict.error : disk_.ReadLink(path, target);
}

int FaultyDisk::RealPath(const std::string& path, std::string& real) {
  const Verdict verdict = Judge(DiskCall::RealPath, path);
  return verdict.error ? verdict.error : disk_.RealPath(path, real);
}

int FaultyDisk::List(const std::string& folder, const std::function<bool(const FolderEntry&)>& visit) {
  const Verdict verdict = Judge(DiskCall::List, folder);
  return verdict.error ? verdict.error : disk_.List(folder, visit);
}

int FaultyDisk::MakeFolder(const std::string& path, unsigned mode) {
  const Verdict verdict = Judge(DiskCall::MakeFolder, path);
  return verdict.error ? verdict.error : disk_.MakeFolder(path, mode);
}

int FaultyDisk::Remove(const std::string& path) {
  const Verdict verdict = Judge(DiskCall::Remove, path);
  return verdict.error ? verdict.error : disk_.Remove(path);
}

int FaultyDisk::RemoveFolder(const std::string& path) {
  const Verdict verdict = Judge(DiskCall::RemoveFolder, path);
  return verdict.error ? verdict.error : disk_.RemoveFolder(path);
}

int FaultyDisk::Rename(const std::string& from, const std::string& to) {
  const Verdict verdict = Judge(DiskCall::Rename, from);
  return verdict.error ? verdict.error : disk_.Rename(from, to);
}

int FaultyDisk::RenameNew(const std::string& from, const std::string& to) {
  const Verdict verdict = Judge(DiskCall::RenameNew, from);
  return verdict.error ? verdict.error : disk_.RenameNew(from, to);
}

int FaultyDisk::Link(const std::string& from, const std::string& to) {
  const Verdict verdict = Judge(DiskCall::Link, from);
  return verdict.error ? verdict.error : disk_.Link(from, to);
}

int FaultyDisk::SyncFolder(const std::string& folder) {
  const Verdict verdict = Judge(DiskCall::SyncFolder, folder);
  return verdict.error ? verdict.error : disk_.SyncFolder(folder);
}

}  // namespace quillon::host::testing
