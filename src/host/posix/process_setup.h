// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Settings of the whole process that main() makes once, before it starts threads.
namespace quillon::host::posix {

// Ignores SIGXFSZ and SIGPIPE. A write that exceeds the limit for file sizes then fails like one to a full disk, and
// one to a closed pipe fails with EPIPE, instead of ending the program.
void IgnoreSignals();

// Makes the C library return freed blocks of 4 MB and more to the system immediately.
// By default it keeps, for each thread, up to twice the size of the largest block freed so far (at most 64 MB), because
// it expects to need them again. Called by programs that work on pictures, whose memory is counted.
void ReturnFreedMemory();

}  // namespace quillon::host::posix
