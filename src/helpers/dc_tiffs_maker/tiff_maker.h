// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// Makes a TIFF by the order in the file path.
// The settings value "MakeTiffProg" of the order's application receives the progress, then "True" after the TIFF is
// saved,
// "FullDisk" if the disk is full, or the text of any other failure.
// A picture that cannot be read is omitted. An existing file is then not replaced.
host::Status MakeTiffByList(Helper& helper, const std::string& path);

}  // namespace quillon::helpers
