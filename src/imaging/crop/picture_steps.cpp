// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/picture_steps.h"

#include <utility>

#include "imaging/faults.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"

namespace quillon::imaging {
namespace {

using host::Status;
using vips::VImage;

// Blends above over below. Both have the same size and colours; the result has the format of below.
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

// Returns pixels in memory that no other image shares, so that they may be changed: the given ones, which are then
// empty, or a copy.
VImage OwnPixels(VImage& pixels) {
  const bool own = pixels.get_image()->dtype == VIPS_IMAGE_SETBUF && G_OBJECT(pixels.get_image())->ref_count == 1;
  if (own) return std::exchange(pixels, VImage());
  VImage copy = VImage::new_memory();
  pixels.write(copy);
  return copy;
}

// Prepares the pixels for a step that reads them more than once or in another order. Small ones are in memory, or
// quickly computed from there.
Status PrepareLarge(VImage& pixels, const PixelSpace& space) {
  return IsLarge(pixels, space) ? Materialize(pixels, space) : Status::Ok();
}

Status Place(const PlaceStep& step, Picture& picture, const PixelSpace& space) {
  Picture canvas;
  if (Status made = MakeCanvas(step.canvas, base::kWhite, space, canvas); !made) return made;
  if (Status drawn = Draw(canvas, picture, step.drawn, space); !drawn) return drawn;
  CopyTags(canvas.tags, picture.tags);
  picture = std::move(canvas);
  return Status::Ok();
}

}  // namespace

Status Rotate(Picture& picture, double angle, base::Colour background, const PixelSpace& space) {
  const base::Size canvas = base::TurnedSize({picture.pixels.width(), picture.pixels.height()}, angle);
  if (!WithinLimits(canvas.width, canvas.height, space.limits)) return fault::SidesTooLarge();
  if (Status prepared = PrepareLarge(picture.pixels, space); !prepared) return prepared;
  VImage turned = Turned(picture.pixels, angle, background);
  if (Status status = MaterializeSmall(turned, space); !status) return status;
  if (!ProfileFits(picture.tags.profile, turned)) picture.tags.profile.clear();
  picture.pixels = turned;
  // The tag described the pixels as they were stored.
  SetOrientation(picture.tags, 1);
  return Status::Ok();
}

Status Resample(Picture& picture, base::Size size, const PixelSpace& space) {
  if (size.width < 1 || size.height < 1) return fault::NoSize();
  if (!WithinLimits(size.width, size.height, space.limits)) return fault::SidesTooLarge();
  if (Status prepared = PrepareLarge(picture.pixels, space); !prepared) return prepared;
  VImage scaled = Scaled(picture.pixels, size);
  if (Status status = MaterializeSmall(scaled, space); !status) return status;
  picture.pixels = scaled;
  return Status::Ok();
}

Status MakeGrey(Picture& picture, const PixelSpace& space) {
  Picture grey = GreyPicture(picture);
  if (Status status = MaterializeSmall(grey.pixels, space); !status) return status;
  picture = std::move(grey);
  return Status::Ok();
}

Status MakeBlackWhite(Picture& picture, int level, const PixelSpace& space) {
  Picture grey = GreyPicture(picture);
  grey.pixels = EightBit(Flattened(grey.pixels, base::kWhite)) >= level;
  grey.pixels = grey.pixels.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_B_W));
  grey.tags.profile.clear();
  if (Status status = MaterializeSmall(grey.pixels, space); !status) return status;
  picture = std::move(grey);
  return Status::Ok();
}

Status InvertColours(Picture& picture) {
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
}

Status CutOut(Picture& picture, base::Rect rect, const PixelSpace& space) {
  if (rect.Empty()) return fault::EmptyRectangle();
  if (!WithinLimits(rect.width, rect.height, space.limits)) return fault::SidesTooLarge();
  const int pixelBytes = static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(picture.pixels.get_image()));
  if (!FitsMemory(rect.width, rect.height, pixelBytes, space.limits)) return fault::OutOfMemory();
  VImage cut = CropOrPad(picture.pixels, rect, base::kWhite);
  // What is computed from a large picture is computed only once.
  if (IsLarge(picture.pixels, space)) {
    if (Status status = MaterializePart(cut, space); !status) return status;
  }
  picture.pixels = cut;
  return Status::Ok();
}

Status Draw(Picture& canvas, const Picture& picture, base::Rect drawn, const PixelSpace& space) {
  if (drawn.Empty()) return fault::EmptyRectangle();
  if (!WithinLimits(drawn.width, drawn.height, space.limits)) return fault::SidesTooLarge();
  const base::Rect seen = Intersection(drawn, {0, 0, canvas.pixels.width(), canvas.pixels.height()});
  if (seen.Empty()) return Status::Ok();
  Picture above = InColoursOf(picture, canvas);
  if (Status prepared = PrepareLarge(above.pixels, space); !prepared) return prepared;
  VImage patch = Scaled(above.pixels, {drawn.width, drawn.height})
                     .extract_area(seen.left - drawn.left, seen.top - drawn.top, seen.width, seen.height);
  if (HasAlpha(canvas.pixels) && !HasAlpha(patch)) {
    patch = patch.bandjoin_const({canvas.pixels.format() == VIPS_FORMAT_USHORT ? 65535.0 : 255.0});
  }
  patch = Overlaid(canvas.pixels.extract_area(seen.left, seen.top, seen.width, seen.height), patch);
  if (IsLarge(canvas.pixels, space)) {
    canvas.pixels = canvas.pixels.insert(patch, seen.left, seen.top);
    return Status::Ok();
  }
  patch = patch.copy_memory();
  VImage own = OwnPixels(canvas.pixels);
  own.draw_image(patch, seen.left, seen.top);
  canvas.pixels = own;
  return Status::Ok();
}

Status MakeCanvas(base::Size size, base::Colour colour, const PixelSpace& space, Picture& out) {
  if (size.Empty()) return fault::NoSize();
  if (!WithinLimits(size.width, size.height, space.limits)) return fault::SidesTooLarge();
  const VImage dot = VImage::black(1, 1, VImage::option()->set("bands", 3))
                         .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
  Picture canvas;
  canvas.pixels = CropOrPad(dot.new_from_image(SamplesOf(dot, colour)), {0, 0, size.width, size.height}, colour);
  if (Status status = MaterializeSmall(canvas.pixels, space); !status) return status;
  out = std::move(canvas);
  return Status::Ok();
}

void SetOrientation(PictureTags& tags, int orientation) {
  tags.orientation = orientation;
  tags.exif = OrientedExif(tags.exif, orientation);
}

void CopyTags(PictureTags& tags, const PictureTags& from) {
  tags.exif = from.exif;
  tags.orientation = from.orientation;
  tags.dpi = from.dpi;
}

Status ApplyStep(const PixelStep& step, Picture& picture, const PixelSpace& space) {
  struct Apply {
    Picture& picture;
    const PixelSpace& space;
    Status operator()(const RotateStep& rotate) { return Rotate(picture, rotate.angle, rotate.background, space); }
    Status operator()(const ResampleStep& resample) { return Resample(picture, resample.size, space); }
    Status operator()(const GreyStep&) { return MakeGrey(picture, space); }
    Status operator()(const ThresholdStep& threshold) { return MakeBlackWhite(picture, threshold.level, space); }
    Status operator()(const InvertStep&) { return InvertColours(picture); }
    Status operator()(const CutStep& cut) { return CutOut(picture, cut.rect, space); }
    Status operator()(const PlaceStep& place) { return Place(place, picture, space); }
  };
  return std::visit(Apply{picture, space}, step);
}

}  // namespace quillon::imaging
