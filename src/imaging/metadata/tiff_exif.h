// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "imaging/io/bytes.h"

// Converts EXIF between TIFF files, which spread it over their directories, and the block of the other formats.
// Copied are the tags that describe the picture: camera, lens, exposure, time, place, author, copyright.
// Maker notes are not copied, since they contain offsets into the original file, nor are tags about the pixels.
namespace quillon::imaging {

// Returns the EXIF of the first page of a TIFF as a block (see exif_block.h), with orientation and resolution.
// Empty if the page has none. Values above 32 KB are left out.
std::string ExifOfTiff(Bytes& file);

// Adds the EXIF of a block to a finished little-endian TIFF: new directories are appended to the draft, the first of
// them with all entries of the old first directory, and the header points to it afterwards.
// The draft is not changed if the block contains no EXIF, or if a classic TIFF would grow beyond 4 GB.
// Returns NotSaved if the draft is not a TIFF, or the error of the draft.
host::Status AddExifToTiff(const std::string& block, host::Draft& draft);

}  // namespace quillon::imaging
