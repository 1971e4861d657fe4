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

Status Services::CropToFile(const CropRequest& request) {
  std::optional<PrefetchedFiles> ready;
  if (Status waited = PopPrefetched({{request}}, ready); !waited) return waited;
  if (!ready) {
    return parts_->Run([request](const Parts::Access& access) {
      if (Status status = access.Check(request); !status) return status;
      return access.SaveCut(request, [&](host::Draft& draft) { return MakeCrop(access.Input(), request, draft); });
    });
  }
  return parts_->SaveCrop(request, std::make_shared<const std::string>(std::move(ready->front())));
}

Status Services::Parts::SaveCrop(const CropRequest& request, std::shared_ptr<const std::string> content) {
  const On writer = WriterOf(request.destination, content->size());
  const auto save = [request, content = std::move(content)](const Access& access) {
    if (Status status = access.Check(request); !status) return status;
    return access.SaveCut(request, [&](host::Draft& draft) { return WriteContent(*content, request.encoder, draft); });
  };
  return Run(save, writer);
}

CropRequest Services::AsGif(CropRequest request) {
  request.encoder = Encoder::Gif;
  request.alpha = Alpha::Kept;
  return request;
}

Status Services::CropToGif(const CropRequest& request, const std::optional<Overlay>& overlay) {
  const CropRequest gif = AsGif(request);
  if (!overlay) return CropToFile(gif);
  return parts_->Run([gif, overlay = *overlay](const Parts::Access& access) {
    if (Status status = access.Check(gif); !status) return status;
    Picture cut;
    if (Status status = CropUnder(access.Input(), gif, overlay, cut); !status) return status;
    const EncodeOptions options{.encoder = gif.encoder};
    return access.SaveCut(gif, [&](host::Draft& draft) { return EncodePicture(cut, options, draft); });
  });
}

Status Services::AddBoardToFile(const BorderRequest& request) {
  return parts_->Run([request](const Parts::Access& access) {
    Picture bordered;
    if (Status drawn = DrawBorder(access.Input(), request, bordered); !drawn) return drawn;
    return access.Save(request.destination, [&](host::Draft& draft) { return EncodeBorder(bordered, request, draft); });
  });
}

Status Services::ZoomPic(const std::string& source, const std::string& destination, int width, int height, Exif exif) {
  const ZoomRequest request{source, destination, {width, height}, exif};
  if (Status fits = CheckZoom(request, parts_->limits); !fits) return fits;
  return parts_->Run([request](const Parts::Access& access) {
    return access.Save(request.destination,
                       [&](host::Draft& draft) { return MakeZoom(access.Input(), request, draft); });
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
