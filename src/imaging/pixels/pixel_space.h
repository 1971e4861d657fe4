// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/files/files.h"
#include "imaging/limits.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {

// Where the pixels of pictures are held. Both outlive the call that they are given to.
struct PixelSpace {
  const host::Files& files;
  const Limits& limits;
};

// Returns whether the pixels are kept in a TileStore, if there is disk for them.
bool IsLarge(const vips::VImage& pixels, const PixelSpace& space);

// Computes the pixels, so that later steps read them in any order and do not compute them again: into memory, or into a
// TileStore if they are large. Does nothing if they are there already.
// TooLarge: the pixels exceed the limits, which is checked before anything is allocated.
host::Status Materialize(vips::VImage& pixels, const PixelSpace& space);
// As Materialize, but leaves large pixels to be computed when they are read.
host::Status MaterializeSmall(vips::VImage& pixels, const PixelSpace& space);
// As MaterializeSmall, for a part of large pixels: more than a quarter of what may be held in memory goes into a
// TileStore too, so that the part needs no more memory than the whole.
host::Status MaterializePart(vips::VImage& pixels, const PixelSpace& space);
// As Materialize, but accepts pixels above the limit of memory if there is disk for them.
host::Status MaterializeHuge(vips::VImage& pixels, const PixelSpace& space);

}  // namespace quillon::imaging
