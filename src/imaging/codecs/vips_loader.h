// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string_view>

#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

enum class Format { Unknown, Jpeg, Png, Gif, Tiff, Bmp, Psd };

// Opens a png, gif or tiff through the library, first frame or that page of a tiff: pixels as Picture has them. Cut off
// or corrupt data is damage. Throws what the library throws where the header cannot be read.
Status OpenLibraryRows(Format format, const std::shared_ptr<Bytes>& bytes, const Limits& limits,
                       std::shared_ptr<RowStream>& out, int page = 0);

}  // namespace quillon::imaging
