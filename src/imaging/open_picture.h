// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/files.h"
#include "imaging/picture.h"
#include "imaging/services.h"

namespace quillon::imaging {

enum class Format { Unknown, Jpeg, Png, Gif, Tiff, Bmp, Psd };

// By the first bytes of the content; 16 are enough.
Format FormatOf(std::string_view start);

// A picture whose header was read and checked and whose pixels are decoded when they are asked for.
struct OpenedPicture {
  Format format = Format::Unknown;
  base::Size original;  // of the picture in the file; pixels may be reduced
  Picture picture;
  bool inOrder = false;  // pixels come once, from top to bottom
  std::shared_ptr<ReadFault> fault;
};

// Opens by content, whatever the name says; the first frame or page. A JPEG is reduced by as much of 1, 2, 4 or 8 as
// leaves both sides at least as large as reduceTo, unless that is empty. What a later pixel fails with stands in fault.
Status OpenPicture(const host::Files& files, const std::string& path, const Limits& limits, base::Size reduceTo,
                   OpenedPicture& out);

// Reads on to row (exclusive) in small steps. Rows that a pipeline skips on its own would all be kept.
void ReadThrough(const vips::VImage& inOrder, int from, int to);

}  // namespace quillon::imaging
