// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/files/files.h"
#include "imaging/codecs/vips_loader.h"
#include "imaging/limits.h"
#include "imaging/pixels/picture.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// By the first bytes of the content; 16 are enough.
Format FormatOf(std::string_view start);

// A picture whose header was read and checked and whose pixels are decoded when they are asked for. It has either rows,
// in any order, or a stream of them.
struct OpenedPicture {
  Format format = Format::Unknown;
  base::Size original;  // of the picture in the file
  int shrink = 1;       // the rows are reduced by it, sides rounded up
  PictureTags tags;
  std::shared_ptr<RowSource> rows;
  std::shared_ptr<RowStream> stream;
  int taken = 0;  // rows of the stream that were read or handed out
  std::shared_ptr<ReadFault> fault;

  const RowFacts& Facts() const { return rows ? rows->Facts() : stream->Facts(); }
};

// Opens by content, whatever the name says; the first frame or page. A JPEG is reduced by as much of 1, 2, 4 or 8 as
// leaves both sides at least twice as large as reduceTo, unless that is empty. What a later pixel fails with stands in
// fault.
Status OpenPicture(const host::Files& files, const std::string& path, const Limits& limits, base::Size reduceTo,
                   OpenedPicture& out);

// As OpenPicture for a page of a TIFF, counted from 0. Unsupported: no TIFF. Throws where there is no such page.
Status OpenTiffPage(const host::Files& files, const std::string& path, int page, const Limits& limits,
                    OpenedPicture& out);

// The pixels of count rows from top on. Of a stream, rows before them are read over; it hands out every row once, and
// the pixels have to be used up before the next call.
Status ReadRows(OpenedPicture& opened, int top, int count, vips::VImage& out);

// The whole picture.
Status ReadWhole(OpenedPicture& opened, Picture& out);

// The whole picture as far as its reduced rows show it; it differs in size from the original by less than shrink.
Status ReadReduced(OpenedPicture& opened, Picture& out);

// Reduced pixels of a side that its pixels fill to a half at least: one that they fill to less would move everything.
int FilledPixels(int pixels, int shrink);

// Reads what was not taken yet, so that damage there is found as well.
Status CheckRest(OpenedPicture& opened);

// The failure that a pipeline met while it read its picture; else status.
Status ReadStatus(const OpenedPicture& opened, const Status& status);

}  // namespace quillon::imaging
