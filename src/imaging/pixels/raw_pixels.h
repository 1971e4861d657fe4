// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "base/rect.h"
#include "imaging/image.h"
#include "imaging/types.h"

namespace quillon::imaging {

// 8-bit RGB rows without padding become a picture of that size and resolution (0: not known). Other where the bytes do
// not match the size.
Status ImageOfRgb(base::Size size, const std::vector<unsigned char>& rgb, int dpi, Image& out);

// The way back: as the screen shows the picture, transparency laid on white.
Status RgbOfImage(const Image& image, base::Size& size, std::vector<unsigned char>& rgb);

}  // namespace quillon::imaging
