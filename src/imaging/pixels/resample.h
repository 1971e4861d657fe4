// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include <vips/vips8>

#include "base/rect.h"

namespace quillon::imaging {

// Sums are kept in floating point and rounded once. Samples are unsigned whole numbers of 8 or 16 bits, or floating
// point, which is neither rounded nor clipped; the result has the same. There are at most four bands.

// Scaled to size by the Lanczos kernel, both ways, strip by strip: reads the pixels from top to bottom. To less than a
// 32nd, blocks of pixels are averaged first.
vips::VImage LanczosScaled(const vips::VImage& pixels, base::Size size);

// Turned about the centre by radians counter-clockwise onto a canvas; centre goes to centre. Pixels are interpolated
// by the Lanczos kernel; those of the rim are taken to go on beyond it, and cover what they cover of a pixel. The rest
// is background, one value a band.
vips::VImage LanczosTurned(const vips::VImage& pixels, double radians, base::Size canvas,
                           const std::vector<double>& background);

}  // namespace quillon::imaging
