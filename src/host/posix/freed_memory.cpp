// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/freed_memory.h"

#include <malloc.h>

namespace quillon::host::posix {
namespace {

constexpr int kReturned = 4 << 20;  // bytes

}  // namespace

// A threshold that is set stays; one that is not follows the blocks that are freed.
void ReturnFreedMemory() { mallopt(M_MMAP_THRESHOLD, kReturned); }

}  // namespace quillon::host::posix
