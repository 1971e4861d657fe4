// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/colours.h"

#include <algorithm>

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr const char* kProfileField = VIPS_META_ICC_NAME;
constexpr std::size_t kProfileHead = 128;

double MaxSample(const VImage& pixels) { return pixels.format() == VIPS_FORMAT_USHORT ? 65535 : 255; }

int ColourBands(const VImage& pixels) { return pixels.bands() - (HasAlpha(pixels) ? 1 : 0); }

VipsInterpretation RgbOf(const VImage& pixels) {
  return pixels.format() == VIPS_FORMAT_USHORT ? VIPS_INTERPRETATION_RGB16 : VIPS_INTERPRETATION_sRGB;
}

VipsInterpretation GreyOf(const VImage& pixels) {
  return pixels.format() == VIPS_FORMAT_USHORT ? VIPS_INTERPRETATION_GREY16 : VIPS_INTERPRETATION_B_W;
}

VImage WithInterpretation(const VImage& pixels, VipsInterpretation kind) {
  return pixels.copy(VImage::option()->set("interpretation", kind));
}

VImage FirstBands(const VImage& pixels, int count) {
  return pixels.bands() > count ? pixels.extract_band(0, VImage::option()->set("n", count)) : pixels;
}

VImage WithProfile(const VImage& pixels, const std::string& profile) {
  VImage copy = pixels.copy();
  vips_image_set_blob_copy(copy.get_image(), kProfileField, profile.data(), profile.size());
  return copy;
}

VImage WithoutProfile(const VImage& pixels) {
  VImage copy = pixels.copy();
  copy.remove(kProfileField);
  return copy;
}

// Profiles for sRGB have that name in their description, stored with one or two bytes a letter.
// Pixels with such a profile need no conversion for the screen.
bool IsSrgb(const std::string& profile) {
  return profile.find("sRGB") != std::string::npos || profile.find(std::string("s\0R\0G\0B", 7)) != std::string::npos;
}

vips::VOption* Intent(const VImage& pixels) {
  return VImage::option()
      ->set("embedded", true)
      ->set("intent", VIPS_INTENT_RELATIVE)
      ->set("black_point_compensation", true)
      ->set("depth", pixels.format() == VIPS_FORMAT_USHORT ? 16 : 8);
}

// Applies a colour conversion to the colour bands and puts the alpha band back.
template <class Convert>
VImage OnColours(const VImage& pixels, Convert convert) {
  if (!HasAlpha(pixels)) return convert(pixels);
  const int bands = ColourBands(pixels);
  const VImage colours = convert(FirstBands(pixels, bands));
  return WithInterpretation(colours.bandjoin(pixels.extract_band(bands)), colours.interpretation());
}

}  // namespace

bool IsCmyk(const VImage& pixels) { return pixels.interpretation() == VIPS_INTERPRETATION_CMYK; }

bool IsGrey(const VImage& pixels) { return pixels.bands() <= 2; }

bool HasAlpha(const VImage& pixels) { return pixels.bands() == 2 || (pixels.bands() == 4 && !IsCmyk(pixels)); }

VImage StandardPixels(const VImage& loaded) {
  VImage pixels = loaded;
  const bool plain = pixels.coding() == VIPS_CODING_NONE &&
                     (pixels.format() == VIPS_FORMAT_UCHAR || pixels.format() == VIPS_FORMAT_USHORT);
  const VipsInterpretation kind = pixels.interpretation();
  const bool lab = kind == VIPS_INTERPRETATION_LAB || kind == VIPS_INTERPRETATION_LABS ||
                   kind == VIPS_INTERPRETATION_XYZ || kind == VIPS_INTERPRETATION_LABQ;
  if (!plain || lab) pixels = pixels.colourspace(VIPS_INTERPRETATION_sRGB).cast(VIPS_FORMAT_UCHAR);
  if (kind == VIPS_INTERPRETATION_CMYK && pixels.bands() >= 4) {
    return WithInterpretation(FirstBands(pixels, 4), VIPS_INTERPRETATION_CMYK);
  }
  const bool grey = pixels.bands() <= 2 || kind == VIPS_INTERPRETATION_B_W || kind == VIPS_INTERPRETATION_GREY16;
  if (grey) return WithInterpretation(FirstBands(pixels, 2), GreyOf(pixels));
  return WithInterpretation(FirstBands(pixels, 4), RgbOf(pixels));
}

bool ProfileFits(const std::string& profile, RowLayout layout) {
  if (profile.size() < kProfileHead || profile.compare(36, 4, "acsp") != 0) return false;
  // Offset 36 holds the signature of every ICC profile, offset 16 its colour space.
  const char* name = layout == RowLayout::Cmyk ? "CMYK" : layout == RowLayout::Grey ? "GRAY" : "RGB ";
  return profile.compare(16, 4, name) == 0;
}

bool ProfileFits(const std::string& profile, const VImage& pixels) {
  return ProfileFits(profile, IsCmyk(pixels) ? RowLayout::Cmyk : IsGrey(pixels) ? RowLayout::Grey : RowLayout::Rgb);
}

