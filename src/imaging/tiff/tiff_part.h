// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>

#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Opens the part of the first page of a TIFF that lies in rect, as a stream of rows.
// Only the tiles or strips that contain the part are decoded, and at most one row of tiles is held in memory.
// rect is clipped to the page; without one the part is the whole page. original receives the size of the page.
// Supported are grey, RGB and CMYK with 8 or 16 bits, interleaved samples, and at most one more sample, which is alpha.
// Unsupported: any other kind of TIFF, or a strip of more than 32 MB. Other: rect misses the page.
// Damaged: the file is not a TIFF, or its data cannot be decoded. TooLarge: sides or memory exceed the limits.
Status OpenTiffPart(std::shared_ptr<Bytes> bytes, const std::optional<base::Rect>& rect, const Limits& limits,
                    std::shared_ptr<RowStream>& out, base::Size& original);

}  // namespace quillon::imaging
