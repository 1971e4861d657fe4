// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/quantise.h"

#include "imaging/faults.h"

// libvips chooses colours only while it saves a PNG or a GIF, so the pixels make a detour over a PNG in memory.
namespace quillon::imaging {
namespace {

using vips::VImage;

struct FreeBlob {
  void operator()(VipsBlob* blob) const { vips_area_unref(VIPS_AREA(blob)); }
};

constexpr int kQuickest = 1;        // zlib level
constexpr int kQuantisedPixel = 8;  // bytes that a pixel takes meanwhile

}  // namespace

host::Status Quantise(VImage& pixels, int bits, const Limits& limits) {
  if (!FitsMemory(pixels.width(), pixels.height(), kQuantisedPixel, limits)) return fault::OutOfMemory();
  const std::unique_ptr<VipsBlob, FreeBlob> saved(pixels.pngsave_buffer(VImage::option()
                                                                            ->set("palette", true)
                                                                            ->set("bitdepth", bits)
                                                                            ->set("compression", kQuickest)
                                                                            ->set("strip", true)));
  const VImage loaded = VImage::pngload_buffer(saved.get());
  VImage held = loaded.copy_memory();
  pixels = held.bands() > 3 ? held.extract_band(0, VImage::option()->set("n", 3)) : held;
  return host::Status::Ok();
}

}  // namespace quillon::imaging
