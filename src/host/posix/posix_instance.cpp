// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/posix_instance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "base/path_text.h"
#include "host/posix/repeat.h"

namespace quillon::host::posix {
namespace {

std::string LockPath(const std::string& programFolder) { return base::JoinPath(programFolder, kInstanceLock); }

}  // namespace

PosixInstance::~PosixInstance() {
  if (handle_ >= 0) close(handle_);
}

bool PosixInstance::Claim() {
  if (handle_ >= 0) return true;
  const std::string path = LockPath(programFolder_);
  const int handle = Repeat([&] { return open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600); });
  if (handle < 0) return true;
  if (flock(handle, LOCK_EX | LOCK_NB) < 0 && errno == EWOULDBLOCK) {
    close(handle);
    return false;
  }
  handle_ = handle;
  return true;
}

bool IsClaimed(const std::string& programFolder) {
  struct stat info {};
  if (lstat(LockPath(programFolder).c_str(), &info) < 0) return false;
  // A line reads "1: FLOCK  ADVISORY  WRITE 4711 08:01:1234 0 EOF". Only the inode is compared, because on some disks
  // the device numbers differ from those of stat.
  const std::string inode = ":" + std::to_string(info.st_ino) + " ";
  std::ifstream locks("/proc/locks");
  for (std::string line; std::getline(locks, line);) {
    if (line.find(" FLOCK ") != std::string::npos && line.find(inode) != std::string::npos) return true;
  }
  return false;
}

}  // namespace quillon::host::posix
