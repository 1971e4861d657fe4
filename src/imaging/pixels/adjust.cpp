// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/adjust.h"

#include <algorithm>

#include "imaging/pixels/colours.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr int kMost = 100;

// Applies change to the colour bands and puts the alpha band back.
template <class Change>
VImage OnColours(const VImage& pixels, Change change) {
  const int colours = pixels.bands() - (HasAlpha(pixels) ? 1 : 0);
  VImage changed = change(pixels.extract_band(0, VImage::option()->set("n", colours)));
  if (HasAlpha(pixels)) changed = changed.bandjoin(pixels.extract_band(colours));
  return changed.copy(VImage::option()->set("interpretation", pixels.interpretation())).copy_memory();
}

}  // namespace

Status AdjustBrightnessAndContrast(Image& image, int brightness, int contrast) {
  const double gain = 1 + std::clamp(contrast, -kMost, kMost) / 100.0;
  const double lift = 2.55 * std::clamp(brightness, -kMost, kMost);
  return OnPicture(image, [&](Picture& picture) {
    if (IsCmyk(picture.pixels)) picture = Displayed(picture);
    const double unit = picture.pixels.format() == VIPS_FORMAT_USHORT ? 257 : 1;
    picture.pixels = OnColours(picture.pixels, [&](const VImage& colours) {
      return colours.linear(gain, (128 - 128 * gain + lift) * unit).rint().cast(colours.format());
    });
    return Status::Ok();
  });
}

Status Sharpen(Image& image) {
  return OnPicture(image, [&](Picture& picture) {
    // The weights sum to the scale, so a flat area keeps its value.
    VImage mask = VImage::new_matrixv(3, 3, -1.0, -1.0, -1.0, -1.0, 16.0, -1.0, -1.0, -1.0, -1.0);
    mask.set("scale", 8.0);
    picture.pixels = OnColours(picture.pixels, [&](const VImage& colours) {
      return colours.conv(mask, VImage::option()->set("precision", VIPS_PRECISION_INTEGER)).cast(colours.format());
    });
    return Status::Ok();
  });
}

}  // namespace quillon::imaging
