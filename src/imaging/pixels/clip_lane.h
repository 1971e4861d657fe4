// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "imaging/limits.h"
#include "imaging/pixels/picture.h"
#include "imaging/types.h"

namespace quillon::imaging {

// A picture as it passes between the program and its helpers on one machine: its samples as they are in memory, and
// all that goes with it. Never kept longer than a run.
Status WriteLane(const Picture& picture, host::Draft& draft);

// Missing when there is no such file; Damaged when it is no whole lane of this machine; TooLarge above the limits.
Status ReadLane(const std::string& path, const Limits& limits, Picture& out);

}  // namespace quillon::imaging
