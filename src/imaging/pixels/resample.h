// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include <vips/vips8>

#include "base/rect.h"

// Resampling for libvips pipelines, with at most four bands. Samples are unsigned integers of 8 or 16 bits, or floats;
// the result has the same format. Sums are floats and are rounded once; float samples are neither rounded nor clamped.
namespace quillon::imaging {

// Resamples to size with the Lanczos kernel on both axes. Reads the pixels once, from top to bottom.
// A reduction by 32 or more averages blocks of pixels first.
vips::VImage LanczosScaled(const vips::VImage& pixels, base::Size size);

// Rotates by radians counter-clockwise onto a canvas; the centre of the picture becomes the centre of the canvas.
// Pixels are interpolated with the Lanczos kernel, and edge pixels repeat beyond the edge.
// A canvas pixel at the edge is blended by the share of its area that the picture covers. The rest is background, which
// has one value a band.
vips::VImage LanczosTurned(const vips::VImage& pixels, double radians, base::Size canvas,
                           const std::vector<double>& background);

}  // namespace quillon::imaging
