// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/path_text.h"
#include "base/rounding.h"
#include "host/files/files.h"
#include "imaging/crop/crop_window.h"
#include "imaging/limits.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using vips::VImage;

constexpr int kLargestPreview = 6000;

// EXIF and orientation from the file that the request names for them, as far as it can be read.
void CopyTags(const host::Files& files, const Limits& limits, const CropRequest& request, PictureTags& tags) {
  if (!request.tagSource.empty()) {
    OpenedPicture named;
    const Status opened =
        Guarded(fault::DamagedPicture(), [&] { return OpenPicture(files, request.tagSource, limits, {}, named); });
    if (opened) {
      tags.exif = named.tags.exif;
      tags.orientation = named.tags.orientation;
    }
  }
  if (!request.upright) return;
  tags.exif = UprightExif(tags.exif);
  tags.orientation = 1;
}

// Cuts rect out of the source row by row and encodes it on a canvas of 8 bits a sample; CMYK only stays where the
// format can hold it. What is left of a stream is read to its end, so that damage below the cut is found.
Status CropThrough(const host::Files& files, const Limits& limits, const CropRequest& request, host::Draft& draft) {
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = OpenPicture(files, request.source, limits, {}, opened); !open) return open;
    const base::Size& size = opened.original;
    // Where the cut misses the picture, one row of it still tells the kind of pixels.
    base::Rect seen = Intersection(request.rect, {0, 0, size.width, size.height});
    if (seen.Empty()) seen.height = 1;
    Picture cut;
    cut.tags = opened.tags;
    CopyTags(files, limits, request, cut.tags);
    if (Status take = ReadRows(opened, seen.top, seen.height, cut.pixels); !take) return take;
    base::Rect rect = request.rect;
    rect.top -= seen.top;
    Status written = EncodeWindow(std::move(cut), rect, request, draft);
    return written ? CheckRemainingRows(opened) : written;
  });
  return ReadStatus(opened, status);
}

}  // namespace

// Saves the result of a cut. A source that is replaced is kept beside it.
Status Services::Parts::SaveCut(const CropRequest& request, const std::function<Status(host::Draft&)>& fill) {
  return Save(request.destination, [&](host::Draft& draft) {
    Status filled = fill(draft);
    if (!filled || !files.SameFile(request.source, request.destination)) return filled;
    return KeepBackup(files, request.source);
  });
}

Status Services::CropToFile(const CropRequest& request) {
  const host::Files& files = parts_->files;
  if (Status status = CheckCrop(files, request, parts_->limits); !status) return status;
  std::optional<std::string> ready;
  if (parts_->ahead) {
    const Status waited = parts_->ahead->PopCrop(request, parts_->hooks.idle, ready);
    if (!waited) return waited;
  }

  bool direct = IsDirect(request);
  const auto fill = [&](host::Draft& draft) {
    if (ready) {
      Status status = draft.Write(ready->data(), ready->size());
      return status ? CheckOutput(Encoder::Jpeg, draft) : status;
    }
    if (direct) {
      Status status = CropJpeg(request, parts_->limits, draft);
      if (status || status.GetProblem() != Problem::Unsupported || draft.Size() > 0) return status;
      direct = false;
    }
    return CropThrough(files, parts_->limits, request, draft);
  };
  return parts_->SaveCut(request, fill);
}

Status Services::CropToGif(const CropRequest& request, const std::optional<Overlay>& overlay) {
  if (Status status = CheckCrop(parts_->files, request, parts_->limits); !status) return status;
  CropRequest gif = request;
  gif.encoder = Encoder::Gif;
  gif.alpha = Alpha::Kept;
  if (overlay) return CropUnder(gif, *overlay);
  return parts_->SaveCut(request,
                         [&](host::Draft& draft) { return CropThrough(parts_->files, parts_->limits, gif, draft); });
}

