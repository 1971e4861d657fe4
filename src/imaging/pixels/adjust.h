// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/image.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Both from -100 to 100, 0 changes nothing; values outside are clamped. Each colour sample v of 0 to 255 becomes
// (v - 128) x (1 + contrast / 100) + 128 + 2.55 x brightness, rounded and clamped; alpha stays. CMYK becomes RGB.
Status AdjustBrightnessAndContrast(Image& image, int brightness, int contrast);

// Makes edges clearer, flat parts stay as they are; alpha stays.
Status Sharpen(Image& image);

}  // namespace quillon::imaging
