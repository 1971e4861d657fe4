// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/crop_window.h"

#include <optional>

#include "imaging/codecs/encode.h"
#include "imaging/limits.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"

namespace quillon::imaging {

Status CheckCrop(const host::Files& files, const CropRequest& request, const Limits& limits) {
  if (request.rect.Empty()) return fault::EmptyRectangle();
  if (!WithinLimits(request.rect.width, request.rect.height, limits)) return fault::SidesTooLarge();
  const std::optional<host::FileFacts> source = files.Stat(request.source);
  return source && source->kind != host::FileKind::File ? fault::NotAFile() : Status::Ok();
}

Status EncodeWindow(Picture picture, base::Rect rect, const CropRequest& request, host::Draft& draft) {
  // Pad before blending, since the padding is opaque white in any case.
  picture.pixels = EightBit(CropOrPad(picture.pixels, rect, base::kWhite));
  if (request.alpha == Alpha::OnWhite) picture.pixels = Flattened(picture.pixels, base::kWhite);
  if (request.dpi > 0) picture.tags.dpi = request.dpi;
  return EncodePicture(picture, {request.encoder, request.quality, false, request.exif}, draft);
}

Status CropJpeg(const CropRequest& request, const Limits& limits, host::Draft& draft, const JpegCutControl& control) {
  const auto sink = [&](const void* data, std::size_t size) { return draft.Write(data, size); };
  const Status cut =
      CutJpeg(request.source, request.rect, request.quality, request.dpi, request.exif, limits, sink, control);
  return cut ? CheckOutput(Encoder::Jpeg, draft) : cut;
}

}  // namespace quillon::imaging
