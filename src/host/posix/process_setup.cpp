// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/process_setup.h"

#include <malloc.h>

#include <csignal>

namespace quillon::host::posix {
namespace {

constexpr int kReturnedBytes = 4 << 20;

}  // namespace

void IgnoreSignals() {
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
}

// Setting the threshold also stops the C library from raising it to the size of the blocks that are freed.
void ReturnFreedMemory() { mallopt(M_MMAP_THRESHOLD, kReturnedBytes); }

}  // namespace quillon::host::posix
