// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "host/files/files.h"
#include "imaging/crop/crop_window.h"
#include "imaging/crop/picture_steps.h"
#include "imaging/limits.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr int kLargestPreview = 6000;

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
  if (Status status = CheckCrop(parts_->files, request, parts_->limits); !status) return status;
  std::optional<PrefetchedFiles> ready;
  if (Status waited = PopPrefetched({{request}}, ready); !waited) return waited;
  return parts_->SaveCut(request, [&](host::Draft& draft) {
    return ready ? WriteContent(ready->front(), request.encoder, draft) : MakeCrop(parts_->Input(), request, draft);
  });
}

CropRequest Services::AsGif(CropRequest request) {
  request.encoder = Encoder::Gif;
  request.alpha = Alpha::Kept;
  return request;
}

Status Services::CropToGif(const CropRequest& request, const std::optional<Overlay>& overlay) {
  const CropRequest gif = AsGif(request);
  if (!overlay) return CropToFile(gif);
  if (Status status = CheckCrop(parts_->files, gif, parts_->limits); !status) return status;
  return CropUnder(gif, *overlay);
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
    return Materialize(picture.pixels, parts_->limits);
  });
  const base::Rect place{overlay.left, overlay.top, GetImageWidth(above), GetImageHeight(above)};
  if (status) status = DrawImage(cut, above, place);
  if (!status) return status;
  const EncodeOptions options{.encoder = request.encoder};
  return parts_->SaveCut(request,
                         [&](host::Draft& draft) { return EncodePicture(cut.Data()->picture, options, draft); });
}

Status Services::AddBoardToFile(const BorderRequest& request) {
  Picture bordered;
  if (Status drawn = DrawBorder(parts_->Input(), request, bordered); !drawn) return drawn;
  return parts_->Save(request.destination, [&](host::Draft& draft) { return EncodeBorder(bordered, request, draft); });
}

Status Services::ZoomPic(const std::string& source, const std::string& destination, int width, int height, Exif exif) {
  const ZoomRequest request{source, destination, {width, height}, exif};
  if (Status fits = CheckZoom(request, parts_->limits); !fits) return fits;
  return parts_->Save(destination, [&](host::Draft& draft) { return MakeZoom(parts_->Input(), request, draft); });
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
