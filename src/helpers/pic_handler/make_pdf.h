// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "helpers/pic_handler/pic_order.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// One page as large as the picture is at its resolution: the order's, else the picture's own, else 72 dots per inch. A
// jpeg goes into it byte for byte; any other picture as a jpeg of the order's quality, 92 where it tells none.
host::Status MakePdf(Helper& helper, const PicOrder& order);

}  // namespace quillon::helpers
