// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Opens a page of a TIFF of a kind that libvips cannot read, but libtiff can convert to 8-bit RGB or RGBA: tiles with
// separate planes, YCbCr that is not compressed as JPEG, and old-style JPEG.
// out stays empty if the page is of any other kind, which libvips reads.
// One strip or one row of tiles is held in memory. The rows are those of the file; the orientation is not applied.
// Unsupported: samples of 10 or 12 bits, or several of 2 or 4 bits, which libtiff cannot convert either; the reason
// names the bits. Damaged: the file is not a TIFF. TooLarge: sides or memory exceed the limits.
Status OpenTiffRgba(const std::shared_ptr<Bytes>& bytes, int page, const Limits& limits,
                    std::shared_ptr<RowStream>& out);

}  // namespace quillon::imaging
