// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/regions.h"

namespace quillon::regions {

Regions::Regions(job::Program& program) : cutFrame(program), fMultCut(program), fCutTime(program) {
  program.windows.Add(fMultCut);
  program.windows.Add(fCutTime);
}

}  // namespace quillon::regions
