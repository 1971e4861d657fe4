// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"

namespace quillon::host::posix {

// The name of the lock file in the program folder.
inline constexpr const char* kInstanceLock = "quillon.lock";

// The claim is a lock on that file. The file remains; the lock is released when the process ends.
// If locking is impossible (a disk without locks, no permission to write), the program counts as the only instance,
// because it must be able to start.
class PosixInstance final : public Instance {
 public:
  explicit PosixInstance(std::string programFolder) : programFolder_(std::move(programFolder)) {}
  ~PosixInstance() override;
  PosixInstance(const PosixInstance&) = delete;
  PosixInstance& operator=(const PosixInstance&) = delete;

  bool Claim() override;

 private:
  std::string programFolder_;
  int handle_ = -1;
};

// Returns true if any process holds the claim. Only reads /proc/locks, so it never interferes with a claim.
// Returns false if the system does not list its locks.
bool IsClaimed(const std::string& programFolder);

}  // namespace quillon::host::posix
