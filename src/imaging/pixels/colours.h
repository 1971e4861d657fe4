// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "base/colour.h"
#include "imaging/pixels/picture.h"
#include "imaging/rows/row_source.h"

namespace quillon::imaging {

bool IsGrey(const vips::VImage& pixels);
bool IsCmyk(const vips::VImage& pixels);
bool HasAlpha(const vips::VImage& pixels);

// Pixels as every operation here takes them (see Picture), from whatever a loader delivered: further bands are left
// out, other colour spaces and sample formats become RGB. Throws VError where no colours can be made of them.
vips::VImage StandardPixels(const vips::VImage& loaded);

// True when the profile is one for colours of this kind.
bool ProfileFits(const std::string& profile, RowLayout layout);
bool ProfileFits(const std::string& profile, const vips::VImage& pixels);

// The sample values of a colour in pixels of this kind, opaque where there is alpha. On grey pixels it must be grey;
// ink is 255 minus red, green and blue, the common part as black.
std::vector<double> SamplesOf(const vips::VImage& pixels, base::Colour colour);

// Grey pixels made RGB; all others as they are.
vips::VImage AsRgb(const vips::VImage& pixels);

// Grey pixels made RGB where colour is none of grey, so that it can stand beside them.
vips::VImage AbleToHold(const vips::VImage& pixels, base::Colour colour);

// 8-bit samples; of 16 bits the upper half.
vips::VImage EightBit(const vips::VImage& pixels);

// Laid on colour; as it is when there is no alpha.
vips::VImage Flattened(const vips::VImage& pixels, base::Colour colour);

// As the screen shows them: grey or sRGB, no profile any more. CMYK without a profile is taken for a generic press.
Picture Displayed(const Picture& picture);

// One band of Rec. 601 grey of the displayed values, rounded to nearest, and the alpha band where there is one.
Picture GreyPicture(const Picture& picture);

// picture with the colours, sample size and profile of like; alpha is kept.
Picture InColoursOf(const Picture& picture, const Picture& like);

}  // namespace quillon::imaging
