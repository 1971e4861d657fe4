// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/raw_pixels.h"

#include "imaging/pixels/picture.h"

namespace quillon::imaging {

using vips::VImage;

Status ImageOfRgb(base::Size size, const std::vector<unsigned char>& rgb, int dpi, Image& out) {
  if (size.Empty()) return fault::EmptyRectangle();
  if (rgb.size() != static_cast<std::size_t>(size.width) * static_cast<unsigned>(size.height) * 3) {
    return fault::DamagedPicture();
  }
  return Guarded(fault::OutOfMemory(), [&] {
    auto data = std::make_unique<ImageData>();
    // A copy, since the image outlives the bytes of the caller.
    const VImage pixels(
        vips_image_new_from_memory_copy(rgb.data(), rgb.size(), size.width, size.height, 3, VIPS_FORMAT_UCHAR));
    data->picture.pixels = pixels.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    data->picture.tags.dpi = dpi;
    out = Image(std::move(data));
    return Status::Ok();
  });
}

}  // namespace quillon::imaging
