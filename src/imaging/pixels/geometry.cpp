// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "imaging/pixels/colours.h"
#include "imaging/pixels/resample.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

// Returns the clockwise rotation that equals angle degrees counter-clockwise, if angle is a multiple of 90.
std::optional<VipsAngle> QuarterTurns(double angle) {
  const double turns = angle / 90;
  if (turns != std::floor(turns)) return std::nullopt;
  constexpr VipsAngle kClockwise[] = {VIPS_ANGLE_D0, VIPS_ANGLE_D270, VIPS_ANGLE_D180, VIPS_ANGLE_D90};
  return kClockwise[static_cast<int>(std::fmod(std::fmod(turns, 4) + 4, 4))];
}

double Radians(double angle) { return std::fmod(angle, 360) * std::numbers::pi / 180; }

// Runs work on pixels whose colours are multiplied by their alpha, so that interpolation weights them by opacity.
template <class Work>
VImage WithPremultipliedAlpha(const VImage& pixels, Work work) {
  if (!HasAlpha(pixels)) return work(pixels);
  const VImage done = work(pixels.cast(VIPS_FORMAT_FLOAT).premultiply());
  return done.unpremultiply()
      .rint()
      .cast(pixels.format())
      .copy(VImage::option()->set("interpretation", pixels.interpretation()));
}

VImage TurnedExactly(const VImage& pixels, VipsAngle clockwise) {
  return clockwise == VIPS_ANGLE_D0 ? pixels : pixels.rot(clockwise);
}

// background has one value a band.
VImage TurnedOn(const VImage& pixels, double angle, const std::vector<double>& background) {
  const base::Size canvas = base::TurnedSize({pixels.width(), pixels.height()}, angle);
  return WithPremultipliedAlpha(
      pixels, [&](const VImage& weighted) { return LanczosTurned(weighted, Radians(angle), canvas, background); });
}

}  // namespace

VImage Turned(const VImage& pixels, double angle, base::Colour colour) {
  if (const std::optional<VipsAngle> turns = QuarterTurns(angle)) return TurnedExactly(pixels, *turns);
  const VImage target = PromoteForColour(pixels, colour);
  return TurnedOn(target, angle, SamplesOf(target, colour));
}

VImage TurnedOnNothing(const VImage& pixels, double angle) {
  if (const std::optional<VipsAngle> turns = QuarterTurns(angle)) return TurnedExactly(pixels, *turns);
  return TurnedOn(pixels, angle, std::vector<double>(static_cast<std::size_t>(pixels.bands()), 0));
}

host::Status MakeUpright(VImage& pixels, int orientation, const PixelSpace& space) {
  // What each orientation needs: a clockwise rotation, and then, for the mirrored ones, a flip from left to right.
  struct Way {
    VipsAngle clockwise;
    bool mirrored;
  };
  constexpr Way kWays[] = {{VIPS_ANGLE_D0, false},  {VIPS_ANGLE_D0, true},   {VIPS_ANGLE_D180, false},
                           {VIPS_ANGLE_D180, true}, {VIPS_ANGLE_D90, true},  {VIPS_ANGLE_D90, false},
                           {VIPS_ANGLE_D270, true}, {VIPS_ANGLE_D270, false}};
  if (orientation <= 1 || orientation > 8) return host::Status::Ok();
  if (host::Status held = MaterializeHuge(pixels, space); !held) return held;
  const Way& way = kWays[orientation - 1];
  if (way.clockwise != VIPS_ANGLE_D0) pixels = pixels.rot(way.clockwise);
  if (way.mirrored) pixels = pixels.flip(VIPS_DIRECTION_HORIZONTAL);
  return host::Status::Ok();
}

VImage Scaled(const VImage& pixels, base::Size size) {
  if (pixels.width() == size.width && pixels.height() == size.height) return pixels;
  return WithPremultipliedAlpha(pixels, [&](const VImage& weighted) { return LanczosScaled(weighted, size); });
}

VImage CropOrPad(const VImage& pixels, base::Rect rect, base::Colour colour) {
  const base::Rect whole{0, 0, pixels.width(), pixels.height()};
  if (rect == whole) return pixels;
  const base::Rect visible = Intersection(rect, whole);
  if (visible == rect) return pixels.extract_area(rect.left, rect.top, rect.width, rect.height);
  const VImage target = PromoteForColour(pixels, colour);
  const std::vector<double> outside = SamplesOf(target, colour);
  if (visible.Empty()) {
    // Nothing of the picture is left: extend one pixel of the colour over the rectangle.
    const VImage dot = target.extract_area(0, 0, 1, 1).new_from_image(outside);
    return dot.embed(0, 0, rect.width, rect.height, VImage::option()->set("extend", VIPS_EXTEND_COPY));
  }
  return target.extract_area(visible.left, visible.top, visible.width, visible.height)
      .embed(visible.left - rect.left, visible.top - rect.top, rect.width, rect.height,
             VImage::option()->set("extend", VIPS_EXTEND_BACKGROUND)->set("background", outside));
}

}  // namespace quillon::imaging
