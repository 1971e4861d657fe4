// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cerrno>

namespace quillon::host::posix {

// Makes a system call, again as long as a signal interrupts it. Returns its result, or minus errno if that is negative.
template <typename Call>
auto Repeat(Call call) -> decltype(call()) {
  for (;;) {
    const auto result = call();
    if (result >= 0) return result;
    if (errno != EINTR) return -errno;
  }
}

}  // namespace quillon::host::posix
