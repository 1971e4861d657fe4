// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// Carries out the order in a file. Into "MakeTiffProg" of the order's application goes what it is at, then "True"
// once the TIFF stands, "FullDisk" where the disk is full, or what else it failed with. A picture that cannot be read
// is left out, but then no file is replaced.
host::Status MakeTiffByList(Helper& helper, const std::string& path);

}  // namespace quillon::helpers
