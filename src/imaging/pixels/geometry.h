// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/colour.h"
#include "base/rect.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {

// Turned about the centre by angle degrees counter-clockwise, on a canvas of TurnedSize. Multiples of 90 degrees are
// exact; between them pixels are interpolated by Lanczos with three lobes, the rim is smooth, and the canvas shows
// colour, opaque, where nothing lies.
vips::VImage Turned(const vips::VImage& pixels, double angle, base::Colour colour);

// Scaled to size, both sides at least 1, by Lanczos with three lobes. Transparent pixels do not bleed into their
// neighbours.
vips::VImage Scaled(const vips::VImage& pixels, base::Size size);

// The rectangle of a picture; what lies outside is colour, opaque. rect is not empty.
vips::VImage CropOrPad(const vips::VImage& pixels, base::Rect rect, base::Colour colour);

// What two rectangles have in common; empty (0 x 0) where they do not meet. 64-bit inside.
base::Rect Common(base::Rect a, base::Rect b);

}  // namespace quillon::imaging
