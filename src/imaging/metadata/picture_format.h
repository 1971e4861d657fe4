// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

#include "imaging/types.h"

namespace quillon::imaging {

// Recognises the format by the first bytes of a file; 16 bytes are enough.
inline Format FormatOf(std::string_view start) {
  using std::literals::string_view_literals::operator""sv;
  if (start.starts_with("\xFF\xD8\xFF"sv)) return Format::Jpeg;
  if (start.starts_with("\x89PNG\r\n\x1A\n"sv)) return Format::Png;
  if (start.starts_with("GIF87a"sv) || start.starts_with("GIF89a"sv)) return Format::Gif;
  for (const std::string_view head : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
    if (start.starts_with(head)) return Format::Tiff;
  }
  if (start.starts_with("BM"sv)) return Format::Bmp;
  if (start.starts_with("8BPS"sv)) return Format::Psd;
  return Format::Unknown;
}

}  // namespace quillon::imaging
