// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "imaging/pixels/picture.h"
#include "imaging/rows/row_source.h"
#include "imaging/rows/tile_store.h"

namespace quillon::imaging {

// Wraps a row source as a libvips image that reads spans when pixels are requested, in any order and on any thread.
// A read error fails the pipeline and is kept in fault, since libvips loses its reason.
// The image shares ownership of rows and fault. Throws VError.
vips::VImage ImageOfRows(std::shared_ptr<RowSource> rows, std::shared_ptr<ReadFault> fault);

// Wraps the next count rows of a stream as a libvips image. It can be computed once, from top to bottom, and has to be
// used up before the next rows are wrapped.
vips::VImage ImageOfRows(std::shared_ptr<RowStream> rows, int count, std::shared_ptr<ReadFault> fault);

// Wraps a filled store as a libvips image that has the size and format of like. The image shares ownership of tiles.
// Throws VError.
vips::VImage ImageOfTiles(std::shared_ptr<const TileStore> tiles, const vips::VImage& like);

// Returns whether the image is one of ImageOfTiles, and not only computed from one.
bool IsImageOfTiles(const vips::VImage& image);

}  // namespace quillon::imaging
