// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "imaging/pixels/picture.h"
#include "imaging/rows/row_source.h"

namespace quillon::imaging {

// The rows as pixels that are read when they are asked for; failures go into fault as well.
vips::VImage ImageOfRows(std::shared_ptr<RowSource> rows, std::shared_ptr<ReadFault> fault);

// The next count rows of a stream as pixels of their own, to be asked for once, from top to bottom.
vips::VImage ImageOfRows(std::shared_ptr<RowStream> rows, int count, std::shared_ptr<ReadFault> fault);

}  // namespace quillon::imaging