std::vector<double> SamplesOf(const VImage& pixels, base::Colour colour) {
  const double scale = MaxSample(pixels) / 255;
  const double red = colour.Red();
  const double green = colour.Green();
  const double blue = colour.Blue();
  std::vector<double> samples;
  if (IsCmyk(pixels)) {
    const double black = 255 - std::max({red, green, blue});
    samples = {255 - red - black, 255 - green - black, 255 - blue - black, black};
  } else if (IsGrey(pixels)) {
    samples = {green};
  } else {
    samples = {red, green, blue};
  }
  if (HasAlpha(pixels)) samples.push_back(255);
  for (double& sample : samples) sample *= scale;
  return samples;
}

VImage AsRgb(const VImage& pixels) {
  if (!IsGrey(pixels)) return pixels;
  return OnColours(pixels,
                   [](const VImage& one) { return WithInterpretation(one.bandjoin(one).bandjoin(one), RgbOf(one)); });
}

VImage PromoteForColour(const VImage& pixels, base::Colour colour) {
  const bool grey = colour.Red() == colour.Green() && colour.Green() == colour.Blue();
  return grey ? pixels : AsRgb(pixels);
}

VImage EightBit(const VImage& pixels) {
  if (pixels.format() == VIPS_FORMAT_UCHAR) return pixels;
  const VImage small = pixels.cast(VIPS_FORMAT_UCHAR, VImage::option()->set("shift", true));
  return IsCmyk(pixels) ? small : WithInterpretation(small, IsGrey(small) ? GreyOf(small) : RgbOf(small));
}

VImage Flattened(const VImage& pixels, base::Colour colour) {
  if (!HasAlpha(pixels)) return pixels;
  const VImage able = PromoteForColour(pixels, colour);
  std::vector<double> background = SamplesOf(able, colour);
  background.pop_back();
  return able.flatten(VImage::option()->set("background", background)->set("max_alpha", MaxSample(able)));
}

Picture Displayed(const Picture& picture) {
  Picture shown = picture;
  shown.tags.profile.clear();
  const VImage& pixels = picture.pixels;
  const bool cmyk = IsCmyk(pixels);
  const bool known = ProfileFits(picture.tags.profile, pixels);
  if (!cmyk && (!known || IsSrgb(picture.tags.profile))) return shown;
  shown.pixels = OnColours(pixels, [&](const VImage& colours) {
    const VImage source = known ? WithProfile(colours, picture.tags.profile) : colours;
    vips::VOption* options = Intent(colours);
    if (cmyk) options->set("input_profile", "cmyk");
    const VImage rgb = WithoutProfile(source.icc_transform("srgb", options));
    // The three bands of a converted grey picture are equal, so one of them is enough.
    return IsGrey(colours) ? WithInterpretation(rgb.extract_band(1), GreyOf(rgb)) : WithInterpretation(rgb, RgbOf(rgb));
  });
  return shown;
}

Picture GreyPicture(const Picture& picture) {
  Picture grey = Displayed(picture);
  if (IsGrey(grey.pixels)) return grey;
  grey.pixels = OnColours(grey.pixels, [](const VImage& rgb) {
    const VImage weights = VImage::new_matrixv(3, 1, 0.299, 0.587, 0.114);
    return WithInterpretation(rgb.recomb(weights).rint().cast(rgb.format()), GreyOf(rgb));
  });
  return grey;
}

Picture InColoursOf(const Picture& picture, const Picture& like) {
  const VImage& target = like.pixels;
  Picture result = picture;
  const bool sameKind = IsCmyk(picture.pixels) == IsCmyk(target) && IsGrey(picture.pixels) == IsGrey(target);
  if (!sameKind || picture.tags.profile != like.tags.profile) {
    result = IsGrey(target) ? GreyPicture(picture) : Displayed(picture);
    if (!IsGrey(target)) result.pixels = AsRgb(result.pixels);
    // An RGB target without a profile counts as sRGB, which the pixels are already.
    if (IsCmyk(target) || (!IsGrey(target) && !like.tags.profile.empty())) {
      result.pixels = OnColours(result.pixels, [&](const VImage& colours) {
        const VImage neutral = colours.icc_import(VImage::option()->set("input_profile", "srgb"));
        vips::VOption* options = VImage::option()
                                     ->set("intent", VIPS_INTENT_RELATIVE)
                                     ->set("black_point_compensation", true)
                                     ->set("depth", target.format() == VIPS_FORMAT_USHORT ? 16 : 8);
        if (like.tags.profile.empty()) options->set("output_profile", "cmyk");
        const VImage marked = like.tags.profile.empty() ? neutral : WithProfile(neutral, like.tags.profile);
        return WithoutProfile(marked.icc_export(options));
      });
    }
    result.tags.profile = like.tags.profile;
  }
  if (target.format() == VIPS_FORMAT_UCHAR) {
    result.pixels = EightBit(result.pixels);
  } else if (result.pixels.format() == VIPS_FORMAT_UCHAR) {
    // 255 x 257 is 65535, so the full range of 8 bits becomes that of 16.
    const VImage deep = result.pixels * 257;
    result.pixels = deep.cast(VIPS_FORMAT_USHORT);
    if (!IsCmyk(target)) result.pixels = WithInterpretation(result.pixels, target.interpretation());
  }
  return result;
}

}  // namespace quillon::imaging
