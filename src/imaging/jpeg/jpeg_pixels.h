// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/rect.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// A JPEG held whole as it is stored: samples in the colour space of the file, interleaved, with the chroma of every
// pixel.
struct JpegPixels {
  base::Size size;
  std::size_t components = 0;
  std::vector<unsigned char> samples;

  const unsigned char* At(int column, int row) const {
    const std::size_t pixel =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(size.width) + static_cast<std::size_t>(column);
    return samples.data() + pixel * components;
  }
};

// Decodes the file at path to its end. Unsupported: no JPEG, or of a kind that is not read here. TooLarge: above
// limits, checked before anything is allocated. Damaged: truncated or corrupt. Missing, Denied: it cannot be opened.
Status DecodeJpeg(const std::string& path, const Limits& limits, JpegPixels& out);

}  // namespace quillon::imaging
