// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <utility>

#include "imaging/limits.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/clip_lane.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

// What DrawImage draws: opaque pixels of canvas's kind, where they meet it.
VImage Overlaid(const VImage& below, const VImage& above) {
  if (!HasAlpha(above)) return above;
  if (HasAlpha(below)) {
    const VImage mixed = below.composite2(above, VIPS_BLEND_MODE_OVER,
                                          VImage::option()->set("compositing_space", below.interpretation()));
    return mixed.rint().cast(below.format());
  }
  const int bands = below.bands();
  const double most = below.format() == VIPS_FORMAT_USHORT ? 65535 : 255;
  const VImage share = above.extract_band(bands) / most;
  const VImage colours = above.extract_band(0, VImage::option()->set("n", bands));
  return (below + (colours - below) * share).rint().cast(below.format());
}

// Pixels in memory that nothing else looks at, so that they may be drawn on.
VImage OwnPixels(VImage& pixels) {
  const bool own = pixels.get_image()->dtype == VIPS_IMAGE_SETBUF && G_OBJECT(pixels.get_image())->ref_count == 1;
  if (own) return std::exchange(pixels, VImage());
  VImage copy = VImage::new_memory();
  pixels.write(copy);
  return copy;
}

}  // namespace

void Services::DisposeImage(Image& image) { image = Image(); }

// Pixels never change under a picture that shares them: DrawImage takes a copy of its own first.
Status Services::CloneImage(const Image& source, Image& out) {
  if (source.Empty()) return fault::NoImage();
  out = Image(std::make_unique<ImageData>(*source.Data()));
  return Status::Ok();
}

int Services::GetImageWidth(const Image& image) const { return image ? image.Data()->picture.pixels.width() : 0; }

int Services::GetImageHeight(const Image& image) const { return image ? image.Data()->picture.pixels.height() : 0; }

int Services::GetImageResolution(const Image& image) const { return image ? image.Data()->picture.tags.dpi : 0; }

void Services::SetImageResolution(Image& image, int dpi) {
  if (image && dpi > 0) image.Data()->picture.tags.dpi = dpi;
}

Status Services::RotateImage(Image& image, double angle, base::Colour background) {
  return OnPicture(image, [&](Picture& picture) {
    const base::Size canvas = base::TurnedSize({picture.pixels.width(), picture.pixels.height()}, angle);
    if (!WithinLimits(canvas.width, canvas.height, parts_->limits)) return fault::SidesTooLarge();
    VImage turned = Turned(picture.pixels, angle, background);
    if (Status status = parts_->Materialize(turned); !status) return status;
    if (!ProfileFits(picture.tags.profile, turned)) picture.tags.profile.clear();
    picture.pixels = turned;
    picture.tags.orientation = 1;
    picture.tags.exif = UprightExif(picture.tags.exif);
    return Status::Ok();
  });
}

Status Services::ResampleImage(Image& image, int width, int height) {
  return OnPicture(image, [&](Picture& picture) {
    if (width < 1 || height < 1) return fault::NoSize();
    if (!WithinLimits(width, height, parts_->limits)) return fault::SidesTooLarge();
    VImage scaled = Scaled(picture.pixels, {width, height});
    if (Status status = parts_->Materialize(scaled); !status) return status;
    picture.pixels = scaled;
    return Status::Ok();
  });
}

Status Services::ConvertImageToGrayMode(Image& image) {
  return OnPicture(image, [&](Picture& picture) {
    Picture grey = GreyPicture(picture);
    if (Status status = parts_->Materialize(grey.pixels); !status) return status;
    picture = std::move(grey);
    return Status::Ok();
  });
}

Status Services::Invert(Image& image) {
  return OnPicture(image, [&](Picture& picture) {
    if (IsCmyk(picture.pixels)) picture = Displayed(picture);
    const VImage& pixels = picture.pixels;
    if (!HasAlpha(pixels)) {
      picture.pixels = pixels.invert();
      return Status::Ok();
    }
    const int colours = pixels.bands() - 1;
    const VImage inverted = pixels.extract_band(0, VImage::option()->set("n", colours)).invert();
    picture.pixels = inverted.bandjoin(pixels.extract_band(colours))
                         .copy(VImage::option()->set("interpretation", pixels.interpretation()));
    return Status::Ok();
  });
}

