// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "imaging/limits.h"
#include "imaging/pixels/picture.h"
#include "imaging/types.h"

// A lane is a file through which the program and its helpers on one machine exchange a picture. It holds a header, the
// ICC profile, the EXIF block and the samples as they are in memory. The format is private and depends on the byte
// order of the machine; a lane is never kept longer than a run.
namespace quillon::imaging {

// Writes the picture row by row, without holding a second copy. Returns the first error of the draft.
Status WriteLane(const Picture& picture, host::Draft& draft);

// Reads a lane. The header is checked against the size of the file before anything is allocated.
// Missing: there is no such file. Damaged: the file is not a complete lane of this machine.
// TooLarge: sides or memory exceed the limits.
Status ReadLane(const std::string& path, const Limits& limits, Picture& out);

}  // namespace quillon::imaging
