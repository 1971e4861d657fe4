// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "base/rect.h"
#include "imaging/io/read_control.h"
#include "imaging/limits.h"
#include "imaging/rows/row_source.h"
#include "imaging/rows/tile_store.h"
#include "imaging/types.h"

// The pixels of a JPEG file, as a stream of rows or held whole. Both accept the files that CutJpeg accepts, report the
// same failures, and check the file to its end.
namespace quillon::imaging {

// Displayed: grey stays grey, CMYK and YCCK become ink, everything else RGB. AsStored: samples in the colour space of
// the file, whatever the layout calls them, with the chroma of every pixel. YccAsStored: YCbCr as it is stored
// (RowFacts::ycc is set), everything else displayed.
enum class JpegColours { Displayed, AsStored, YccAsStored };

// Opens a JPEG to be decoded row by row. It is decoded at 1/shrink of its size (1, 2, 4 or 8; sides rounded up). A
// picture is held whole only if it is stored in several scans. Failures: see JpegReader::Open; Damaged may also come
// with any row.
Status OpenJpegRows(const std::string& path, int shrink, const Limits& limits, std::shared_ptr<RowStream>& out,
                    JpegColours colours = JpegColours::Displayed, const ReadControl& control = {});

// A JPEG held whole as it is stored: samples in the colour space of the file, interleaved, with the chroma of every
// pixel. A large picture (see IsLarge) is in tiles instead of samples.
struct JpegPixels {
  base::Size size;
  std::size_t components = 0;
  std::vector<unsigned char> samples;
  std::shared_ptr<TileStore> tiles;

  // Copies the samples of area, which lies inside the picture, to rows that begin step bytes apart.
  Status Read(const base::Rect& area, unsigned char* out, std::size_t step) const;
};

// Decodes the file at path to its end. Of a large picture only areas need be kept, unless they are empty; see
// TileStore::KeepOnly. If there is no disk for a large picture, it is held in memory.
// Failures: see JpegReader::Open; TooLarge also if the samples are above limits, checked before they are allocated.
Status DecodeJpeg(const host::Files& files, const std::string& path, const Limits& limits, JpegPixels& out,
                  const ReadControl& control = {}, const std::vector<base::Rect>& areas = {});

}  // namespace quillon::imaging
