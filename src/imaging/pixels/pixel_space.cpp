// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/pixel_space.h"

#include <cstdint>
#include <optional>

#include "imaging/faults.h"
#include "imaging/pixels/draft_target.h"
#include "imaging/pixels/row_image.h"
#include "imaging/rows/tile_store.h"

namespace quillon::imaging {
namespace {

using host::Status;
using vips::VImage;

int PixelBytes(const VImage& pixels) { return static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(pixels.get_image())); }

Status CheckPixels(const VImage& pixels, const Limits& limits) {
  if (!WithinLimits(pixels.width(), pixels.height(), limits)) return fault::SidesTooLarge();
  return FitsMemory(pixels.width(), pixels.height(), PixelBytes(pixels), limits) ? Status::Ok() : fault::OutOfMemory();
}

// Computes the pixels into a TileStore. Returns nothing, and computes nothing, if there is no disk for them.
std::optional<Status> StoreOnDisk(VImage& pixels, const host::Files& files) {
  const base::Size size{pixels.width(), pixels.height()};
  const auto tiles = TileStore::Create(files, size, PixelBytes(pixels));
  if (!tiles) return std::nullopt;
  Status stored =
      ForEachRows(pixels, [&](const RowBlock& rows) { return tiles->Append(rows.first, rows.step, rows.count); });
  if (stored) pixels = ImageOfTiles(tiles, pixels);
  return stored;
}

}  // namespace

bool IsLarge(const VImage& pixels, const PixelSpace& space) {
  return IsLarge(pixels.width(), pixels.height(), space.limits);
}

Status Materialize(VImage& pixels, const PixelSpace& space) {
  if (Status fits = CheckPixels(pixels, space.limits); !fits) return fits;
  if (IsLarge(pixels, space)) {
    if (IsImageOfTiles(pixels)) return Status::Ok();
    if (const std::optional<Status> stored = StoreOnDisk(pixels, space.files)) return *stored;
  }
  // In memory they no longer come in order.
  VImage free = pixels;
  if (pixels.get_typeof(VIPS_META_SEQUENTIAL) != 0) {
    free = pixels.copy();
    free.remove(VIPS_META_SEQUENTIAL);
  }
  pixels = free.copy_memory();
  return Status::Ok();
}

Status MaterializeSmall(VImage& pixels, const PixelSpace& space) {
  return IsLarge(pixels, space) ? CheckPixels(pixels, space.limits) : Materialize(pixels, space);
}

Status MaterializePart(VImage& pixels, const PixelSpace& space) {
  constexpr std::int64_t kShare = 4;
  const std::int64_t count = std::int64_t{pixels.width()} * pixels.height();
  if (IsLarge(pixels, space)) return CheckPixels(pixels, space.limits);
  if (count > space.limits.pixelsInMemory / kShare) {
    if (Status fits = CheckPixels(pixels, space.limits); !fits) return fits;
    if (const std::optional<Status> stored = StoreOnDisk(pixels, space.files)) return *stored;
  }
  return Materialize(pixels, space);
}

Status MaterializeHuge(VImage& pixels, const PixelSpace& space) {
  if (FitsMemory(pixels.width(), pixels.height(), PixelBytes(pixels), space.limits)) return Materialize(pixels, space);
  if (IsImageOfTiles(pixels)) return Status::Ok();
  return StoreOnDisk(pixels, space.files).value_or(fault::OutOfMemory());
}

}  // namespace quillon::imaging
