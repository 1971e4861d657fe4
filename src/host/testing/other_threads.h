// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::host::testing {

// Whether every other thread of this process waits for something. A test whose clock moves on only then gives them all
// the time they need, however busy the machine is, and none to one that hangs.
bool OtherThreadsWait();

}  // namespace quillon::host::testing