// In memory, where a gif is held whole anyway to choose its colours.
Status Services::CropUnder(const CropRequest& request, const Overlay& overlay) {
  Image cut;
  Image above;
  if (Status status = LoadImageFromFile(request.source, cut); !status) return status;
  if (Status status = LoadImageFromFile(overlay.picture, above); !status) return status;
  Status status = OnPicture(cut, [&](Picture& picture) {
    picture = Displayed(picture);
    picture.pixels = AsRgb(CropOrPad(picture.pixels, request.rect, base::kWhite));
    return parts_->Materialize(picture.pixels);
  });
  const base::Rect place{overlay.left, overlay.top, GetImageWidth(above), GetImageHeight(above)};
  if (status) status = DrawImage(cut, above, place);
  if (!status) return status;
  const EncodeOptions options{.encoder = request.encoder};
  return parts_->SaveCut(request,
                         [&](host::Draft& draft) { return EncodePicture(cut.Data()->picture, options, draft); });
}

Status Services::AddBoardToFile(const BorderRequest& request) {
  const base::Size drawn{base::R(request.drawn.width * request.scale), base::R(request.drawn.height * request.scale)};
  const base::Size& total = request.total;
  if (drawn.Empty() || total.Empty()) return fault::NoSize();
  if (!WithinLimits(drawn.width, drawn.height, parts_->limits) ||
      !WithinLimits(total.width, total.height, parts_->limits)) {
    return fault::SidesTooLarge();
  }
  Picture picture;
  if (Status status = parts_->Load(request.source, picture); !status) return status;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    VImage pixels = EightBit(Flattened(picture.pixels, request.colour));
    if (!request.image.Empty())
      pixels = CropOrPad(pixels, {0, 0, request.image.width, request.image.height}, request.colour);
    pixels = Turned(pixels, request.rotation, request.colour);
    if (Status held = parts_->Materialize(pixels); !held) return held;
    pixels = Scaled(pixels, drawn);
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
  EncodeOptions options{.quality = request.quality, .exif = request.exif};
  options.encoder = EncoderFor(base::SplitPath(request.destination).extension);
  return parts_->Save(request.destination, [&](host::Draft& draft) { return EncodePicture(picture, options, draft); });
}

Status Services::ZoomPic(const std::string& source, const std::string& destination, int width, int height, Exif exif) {
  if (width < 1 || height < 1) return fault::NoSize();
  if (!WithinLimits(width, height, parts_->limits)) return fault::SidesTooLarge();
  EncodeOptions options{.quality = 98, .exif = exif};
  options.encoder = EncoderFor(base::SplitPath(destination).extension);
  return parts_->Save(destination, [&](host::Draft& draft) {
    OpenedPicture opened;
    Status status = Guarded(fault::DamagedPicture(), [&] {
      if (Status open = OpenPicture(parts_->files, source, parts_->limits, {}, opened); !open) return open;
      Picture picture;
      if (Status take = ReadWhole(opened, picture); !take) return take;
      picture.pixels = Scaled(picture.pixels, {width, height});
      return EncodePicture(picture, options, draft);
    });
    return ReadStatus(opened, status);
  });
}

Status Services::LoadPreview(const std::string& path, base::Size limit, Preview& out) {
  const double across = std::clamp(limit.width, 1, kLargestPreview);
  const double down = std::clamp(limit.height, 1, kLargestPreview);
  OpenedPicture opened;
  Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = OpenPicture(parts_->files, path, parts_->limits, {}, opened); !open) return open;
    const base::Size whole = opened.original;
    const double scale = std::min({1.0, across / whole.width, down / whole.height});
    const auto side = [&](int pixels) { return std::max(1, static_cast<int>(std::floor(pixels * scale + 1e-9))); };
    const base::Size shown{side(whole.width), side(whole.height)};
    // Now that the size is known, a JPEG can be decoded to little more than what is shown.
    if (opened.format == Format::Jpeg && scale < 1) {
      if (Status open = OpenPicture(parts_->files, path, parts_->limits, shown, opened); !open) return open;
    }
    Picture small;
    if (Status take = ReadReduced(opened, small); !take) return take;
    small.pixels = Scaled(small.pixels, shown);
    small = Displayed(small);
    const VImage rgb = AsRgb(EightBit(Flattened(small.pixels, base::kWhite)));
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> bytes(rgb.write_to_memory(&size), g_free);
    const auto* from = static_cast<const unsigned char*>(bytes.get());
    out = {shown, whole, std::vector<unsigned char>(from, from + size)};
    return Status::Ok();
  });
  return ReadStatus(opened, status);
}

}  // namespace quillon::imaging
