// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/types.h"

#include "base/path_text.h"

namespace quillon::imaging {

Encoder EncoderFor(const std::string& extension) {
  const std::string lower = base::ToLowerAscii(extension);
  if (lower == "png") return Encoder::Png;
  if (lower == "gif") return Encoder::Gif;
  if (lower == "tif" || lower == "tiff") return Encoder::Tiff;
  if (lower == "bmp" || lower == "dib") return Encoder::Bmp;
  return Encoder::Jpeg;
}

}  // namespace quillon::imaging
