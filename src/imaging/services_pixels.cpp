// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Images in memory. The work is done by crop/picture_steps.
#include <utility>

#include "imaging/crop/picture_steps.h"
#include "imaging/pixels/clip_lane.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {

void Services::DisposeImage(Image& image) { image = Image(); }

// Copies share their pixels. That is safe, because DrawImage copies the pixels before it changes them.
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
  return OnPicture(image, [&](Picture& picture) { return Rotate(picture, angle, background, parts_->Space()); });
}

Status Services::ResampleImage(Image& image, int width, int height) {
  return OnPicture(image, [&](Picture& picture) { return Resample(picture, {width, height}, parts_->Space()); });
}

Status Services::ConvertImageToGrayMode(Image& image) {
  return OnPicture(image, [&](Picture& picture) { return MakeGrey(picture, parts_->Space()); });
}

Status Services::Invert(Image& image) {
  return OnPicture(image, [](Picture& picture) { return InvertColours(picture); });
}

Status Services::Threshold(Image& image, int level) {
  return OnPicture(image, [&](Picture& picture) { return MakeBlackWhite(picture, level, parts_->Space()); });
}

Status Services::CutImage(Image& image, base::Rect rect) {
  return OnPicture(image, [&](Picture& picture) { return CutOut(picture, rect, parts_->Space()); });
}

Status Services::DrawImage(Image& canvas, const Image& image, base::Rect drawn) {
  if (image.Empty()) return fault::NoImage();
  return OnPicture(canvas,
                   [&](Picture& picture) { return Draw(picture, image.Data()->picture, drawn, parts_->Space()); });
}

Status Services::NewCanvas(base::Size size, base::Colour colour, Image& out) {
  return Guarded(fault::OutOfMemory(), [&] {
    auto data = std::make_unique<ImageData>();
    if (Status made = MakeCanvas(size, colour, parts_->Space(), data->picture); !made) return made;
    out = Image(std::move(data));
    return Status::Ok();
  });
}

void Services::CopyTags(Image& image, const Image& from) {
  if (image.Empty() || from.Empty()) return;
  imaging::CopyTags(image.Data()->picture.tags, from.Data()->picture.tags);
}

Status Services::CopyOrientation(Image& image, const std::string& path) {
  if (image.Empty()) return fault::NoImage();
  const auto tags = std::make_shared<PictureTags>();
  Status read =
      parts_->Run([path, tags](const Parts::Access& access) { return ReadTags(access.Input(), path, *tags); });
  if (read) SetOrientation(image.Data()->picture.tags, tags->orientation);
  return read;
}

Status Services::PutImageOnClipBoard(const Image& image) {
  if (image.Empty()) return fault::NoImage();
  const std::string& lane = parts_->clipBoardPath;
  // A new file need not be synced before the picture is read again.
  static_cast<void>(parts_->files.RemoveOwn(lane));
  return parts_->Run([lane, picture = image.Data()->picture](const Parts::Access& access) {
    return access.Save(lane, [&](host::Draft& draft) { return WriteLane(picture, draft); });
  });
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
