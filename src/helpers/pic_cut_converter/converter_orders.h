// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// Carries out the order in the program folder: "CoupleParam.txt", or else "Param.txt". Without one there is nothing to
// do, which fails. Parts of an order are made one by one; the first that fails ends it.
host::Status RunConverterOrder(Helper& helper);

}  // namespace quillon::helpers
