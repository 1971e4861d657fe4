// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/colour.h"
#include "base/rect.h"
#include "imaging/pixels/picture.h"
#include "imaging/pixels/pixel_space.h"

namespace quillon::imaging {

// Rotates about the centre by angle degrees counter-clockwise, on a canvas of TurnedSize.
// Multiples of 90 degrees move pixels exactly; any other angle interpolates with a Lanczos kernel of three lobes.
// The edge of the picture is antialiased. The rest of the canvas is filled with colour, opaque.
vips::VImage Turned(const vips::VImage& pixels, double angle, base::Colour colour);

// As Turned, for pixels with alpha; the rest of the canvas is transparent.
vips::VImage TurnedOnNothing(const vips::VImage& pixels, double angle);

// Rotates and mirrors the pixels as an EXIF orientation, 1..8, says, so that they are upright. Any other number changes
// nothing. If they have to be changed they are computed first, as MaterializeHuge does, which returns the errors.
host::Status MakeUpright(vips::VImage& pixels, int orientation, const PixelSpace& space);

// Resamples to size with a Lanczos kernel of three lobes. Both sides are at least 1.
// Colours are weighted by alpha, so that transparent pixels do not bleed into their neighbours.
vips::VImage Scaled(const vips::VImage& pixels, base::Size size);

// Returns the rectangle of a picture. Pixels outside the picture are padded with opaque colour. rect is not empty.
vips::VImage CropOrPad(const vips::VImage& pixels, base::Rect rect, base::Colour colour);

}  // namespace quillon::imaging
