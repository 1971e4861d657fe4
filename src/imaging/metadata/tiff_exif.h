// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "imaging/io/bytes.h"

namespace quillon::imaging {

// EXIF between TIFF files, where it is spread over their directories, and the blocks of other formats. What describes
// the picture goes along: camera, lens, exposure, time, place, author, copyright. Makers' private notes do not, since
// they point to places of the file that they were written for, and nothing does that tells of pixels.

// The EXIF of the first page of a TIFF file as a block (see jpeg_exif.h), with orientation and resolution; "" when
// there is none. Values above 32 KB are left out.
std::string ExifOfTiff(Bytes& file);

// Adds a block's EXIF to a finished TIFF of little-endian order: new directories are written behind everything, the
// first one with all that the old one told. A block without any leaves the draft as it is, as does one that a file
// below 4 GB has no room for.
host::Status AddExifToTiff(const std::string& block, host::Draft& draft);

}  // namespace quillon::imaging
