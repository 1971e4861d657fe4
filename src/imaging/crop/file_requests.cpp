// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/file_requests.h"

#include <utility>

#include "base/path_text.h"
#include "base/rounding.h"
#include "imaging/codecs/encode.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/crop/crop_window.h"
#include "imaging/crop/picture_steps.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using vips::VImage;

constexpr int kZoomQuality = 98;

Status Open(const PictureInput& input, const std::string& path, OpenedPicture& out) {
  return OpenPicture(input.files, path, input.limits, {}, out, input.control);
}

// Copies EXIF and orientation from the tagSource of the request, if that can be opened.
void CopyTags(const PictureInput& input, const CropRequest& request, PictureTags& tags) {
  if (!request.tagSource.empty()) {
    OpenedPicture named;
    const Status opened = Guarded(fault::DamagedPicture(), [&] { return Open(input, request.tagSource, named); });
    if (opened) {
      tags.exif = named.tags.exif;
      tags.orientation = named.tags.orientation;
    }
  }
  if (!request.upright) return;
  tags.exif = UprightExif(tags.exif);
  tags.orientation = 1;
}

Encoder EncoderOfPath(const std::string& path) { return EncoderFor(base::SplitPath(path).extension); }

base::Size DrawnSize(const BorderRequest& request) {
  return {base::R(request.drawn.width * request.scale), base::R(request.drawn.height * request.scale)};
}

Status CheckBorder(const BorderRequest& request, const Limits& limits) {
  const base::Size drawn = DrawnSize(request);
  const base::Size& total = request.total;
  if (drawn.Empty() || total.Empty()) return fault::NoSize();
  const bool fits = WithinLimits(drawn.width, drawn.height, limits) && WithinLimits(total.width, total.height, limits);
  return fits ? Status::Ok() : fault::SidesTooLarge();
}

}  // namespace

Status LoadPicture(const PictureInput& input, const std::string& path, Picture& out) {
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = Open(input, path, opened); !open) return open;
    Picture picture;
    if (Status read = ReadWhole(opened, picture); !read) return read;
    if (Status held = Materialize(picture.pixels, input.limits); !held) return held;
    out = std::move(picture);
    return Status::Ok();
  });
  return ReadStatus(opened, status);
}

bool IsDirect(const CropRequest& request) {
  return request.encoder == Encoder::Jpeg && request.tagSource.empty() && !request.upright;
}

Status CropDirectly(const PictureInput& input, const CropRequest& request, host::Draft& draft, const Admission& admit) {
  JpegCutControl control;
  control.stop = input.control.stop;
  control.calls = input.control.calls;
  control.content = input.control.content;
  control.admit = admit;
  return CropJpeg(request, input.limits, draft, control);
}

// The rows below the crop are read too, so that damage there is found.
Status CropThrough(const PictureInput& input, const CropRequest& request, host::Draft& draft) {
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = Open(input, request.source, opened); !open) return open;
    const base::Size& size = opened.original;
    // If the crop misses the picture, one row is read all the same, because it has the format of the pixels.
    base::Rect seen = Intersection(request.rect, {0, 0, size.width, size.height});
    if (seen.Empty()) seen.height = 1;
    Picture cut;
    cut.tags = opened.tags;
    CopyTags(input, request, cut.tags);
    if (Status read = ReadRows(opened, seen.top, seen.height, cut.pixels); !read) return read;
    base::Rect rect = request.rect;
    rect.top -= seen.top;
    Status written = EncodeWindow(std::move(cut), rect, request, draft);
    return written ? CheckRemainingRows(opened) : written;
  });
  return ReadStatus(opened, status);
}

Status MakeCrop(const PictureInput& input, const CropRequest& request, host::Draft& draft) {
  if (IsDirect(request)) {
    Status status = CropDirectly(input, request, draft);
    if (status || status.GetProblem() != Problem::Unsupported || draft.Size() > 0) return status;
  }
  return CropThrough(input, request, draft);
}

