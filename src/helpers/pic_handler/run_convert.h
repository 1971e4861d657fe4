// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "helpers/pic_handler/pic_order.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// Has ImageMagick carry out an order. It works on files of the program folder under plain names, since it reads
// meanings into signs of others; the result is copied to its place.
host::Status RunConvert(Helper& helper, const PicOrder& order);

// ImageMagick's convert, found by asking programs of that name who they are; "" where there is none.
std::string FindConvert();

}  // namespace quillon::helpers
