// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillon::helpers {

// Processor time of work on one file, and of work that runs beside a batch or grows with the number of its files.
inline constexpr unsigned kSecondsOfOneFile = 600;
inline constexpr unsigned kSecondsOfABatch = 24 * 3600;

// What a helper, and every program it starts, may take.
struct ResourceLimits {
  std::uint64_t memory = std::uint64_t{4} << 30;  // bytes of data
  unsigned seconds = kSecondsOfOneFile;           // of processor time
};

// Shuts this process in: its memory and processor time are limited, it leaves no core file, and it has no network. What
// the kernel does not allow is left out. To be called before the first thread is started.
void Sandbox(const ResourceLimits& limits);

// Lowers the processor time, all that was used so far included.
void LimitTime(unsigned seconds);

}  // namespace quillon::helpers
