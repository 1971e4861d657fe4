// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "host/files/files.h"
#include "imaging/codecs/vips_loader.h"
#include "imaging/limits.h"
#include "imaging/metadata/picture_format.h"
#include "imaging/pixels/picture.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// An opened picture: its header was read and checked, its pixels are decoded on request.
// Either rows (random access) or stream (once, from the top) is set, depending on the format.
struct OpenedPicture {
  Format format = Format::Unknown;
  base::Size original;  // size of the picture in the file
  int shrink = 1;       // the rows are reduced by this factor, with sides rounded up
  PictureTags tags;
  std::shared_ptr<RowSource> rows;
  std::shared_ptr<RowStream> stream;
  int consumed = 0;  // rows of the stream that were read or handed to a pipeline
  // Receives the error of a read that happens inside a pipeline.
  std::shared_ptr<ReadFault> fault;
  int threads = 0;  // see ReadControl

  const RowFacts& Facts() const { return rows ? rows->Facts() : stream->Facts(); }
};

// Returns the format of a picture by its first bytes. Damaged: they cannot be read.
Status RecogniseFormat(Bytes& bytes, Format& format);

// Opens a file by its content; the extension is ignored. Of several frames or pages the first is opened.
// A JPEG is reduced by the largest of 1, 2, 4 and 8 that leaves both sides at least twice as large as reduceTo, unless
// reduceTo is empty. Other formats are not reduced.
// Unsupported: not a picture, or a variant that cannot be decoded.
// Damaged: empty, truncated or corrupt. TooLarge: sides exceed the limits.
Status OpenPicture(const host::Files& files, const std::string& path, const Limits& limits, base::Size reduceTo,
                   OpenedPicture& out, const ReadControl& control = {});

// Opens one page of a TIFF, counted from 0. Unsupported: the file is not a TIFF. Throws VError if there is no such
// page.
Status OpenTiffPage(const host::Files& files, const std::string& path, int page, const Limits& limits,
                    OpenedPicture& out);

// Returns count rows from row top on as pixels that are decoded lazily.
// A stream skips the rows before top. It provides each row once, so the pixels have to be computed before the next
// call.
Status ReadRows(OpenedPicture& opened, int top, int count, vips::VImage& out);

// Returns the whole picture, decoded lazily.
Status ReadWhole(OpenedPicture& opened, Picture& out);

// Returns the whole picture with its reduced rows, without edge pixels that the source covers less than half.
// Its sides differ from original / shrink by less than one pixel.
Status ReadReduced(OpenedPicture& opened, Picture& out);

// Returns the reduced pixels of a side that the source covers at least half. Including the rest would shift the
// picture.
int FilledPixels(int pixels, int shrink);

// Decodes the rows that were not read yet, so that damage in them is reported.
Status CheckRemainingRows(OpenedPicture& opened);

// Returns the error that a pipeline met while it read its picture, if there is one, else status.
Status ReadStatus(const OpenedPicture& opened, const Status& status);

}  // namespace quillon::imaging