Status CropUnder(const PictureInput& input, const CropRequest& request, const Overlay& overlay, Picture& out) {
  Picture above;
  if (Status loaded = LoadPicture(input, request.source, out); !loaded) return loaded;
  if (Status loaded = LoadPicture(input, overlay.picture, above); !loaded) return loaded;
  return Guarded(fault::DamagedPicture(), [&] {
    out = Displayed(out);
    out.pixels = AsRgb(CropOrPad(out.pixels, request.rect, base::kWhite));
    if (Status held = Materialize(out.pixels, input.limits); !held) return held;
    const base::Rect place{overlay.left, overlay.top, above.pixels.width(), above.pixels.height()};
    return Draw(out, above, place, input.limits);
  });
}

Status DrawBorder(const PictureInput& input, const BorderRequest& request, Picture& out) {
  if (Status fits = CheckBorder(request, input.limits); !fits) return fits;
  const base::Size& total = request.total;
  Picture picture;
  if (Status status = LoadPicture(input, request.source, picture); !status) return status;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    VImage pixels = EightBit(Flattened(picture.pixels, request.colour));
    if (!request.image.Empty()) {
      pixels = CropOrPad(pixels, {0, 0, request.image.width, request.image.height}, request.colour);
    }
    pixels = Turned(pixels, request.rotation, request.colour);
    if (Status held = Materialize(pixels, input.limits); !held) return held;
    pixels = Scaled(pixels, DrawnSize(request));
    picture.pixels = CropOrPad(pixels, {-request.offsetX, -request.offsetY, total.width, total.height}, request.colour);
    return Status::Ok();
  });
  if (!status) return status;
  if (request.dpi > 0) picture.tags.dpi = request.dpi;
  if (request.rotation != 0) {
    picture.tags.orientation = 1;
    picture.tags.exif = UprightExif(picture.tags.exif);
  }
  if (!ProfileFits(picture.tags.profile, picture.pixels)) picture.tags.profile.clear();
  out = std::move(picture);
  return Status::Ok();
}

Status EncodeBorder(const Picture& bordered, const BorderRequest& request, host::Draft& draft) {
  EncodeOptions options{.quality = request.quality, .exif = request.exif};
  options.encoder = EncoderOfPath(request.destination);
  return EncodePicture(bordered, options, draft);
}

Status CheckZoom(const ZoomRequest& request, const Limits& limits) {
  if (request.size.width < 1 || request.size.height < 1) return fault::NoSize();
  return WithinLimits(request.size.width, request.size.height, limits) ? Status::Ok() : fault::SidesTooLarge();
}

Status MakeZoom(const PictureInput& input, const ZoomRequest& request, host::Draft& draft) {
  EncodeOptions options{.quality = kZoomQuality, .exif = request.exif};
  options.encoder = EncoderOfPath(request.destination);
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = Open(input, request.source, opened); !open) return open;
    Picture picture;
    if (Status read = ReadWhole(opened, picture); !read) return read;
    picture.pixels = Scaled(picture.pixels, request.size);
    return EncodePicture(picture, options, draft);
  });
  return ReadStatus(opened, status);
}

Status MakeEffects(const PictureInput& input, const EffectsRequest& request, host::Draft& draft) {
  Picture picture;
  if (Status loaded = LoadPicture(input, request.source, picture); !loaded) return loaded;
  if (picture.pixels.width() != request.size.width || picture.pixels.height() != request.size.height) {
    return {Problem::Other, "图片的尺寸与已知的不同"};
  }
  for (const PixelStep& step : request.steps) {
    Status applied = Guarded(fault::DamagedPicture(), [&] { return ApplyStep(step, picture, input.limits); });
    if (!applied) return applied;
    if (input.control.stop.stop_requested()) return {Problem::Stopped, "已停止"};
  }
  if (request.dpi > 0) picture.tags.dpi = request.dpi;
  const EncodeOptions options{request.encoder, request.save.quality, request.save.blackWhite, request.save.exif};
  return Guarded(fault::NotSaved(), [&] { return EncodePicture(picture, options, draft); });
}

Encoder EncoderOf(const FileRequest& request) {
  if (const auto* crop = std::get_if<CropRequest>(&request)) return crop->encoder;
  if (const auto* effects = std::get_if<EffectsRequest>(&request)) return effects->encoder;
  return EncoderOfPath(DestinationOf(request));
}

}  // namespace quillon::imaging
