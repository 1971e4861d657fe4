// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/private_folder.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <vector>

#include "base/path_text.h"
#include "host/posix/environment.h"
#include "host/posix/posix_instance.h"
#include "host/posix/program_folder.h"

namespace quillon::cli {
namespace {

namespace fs = std::filesystem;
using host::Status;

constexpr const char* kPrefix = "quillon-batch-";
constexpr const char* kRemoved = "-removed";
constexpr const char* kNewLock = ".new";  // the end of the name of a lock file that is not locked yet
constexpr int kMostTries = 1000;
// Far more than any run needs to create and lock its folder.
constexpr std::chrono::hours kLongestCreation{24};

// A helper program without a twin: X.exe without X.dll beside it.
bool IsLoneProgram(const host::Files& files, const std::string& folder, const host::FolderEntry& entry) {
  const base::PathParts parts = base::SplitPath(entry.name);
  return parts.extension == "exe" && !files.IsFile(base::JoinPath(folder, parts.name, "dll"));
}

std::chrono::nanoseconds Modified(const host::DiskFacts& facts) { return std::chrono::nanoseconds(facts.modified); }

}  // namespace

std::string TemporaryBase() {
  const std::string folder = host::posix::Environment("TMPDIR");
  return folder.starts_with('/') ? base::TrimTrailingSeparator(folder) : "/tmp";
}

PrivateFolder::~PrivateFolder() {
  Remove();
  if (lock_ >= 0) disk_.Close(lock_);
}

// The folder is renamed first: a helper that still runs cannot find it under its old name, so it cannot create files in
// it while it is being removed.
void PrivateFolder::Remove() {
  if (path_.empty()) return;
  const std::string removed = path_ + kRemoved;
  (void)!files_.RemoveOwn(disk_.Rename(path_, removed) < 0 ? path_ : removed);
}

Status PrivateFolder::Make(const std::string& base, const std::string& executableFolder) {
  Sweep(base);
  const std::string stem = base::JoinPath(base, kPrefix + std::to_string(getpid()) + "-");
  Status made;
  for (int number = 1; number <= kMostTries; ++number) {
    const std::string path = stem + std::to_string(number);
    const int result = disk_.MakeFolder(path, 0700);
    if (result == -EEXIST) continue;
    const int locked = result < 0 ? result : MakeLocked(path);
    // Another run took the new folder for one that a killed run had left.
    if (result == 0 && (locked == -ENOENT || locked == -EWOULDBLOCK)) continue;
    made = Status::FromErrno(locked < 0 ? -locked : 0);
    break;
  }
  if (path_.empty()) return made ? Status::FromErrno(EEXIST) : made;
  const std::string prefix = base::SplitPath(executableFolder).folder;
  LinkFrom(executableFolder);
  LinkFrom(base::JoinPath(prefix, "lib/quillon"));
  LinkFrom(base::JoinPath(prefix, "share/quillon"));
  return host::posix::PrepareProgramFolder(files_, path_, executableFolder);
}

// The lock file is locked under another name and then renamed. A lock file under its final name is therefore always
// locked while its run lives. One under the first name may not be locked yet; if another process locks it before, it
// removes the folder, and the lock or the rename fails here.
int PrivateFolder::MakeLocked(const std::string& path) {
  const std::string lock = base::JoinPath(path, host::posix::kInstanceLock);
  lock_ = disk_.OpenNew(lock + kNewLock, 0600);
  int result = lock_ < 0 ? lock_ : disk_.Lock(lock_);
  if (result >= 0) result = disk_.Rename(lock + kNewLock, lock);
  if (result >= 0) {
    path_ = path;
    return 0;
  }
  (void)!files_.RemoveOwn(path);
  if (lock_ >= 0) disk_.Close(lock_);
  lock_ = -1;
  return result;
}

void PrivateFolder::Sweep(const std::string& base) {
  std::vector<std::string> found;
  disk_.List(base, [&](const host::FolderEntry& entry) {
    if (entry.kind == host::FileKind::Folder && entry.name.starts_with(kPrefix)) found.push_back(entry.name);
    return true;
  });
  for (const std::string& name : found) {
    const std::string folder = base::JoinPath(base, name);
    host::DiskFacts facts;
    if (disk_.StatLink(folder, facts) < 0 || facts.user != disk_.User() || facts.link) continue;
    SweepFolder(folder, facts);
  }
}

void PrivateFolder::SweepFolder(const std::string& folder, const host::DiskFacts& facts) {
  if (folder.ends_with(kRemoved)) {
    (void)!files_.RemoveOwn(folder);
    return;
  }
  const std::string path = base::JoinPath(folder, host::posix::kInstanceLock);
  for (const std::string& name : {path, path + kNewLock}) {
    const int lock = disk_.OpenOwn(name);
    if (lock < 0) continue;
    // The lock is held until everything is removed, so that a run that is just creating the folder cannot get it.
    if (disk_.Lock(lock) == 0) (void)!files_.RemoveOwn(folder);
    disk_.Close(lock);
    return;
  }
  // Without a lock file, a folder is being removed by its run, which may have been killed meanwhile, or it is just
  // being created; then it is empty, and its run makes another one.
  const bool old = std::chrono::system_clock::now().time_since_epoch() - Modified(facts) > kLongestCreation;
  if (disk_.RemoveFolder(folder) < 0 && old) (void)!files_.RemoveOwn(folder);
}

// Helper programs and colour profiles are never written to, so symbolic links are enough for them. A helper without a
// twin is started as it lies here, and its process is recognised by the path of its executable. A symbolic link would
// lead out of this folder, so it gets a hard link; if the file system allows none, PrepareProgramFolder() copies it.
void PrivateFolder::LinkFrom(const std::string& folder) {
  disk_.List(folder, [&](const host::FolderEntry& entry) {
    const bool twin = entry.kind == host::FileKind::File && entry.name.ends_with(".dll");
    const bool profiles = entry.kind == host::FileKind::Folder && entry.name == "ColorConfigs";
    const std::string from = base::JoinPath(folder, entry.name);
    const std::string to = base::JoinPath(path_, entry.name);
    std::error_code ignored;
    if (twin || profiles) fs::create_symlink(from, to, ignored);
    if (IsLoneProgram(files_, folder, entry)) fs::create_hard_link(from, to, ignored);
    return true;
  });
}

}  // namespace quillon::cli
