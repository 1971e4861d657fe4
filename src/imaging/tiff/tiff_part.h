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

// The rows of a part of the first page of a TIFF, without decoding more than the tiles or strips that it lies in, and
// without holding more than one row of tiles. rect has to overlap the page; it becomes what it has in common with it;
// nothing means the whole page. original is the size of the page.
//
// Plain files only: grey, RGB or CMYK of 8 or 16 bits with the samples of a pixel side by side, and at most one more
// sample, which is alpha; strips of up to 32 MB. Unsupported: any other. Other: rect misses the page.
Status OpenTiffPart(std::shared_ptr<Bytes> bytes, const std::optional<base::Rect>& rect, const Limits& limits,
                    std::shared_ptr<RowStream>& out, base::Size& original);

}  // namespace quillon::imaging
