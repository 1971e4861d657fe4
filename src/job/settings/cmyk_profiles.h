// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/status.h"

namespace quillon::job {

class Program;

// The folder of colour profiles, in the program folder.
inline constexpr const char* kColorConfigs = "ColorConfigs";

// Whether the two profiles of a conversion to CMYK, sRGB.icc and Default.icm, are there and work; if not, which and
// why.
host::Status CheckCmykProfiles(Program& program);

}  // namespace quillon::job
