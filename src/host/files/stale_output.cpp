// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/stale_output.h"

namespace quillon::host {
namespace {

bool IsOlderOutput(const Files& files, const std::string& source, const std::string& destination) {
  return files.IsFile(destination) && !files.SameFile(source, destination);
}

}  // namespace

// The other problems are found before any work on the result starts.
bool MayLeaveStaleOutput(const Status& failure) {
  switch (failure.GetProblem()) {
    case Problem::Damaged:
    case Problem::DiskFull:
    case Problem::Other:
      return true;
    default:
      return false;
  }
}

bool WouldBeStaleOutput(const host::Files& files, const std::string& source, const std::string& destination,
                        const host::Status& failure) {
  return MayLeaveStaleOutput(failure) && IsOlderOutput(files, source, destination);
}

void DiscardStaleOutput(host::Files& files, const std::string& source, const std::string& destination) {
  if (!IsOlderOutput(files, source, destination)) return;
  // If no trash accepts it, it stays: a file of the user is never deleted for good.
  static_cast<void>(files.Discard(destination));
}

}  // namespace quillon::host
