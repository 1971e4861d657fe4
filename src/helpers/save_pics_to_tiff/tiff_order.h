// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// Reads "Ops.txt": the target, the mode, then a picture a line.
//
// "SaveNew" makes a TIFF of the pictures, black and white; those that the program took out of a TIFF, in "Tmp" of the
// program folder, keep their colours. A picture that cannot be read is left out, but then no file is replaced.
// "1" counts the pages of the target: the count becomes the first line of "Ops.txt"; 0 for what is no TIFF.
host::Status RunTiffOrder(Helper& helper);

}  // namespace quillon::helpers
