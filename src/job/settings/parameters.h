// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/settings/geometry.h"

namespace quillon::job {

class Program;

// The cut parameters as the windows and flags hold them now.
CutParameters ReadCutParameters(const Program& program);

}  // namespace quillon::job
