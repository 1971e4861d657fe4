// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/limits.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {

// Reduces 8-bit RGB pixels to at most 1 << bits colours, which are chosen for the picture, with dithering. bits is 4 or
// 8. The pixels are held in memory.
// TooLarge: they exceed limits. Throws VError if they cannot be computed.
host::Status Quantise(vips::VImage& pixels, int bits, const Limits& limits);

}  // namespace quillon::imaging
