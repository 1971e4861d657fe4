// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/decoded_source.h"

#include <utility>
#include <variant>
#include <vector>

#include "imaging/pixels/geometry.h"

namespace quillon::imaging {
namespace {

std::vector<base::Rect> AreasOf(const FileWork& cuts) {
  std::vector<base::Rect> areas;
  for (const FileRequest& request : cuts.steps) {
    if (const auto* crop = std::get_if<CropRequest>(&request)) areas.push_back(crop->rect);
  }
  return areas;
}

}  // namespace

Status DecodeForCuts(const PictureInput& input, const std::string& path, Encoder encoder, const FileWork& cuts,
                     DecodedSource& out) {
  out.encoder = encoder;
  if (encoder == Encoder::Jpeg) {
    JpegPixels pixels;
    Status decoded = DecodeJpeg(input.files, path, input.limits, pixels, input.control, AreasOf(cuts));
    if (decoded) out.jpeg = std::move(pixels);
    if (decoded || decoded.GetProblem() != host::Problem::Unsupported) return decoded;
  }
  return LoadPicture(input, path, out.picture);
}

bool FitsDecoded(const CropRequest& request, Encoder encoder) {
  return request.encoder == encoder && request.tagSource.empty() && !request.upright;
}

bool HoldsPixels(const DecodedSource& source, const base::Rect& rect) {
  if (!source.jpeg || !source.jpeg->tiles) return true;
  const base::Size& size = source.jpeg->size;
  const base::Rect seen = Intersection(rect, {0, 0, size.width, size.height});
  return seen.Empty() || source.jpeg->tiles->Holds(seen);
}

Status CropDecoded(const PictureInput& input, const DecodedSource& source, const CropRequest& request,
                   host::Draft& draft) {
  if (source.jpeg) {
    JpegCutControl control;
    control.stop = input.control.stop;
    control.calls = input.control.calls;
    control.content = input.control.content;
    control.decoded = &*source.jpeg;
    return CropJpeg(request, input.limits, draft, control);
  }
  return Guarded(fault::DamagedPicture(),
                 [&] { return EncodeWindow(source.picture, request.rect, request, input.Space(), draft); });
}

}  // namespace quillon::imaging
