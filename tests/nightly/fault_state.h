// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>

namespace quillon::nightly {

// Names the file that holds the FaultState. Without this variable the preloaded library changes nothing.
inline constexpr const char* kStateVariable = "QUILLON_FAULT_STATE";

// What a call can fail with. A call belongs to several classes.
enum CallClass : unsigned {
  kAnyCall = 1,        // every file call: EIO
  kSpaceCall = 2,      // needs space on the disk: ENOSPC
  kPathCall = 4,       // names a path: EACCES
  kInterruptible = 8,  // may wait, so a signal can interrupt it: EINTR
  kAllocation = 16     // takes memory from the heap: ENOMEM
};

enum class FaultMode : std::uint32_t { Count, FailOnce, FailForEver, Kill };

// The fault of one run, in a file that all processes of the run map into memory. The numbers count the calls of all of
// them together, so that a call keeps its number if it is made by a helper or a worker.
struct FaultState {
  std::atomic<std::uint64_t> calls;  // calls of the class so far
  std::atomic<std::uint64_t> fired;  // how many of them failed or killed
  std::uint64_t at;                  // number of the first call that fails, counted from 1
  FaultMode mode;
  std::uint32_t callClass;  // one CallClass: only calls of this class count
  std::int32_t error;       // errno of the failing call
  char root[512];           // only files below this folder count, except for allocations
  char name[32];            // name of the first call that failed
  char path[512];           // and its file
};

}  // namespace quillon::nightly
