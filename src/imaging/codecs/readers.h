// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

// Readers for the formats that libvips does not decode. Both deliver rows in any order.
namespace quillon::imaging {

// Opens a BMP file. The result is 8-bit RGB, of a file with 64 bits a pixel RGBA.
// Supported: 1, 2, 4, 8, 16, 24, 32, 48 and 64 bits, palettes, bit fields, RLE4 and RLE8, bottom-up and top-down, and
// the headers of OS/2 1.x and 2.x and of every version of Windows. The alpha channel of 16 and 32 bits is ignored,
// since most writers leave it at 0. Uncompressed pixels are read from the file when they are requested. RLE pixels are
// unpacked here, to one byte a pixel. Damaged: the header contradicts itself or the length of the file. Unsupported:
// embedded JPEG or PNG, and the fax and 24-bit RLE codings of OS/2. TooLarge: sides or memory exceed the limits.
host::Status OpenBmp(std::shared_ptr<Bytes> bytes, const Limits& limits, std::shared_ptr<RowSource>& out);

// Opens the merged picture of a PSD or PSB file. Layers are ignored.
// Supported: bitmap, grey, duotone (as grey), indexed, RGB and CMYK, with 1, 8 or 16 bits, raw or RLE.
// Extra channels are dropped: the merged picture is already blended with white.
// Rows are read from the file when they are requested.
// Damaged: the file is truncated, or its header contradicts itself.
// Unsupported: Lab, multichannel, 32 bits, zip compression.
// TooLarge: sides exceed the limits.
host::Status OpenPsd(std::shared_ptr<Bytes> bytes, const Limits& limits, std::shared_ptr<RowSource>& out);

}  // namespace quillon::imaging
