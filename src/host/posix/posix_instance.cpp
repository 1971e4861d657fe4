// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/posix_instance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "base/path_text.h"

namespace quillon::host::posix {

PosixInstance::~PosixInstance() {
  if (handle_ >= 0) close(handle_);
}

bool PosixInstance::Claim() {
  if (handle_ >= 0) return true;
  const std::string path = base::JoinPath(programFolder_, "quillon.lock");
  const int handle = open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (handle < 0) return true;
  if (flock(handle, LOCK_EX | LOCK_NB) < 0 && errno == EWOULDBLOCK) {
    close(handle);
    return false;
  }
  handle_ = handle;
  return true;
}

}  // namespace quillon::host::posix
