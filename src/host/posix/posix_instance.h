// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"

namespace quillon::host::posix {

// In the program folder.
inline constexpr const char* kInstanceLock = "quillon.lock";

// The claim is a lock on that file. The file stays; the lock goes with the process. Where no lock can be had at all (a
// disk without locks, no right to write), the program counts as the only one, since it must be able to start.
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

// Whether a program of any process holds the claim. Only looks, so that it is in nobody's way; false where the system
// does not tell.
bool IsClaimed(const std::string& programFolder);

}  // namespace quillon::host::posix
