// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillon::helpers {

// What a helper, and every program it starts, may take.
struct Bounds {
  std::uint64_t memory = std::uint64_t{4} << 30;  // bytes of data
  unsigned seconds = 600;                         // of processor time
};

// Shuts this process in: its memory and processor time are limited, it leaves no core file, and it has no network. What
// the kernel does not allow is left out. To be called before the first thread is started.
void ShutIn(const Bounds& bounds);

}  // namespace quillon::helpers
