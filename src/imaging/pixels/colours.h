// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "base/colour.h"
#include "imaging/pixels/picture.h"
#include "imaging/rows/row_source.h"

namespace quillon::imaging {

// The colour space is known from the bands: 1 or 2 are grey, 3 or 4 are RGB unless marked as CMYK.
bool IsGrey(const vips::VImage& pixels);
bool IsCmyk(const vips::VImage& pixels);
bool HasAlpha(const vips::VImage& pixels);

// Converts what a loader delivered to the pixels that Picture describes, which every operation here expects.
// Extra bands are dropped. Lab and XYZ, and sample formats other than 8 or 16 bits, become 8-bit sRGB.
// Throws VError if the pixels have no meaning as colours.
vips::VImage StandardPixels(const vips::VImage& loaded);

// Returns true if the bytes are an ICC profile whose colour space is that of the pixels.
bool ProfileFits(const std::string& profile, RowLayout layout);
bool ProfileFits(const std::string& profile, const vips::VImage& pixels);

// Returns one sample value a band for a colour, opaque if there is an alpha band.
// For grey pixels the colour has to be grey. For CMYK ink is 255 minus red, green and blue, with the part that they
// share moved to black.
std::vector<double> SamplesOf(const vips::VImage& pixels, base::Colour colour);

// Converts grey pixels to RGB and returns all others unchanged.
vips::VImage AsRgb(const vips::VImage& pixels);

// Converts grey pixels to RGB if colour is not grey, so that they can be combined with it.
vips::VImage PromoteForColour(const vips::VImage& pixels, base::Colour colour);

// Reduces samples of 16 bits to their upper 8 bits.
vips::VImage EightBit(const vips::VImage& pixels);

// Blends the pixels with colour and drops the alpha band. Returns pixels without alpha unchanged.
vips::VImage Flattened(const vips::VImage& pixels, base::Colour colour);

// Converts to grey or sRGB as a screen shows the picture; the result has no profile.
// CMYK without a profile is converted with a generic press profile.
Picture Displayed(const Picture& picture);

// Converts to one band of grey: 0.299 R + 0.587 G + 0.114 B (Rec. 601) of the displayed values, rounded to nearest.
// An alpha band is kept.
Picture GreyPicture(const Picture& picture);

// Converts picture to the colour space, sample size and profile of like. An alpha band is kept.
Picture InColoursOf(const Picture& picture, const Picture& like);

}  // namespace quillon::imaging