Status Services::Threshold(Image& image, int level) {
  return OnPicture(image, [&](Picture& picture) {
    Picture grey = GreyPicture(picture);
    grey.pixels = EightBit(Flattened(grey.pixels, base::kWhite)) >= level;
    grey.pixels = grey.pixels.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_B_W));
    grey.tags.profile.clear();
    if (Status status = parts_->Materialize(grey.pixels); !status) return status;
    picture = std::move(grey);
    return Status::Ok();
  });
}

Status Services::CutImage(Image& image, base::Rect rect) {
  return OnPicture(image, [&](Picture& picture) {
    if (rect.Empty()) return fault::EmptyRectangle();
    if (!WithinLimits(rect.width, rect.height, parts_->limits)) return fault::SidesTooLarge();
    const int pixelBytes = static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(picture.pixels.get_image()));
    if (!FitsMemory(rect.width, rect.height, pixelBytes, parts_->limits)) return fault::OutOfMemory();
    picture.pixels = CropOrPad(picture.pixels, rect, base::kWhite);
    return Status::Ok();
  });
}

Status Services::DrawImage(Image& canvas, const Image& image, base::Rect drawn) {
  if (image.Empty()) return fault::NoImage();
  return OnPicture(canvas, [&](Picture& picture) {
    if (drawn.Empty()) return fault::EmptyRectangle();
    if (!WithinLimits(drawn.width, drawn.height, parts_->limits)) return fault::SidesTooLarge();
    const base::Rect seen = Intersection(drawn, {0, 0, picture.pixels.width(), picture.pixels.height()});
    if (seen.Empty()) return Status::Ok();
    const Picture above = InColoursOf(image.Data()->picture, picture);
    VImage patch = Scaled(above.pixels, {drawn.width, drawn.height})
                       .extract_area(seen.left - drawn.left, seen.top - drawn.top, seen.width, seen.height);
    if (HasAlpha(picture.pixels) && !HasAlpha(patch)) {
      patch = patch.bandjoin_const({picture.pixels.format() == VIPS_FORMAT_USHORT ? 65535.0 : 255.0});
    }
    patch = Overlaid(picture.pixels.extract_area(seen.left, seen.top, seen.width, seen.height), patch).copy_memory();
    VImage own = OwnPixels(picture.pixels);
    own.draw_image(patch, seen.left, seen.top);
    picture.pixels = own;
    return Status::Ok();
  });
}

Status Services::NewCanvas(base::Size size, base::Colour colour, Image& out) {
  if (size.Empty()) return fault::NoSize();
  if (!WithinLimits(size.width, size.height, parts_->limits)) return fault::SidesTooLarge();
  return Guarded(fault::OutOfMemory(), [&] {
    auto data = std::make_unique<ImageData>();
    const VImage dot = VImage::black(1, 1, VImage::option()->set("bands", 3))
                           .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    data->picture.pixels =
        CropOrPad(dot.new_from_image(SamplesOf(dot, colour)), {0, 0, size.width, size.height}, colour);
    if (Status status = parts_->Materialize(data->picture.pixels); !status) return status;
    out = Image(std::move(data));
    return Status::Ok();
  });
}

void Services::CopyTags(Image& image, const Image& from) {
  if (image.Empty() || from.Empty()) return;
  PictureTags& tags = image.Data()->picture.tags;
  const PictureTags& source = from.Data()->picture.tags;
  tags.exif = source.exif;
  tags.orientation = source.orientation;
  tags.dpi = source.dpi;
}

Status Services::PutImageOnClipBoard(const Image& image) {
  if (image.Empty()) return fault::NoImage();
  const std::string& lane = parts_->clipBoardPath;
  // A fresh file need not reach the disk before the picture is taken out again.
  static_cast<void>(parts_->files.RemoveOwn(lane));
  return parts_->Save(lane, [&](host::Draft& draft) { return WriteLane(image.Data()->picture, draft); });
}

Status Services::CreateImageFromClipBoard(Image& out) {
  return Guarded(fault::DamagedPicture(), [&] {
    auto data = std::make_unique<ImageData>();
    if (Status status = ReadLane(parts_->clipBoardPath, parts_->limits, data->picture); !status) return status;
    out = Image(std::move(data));
    return Status::Ok();
  });
}

}  // namespace quillon::imaging
