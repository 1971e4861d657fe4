// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/rect.h"

// The rectangle that CutMedia gets, and the texts of its calls. Paths are inserted unchanged.
namespace quillon::formats {

// Returns the region of a logo as the filter accepts it: left and top of 0 become 1, and the sides end at the edge of
// the picture.
base::Rect LogoRegion(base::Rect rect, base::Size picture);

// Crops in one pass.
std::string CropText(const std::string& source, const base::Rect& rect, const std::string& target);

// The two passes of the high quality. The first computes a palette of the source; the second crops, or removes a logo
// and keeps the size.
std::string PaletteText(const std::string& source, const std::string& palette);
std::string PaletteCropText(const std::string& source, const std::string& palette, const base::Rect& rect,
                            const std::string& target);
std::string PaletteLogoText(const std::string& source, const std::string& palette, const base::Rect& rect,
                            const std::string& target);

}  // namespace quillon::formats
