// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Opens the merged picture of a PSD or PSB: bitmap, grey, duotone (as grey), indexed, RGB and CMYK, with 1, 8 or 16
// bits, raw or RLE. Extra channels are left out: the merged picture already lies on white. Rows are read from the file
// when they are asked for. Damaged: cut off, or a header that contradicts itself. Unsupported: Lab, multichannel,
// 32 bits, zip.
host::Status OpenPsd(std::shared_ptr<Bytes> bytes, const Limits& limits, std::shared_ptr<RowSource>& out);

}  // namespace quillon::imaging
