// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/image.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Changes brightness and contrast, both from -100 to 100; values outside are clamped, and 0 changes nothing.
// Each colour sample v of 0 to 255 becomes (v - 128) x (1 + contrast / 100) + 128 + 2.55 x brightness, rounded to
// nearest and clamped. Samples of 16 bits are scaled by 257 accordingly.
// Alpha is not changed. CMYK becomes RGB as the screen shows it.
// Fails with Other if image is empty.
Status AdjustBrightnessAndContrast(Image& image, int brightness, int contrast);

// Sharpens with a 3 x 3 kernel: edges gain contrast, flat areas stay as they are.
// Alpha is not changed. CMYK is sharpened as ink.
// Fails with Other if image is empty.
Status Sharpen(Image& image);

}  // namespace quillon::imaging
