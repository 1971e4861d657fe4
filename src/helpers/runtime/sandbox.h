// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillon::helpers {

// The processor time in seconds for one file, and for work that follows a batch or grows with the number of its files.
inline constexpr unsigned kSecondsOfOneFile = 600;
inline constexpr unsigned kSecondsOfABatch = 24 * 3600;

// The programs that a helper may start.
enum class Starts {
  Nothing,
  OneTool,  // the tool that is named in HandedFiles
  Helpers,  // other helpers, which have permissions of their own
};

// What a helper and all programs it starts may use, apart from files (see file_access.h). Declared in its main().
struct Permissions {
  std::uint64_t memory = std::uint64_t{4} << 30;  // bytes of data
  unsigned seconds = kSecondsOfOneFile;           // of processor time
  Starts starts = Starts::Nothing;
};

// Limits memory and processor time of this process, disables core dumps, and blocks the network, access to other
// processes, connections to local servers and the start of programs. A restriction that the kernel does not support is
// skipped. Must be called before the first thread is started.
void Sandbox(const Permissions& permissions);

// Lowers the limit of processor time; the time used so far counts.
void LimitTime(unsigned seconds);

// Allows so many seconds of processor time from now on, rounded up to whole seconds and at most what Sandbox() has
// left. When they are used up, the system ends the process.
void AllowTime(unsigned seconds);

// Leaves this process nothing but its memory, the clock and the handles that it has or receives: no call that opens a
// file, starts a program or a thread, creates a socket or changes anything outside succeeds any more; each fails with
// EACCES. Skipped if the kernel does not support it. Must be called after everything that needs a file was read.
void BlockEverythingElse();

}  // namespace quillon::helpers
