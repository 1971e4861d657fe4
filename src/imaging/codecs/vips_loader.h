// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "base/rect.h"
#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/metadata/picture_format.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Opens a png, gif or tiff with libvips: the first frame, or the given page of a tiff, counted from 0.
// The rows have the pixel formats that Picture describes. The loader reads through bytes, never by file name.
// Damaged: truncated or corrupt. TooLarge: sides exceed the limits.
// Throws VError if the header cannot be read or there is no such page.
Status OpenVipsRows(Format format, const std::shared_ptr<Bytes>& bytes, const Limits& limits,
                    std::shared_ptr<RowStream>& out, int page = 0);

// Returns true if the file is as long as its own structure says. This finds truncated files that their decoder accepts:
//   - png: every chunk up to IEND is there,
//   - gif: every block up to the trailer is there,
//   - tiff: the values of the known tags of the first page lie inside the file.
// Other formats return true, since their readers check this themselves.
// Only the structure is read; no pixel is decoded.
bool IsComplete(Format format, Bytes& bytes);

// Returns false if a file is too short to hold that many pixels, however well they are compressed:
//   - png: the deflated rows,
//   - gif: the canvas, unless it is small, since frames need not cover it,
//   - tiff: the strips or tiles of the first page, if their compression has a bound.
// size is that of the first page and has to be within the limits. Other formats return true. Only the header is read.
bool CanHold(Format format, Bytes& bytes, base::Size size);

}  // namespace quillon::imaging
