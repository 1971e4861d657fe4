// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "base/rect.h"
#include "imaging/image.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Makes an image from 8-bit RGB rows without padding, top row first.
// dpi is stored as the resolution; 0 means unknown.
// Other: the size is empty. Damaged: the number of bytes does not match the size.
Status ImageOfRgb(base::Size size, const std::vector<unsigned char>& rgb, int dpi, Image& out);

}  // namespace quillon::imaging
