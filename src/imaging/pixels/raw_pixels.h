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

// Returns the size and the 8-bit RGB rows of an image as the screen shows it, without padding.
// Transparent pixels are blended with white. CMYK and profiles are converted to sRGB.
// Other: the image is empty.
Status RgbOfImage(const Image& image, base::Size& size, std::vector<unsigned char>& rgb);

}  // namespace quillon::imaging
