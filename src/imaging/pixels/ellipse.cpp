// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/ellipse.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "imaging/limits.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr int kPixelBytes = 4;

// Tests (2i - w)^2 h^2 + (2j - h)^2 w^2 <= w^2 h^2 in whole numbers, which cannot round a pixel of the outline out.
bool Inside(base::Size size, std::int64_t column, std::int64_t row) {
  const std::int64_t width = size.width;
  const std::int64_t height = size.height;
  const std::int64_t across = (2 * column - width) * height;
  const std::int64_t down = (2 * row - height) * width;
  const std::int64_t most = width * height;
  return across * across + down * down <= most * most;
}

VImage MaskOf(base::Size size) {
  std::vector<unsigned char> mask(static_cast<std::size_t>(size.width) * static_cast<unsigned>(size.height));
  for (int row = 0; row < size.height; ++row) {
    const Span span = EllipseRow(size, row);
    std::memset(mask.data() + static_cast<std::size_t>(row) * static_cast<unsigned>(size.width) + span.first, 255,
                static_cast<std::size_t>(span.end - span.first));
  }
  return VImage(
      vips_image_new_from_memory_copy(mask.data(), mask.size(), size.width, size.height, 1, VIPS_FORMAT_UCHAR));
}

// Returns the box of the source with an alpha band; pixels outside the source are transparent.
VImage Boxed(const VImage& pixels, base::Rect box) {
  VImage opaque = HasAlpha(pixels) ? pixels : pixels.bandjoin_const({255});
  const base::Rect overlap = Intersection(box, {0, 0, pixels.width(), pixels.height()});
  if (overlap.Empty()) {
    return VImage::black(box.width, box.height, VImage::option()->set("bands", kPixelBytes));
  }
  return opaque.extract_area(overlap.left, overlap.top, overlap.width, overlap.height)
      .embed(overlap.left - box.left, overlap.top - box.top, box.width, box.height,
             VImage::option()->set("extend", VIPS_EXTEND_BLACK));
}

}  // namespace

Span EllipseRow(base::Size size, int row) {
  const double half = (2.0 * row - size.height) / size.height;
  const double reach = size.width / 2.0 * std::sqrt(std::max(0.0, 1 - half * half));
  // The square root may be off by a pixel, so the exact test moves both ends.
  int first = std::clamp(static_cast<int>(size.width / 2.0 - reach), 0, size.width);
  while (first > 0 && Inside(size, first - 1, row)) --first;
  while (first < size.width && first <= size.width / 2 + 1 && !Inside(size, first, row)) ++first;
  if (first >= size.width || !Inside(size, first, row)) return {};
  int end = std::clamp(static_cast<int>(size.width / 2.0 + reach) + 1, first + 1, size.width);
  while (end < size.width && Inside(size, end, row)) ++end;
  while (end > first + 1 && !Inside(size, end - 1, row)) --end;
  return {first, end};
}

Status CutEllipse(const Image& source, base::Rect box, const Limits& limits, Image& out) {
  if (box.Empty()) return fault::EmptyRectangle();
  const bool exact = std::int64_t{box.width} * box.height <= std::numeric_limits<std::int32_t>::max();
  if (!exact || !WithinLimits(box.width, box.height, limits) ||
      !FitsMemory(box.width, box.height, kPixelBytes, limits)) {
    return fault::SidesTooLarge();
  }
  return OnPicture(source, [&](const Picture& picture) {
    auto data = std::make_unique<ImageData>();
    data->picture = IsCmyk(picture.pixels) || IsGrey(picture.pixels) ? Displayed(picture) : picture;
    const VImage boxed = Boxed(AsRgb(EightBit(data->picture.pixels)), box);
    data->picture.pixels = (boxed & MaskOf({box.width, box.height}))
                               .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
                               .copy_memory();
    out = Image(std::move(data));
    return Status::Ok();
  });
}

}  // namespace quillon::imaging
