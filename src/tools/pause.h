// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/host.h"

namespace quillon::tools {

// Waits that many seconds by the time of day, giving the message loop its turns. The time of day is taken in single
// precision. When the clock jumps back, as at midnight, the wait ends at once.
void PauseSeconds(host::Host& host, float seconds);

}  // namespace quillon::tools
