// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstdint>

#include <tiffio.h>

#include "imaging/rows/row_source.h"

namespace quillon::imaging {

// Returns a tag or its TIFF default; otherwise if it has neither.
template <class Value>
Value Tag(TIFF* tiff, std::uint32_t tag, Value otherwise) {
  Value value{};
  return TIFFGetFieldDefaulted(tiff, tag, &value) == 1 ? value : otherwise;
}

// Reads resolution, orientation and ICC profile of the page that is open.
inline void ReadTiffTags(TIFF* tiff, RowFacts& facts) {
  constexpr double kCentimetresPerInch = 2.54;
  double resolution = Tag<float>(tiff, TIFFTAG_XRESOLUTION, 0);
  const auto unit = Tag<std::uint16_t>(tiff, TIFFTAG_RESOLUTIONUNIT, 0);
  if (unit == RESUNIT_CENTIMETER) resolution *= kCentimetresPerInch;
  if (unit != RESUNIT_NONE && resolution >= 0.5 && resolution < 65536) {
    facts.dpi = static_cast<int>(std::lround(resolution));
  }
  const auto orientation = Tag<std::uint16_t>(tiff, TIFFTAG_ORIENTATION, 0);
  if (orientation >= 1 && orientation <= 8) facts.orientation = orientation;
  std::uint32_t size = 0;
  void* profile = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &size, &profile) == 1) {
    facts.profile.assign(static_cast<const char*>(profile), size);
  }
}

}  // namespace quillon::imaging
