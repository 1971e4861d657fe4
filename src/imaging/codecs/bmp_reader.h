// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Opens a BMP: 1, 2, 4, 8, 16, 24 and 32 bit, palettes, bit fields, RLE4 and RLE8, bottom-up and top-down, with the
// header of OS/2 1.x or 2.x or any of Windows. The result is 8-bit RGB; an alpha channel is ignored, since most
// writers leave it unset. Uncompressed pixels are read from the file when they are asked for; RLE is unpacked to one
// byte a pixel here. Damaged: a header that contradicts itself or the length of the file. Unsupported: embedded JPEG
// or PNG, the fax and 24-bit codings of OS/2.
host::Status OpenBmp(std::shared_ptr<Bytes> bytes, const Limits& limits, std::shared_ptr<RowSource>& out);

}  // namespace quillon::imaging
