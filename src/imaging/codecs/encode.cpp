// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/encode.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/metadata/tiff_exif.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/draft_target.h"
#include "imaging/pixels/geometry.h"

namespace quillon::imaging {
namespace {

using namespace std::string_view_literals;
using vips::VImage;
using vips::VOption;

constexpr double kMillimetres = 25.4;
// The gif saver holds all pixels, at four bytes each, to choose the palette.
constexpr std::int64_t kGifMemory = std::int64_t{1} << 30;
constexpr int kBlackLevel = 128;
// Bits a pixel: from the first on samples have 16 bits, and the second has alpha.
constexpr int kDeepBmp = 48;
constexpr int kAlphaBmp = 64;
constexpr std::uint64_t kBigTiff = 4'000'000'000;
// A pHYs chunk with its length, type and checksum that says 1:1 without a unit, which means no resolution.
constexpr std::string_view kNoDensity = "\0\0\0\x09pHYs\0\0\0\1\0\0\0\1\0\x4F\x25\xC4\xD6"sv;

void SetBlob(VImage& image, const char* field, const std::string& bytes) {
  if (!bytes.empty()) vips_image_set_blob_copy(image.get_image(), field, bytes.data(), bytes.size());
}

// Returns the pixels with the resolution and profile set in their libvips header, where the savers read them.
VImage WithHeader(const Picture& picture, double dpi) {
  VImage image = picture.pixels.copy(VImage::option()
                                         ->set("xres", dpi > 0 ? dpi / kMillimetres : 1.0)
                                         ->set("yres", dpi > 0 ? dpi / kMillimetres : 1.0));
  SetBlob(image, VIPS_META_ICC_NAME, picture.tags.profile);
  return image;
}

// Runs a libvips saver on the draft. An error of the draft wins over the exception that it caused.
template <class Save>
Status SaveWithVips(host::Draft& draft, Save save) {
  DraftTarget target(draft);
  try {
    save(target.Target());
  } catch (const vips::VError&) {
    if (target.Result()) throw;
    vips_error_clear();
  }
  return target.Result();
}

// Overwrites the pHYs chunk, which the saver always writes, by one without a resolution.
Status EraseDensity(host::Draft& draft) {
  std::uint64_t at = 8;
  std::array<unsigned char, 8> chunk{};
  while (ReadDraft(draft, at, chunk.data(), chunk.size())) {
    const std::uint64_t size = std::uint64_t{chunk[0]} << 24 | chunk[1] << 16 | chunk[2] << 8 | chunk[3];
    if (std::memcmp(&chunk[4], "IDAT", 4) == 0) break;
    if (std::memcmp(&chunk[4], "pHYs", 4) == 0) {
      if (Status status = draft.Seek(at); !status) return status;
      return draft.Write(kNoDensity.data(), kNoDensity.size());
    }
    at += size + 12;
  }
  return Status::Ok();
}

Status WritePng(const Picture& picture, Exif exif, int bits, host::Draft& draft) {
  VImage image = WithHeader(picture, picture.tags.dpi);
  const PictureTags& tags = picture.tags;
  std::string block =
      exif == Exif::Keep ? CutExif(tags.exif, {image.width(), image.height()}, tags.dpi) : std::string();
  if (block.empty()) block = MinimalExif(tags.orientation, 0);
  if (!block.empty()) {
    SetBlob(image, VIPS_META_EXIF_NAME, std::string("Exif\0\0", 6) + block);
    image.set(VIPS_META_ORIENTATION, tags.orientation);
  }
  VOption* options = VImage::option();
  if (bits <= 8) {
    options->set("palette", true)->set("bitdepth", bits)->set("dither", 0.0);
  } else {
    options->set("filter", VIPS_FOREIGN_PNG_FILTER_ALL);
  }
  Status status = SaveWithVips(draft, [&](const vips::VTarget& target) { image.pngsave_target(target, options); });
  return status && tags.dpi == 0 ? EraseDensity(draft) : status;
}

Status WriteGif(const Picture& shown, host::Draft& draft) {
  const VImage& pixels = shown.pixels;
  if (std::max(pixels.width(), pixels.height()) > Limits().gifSide) return fault::ResultTooLarge();
  if (std::int64_t{pixels.width()} * pixels.height() > kGifMemory / 4) return fault::OutOfMemory();
  return SaveWithVips(draft, [&](const vips::VTarget& target) { pixels.gifsave_target(target); });
}

Status WriteTiff(const Picture& picture, bool blackWhite, Exif exif, host::Draft& draft) {
  const int dpi = picture.tags.dpi > 0 ? picture.tags.dpi : kDefaultTiffDpi;
  Picture written = picture;
  if (blackWhite) {
    written = GreyPicture(picture);
    written.pixels = EightBit(Flattened(written.pixels, base::kWhite)) >= kBlackLevel;
    written.tags.profile.clear();
  }
  VImage image = WithHeader(written, dpi);
  if (written.tags.orientation != 1) image.set(VIPS_META_ORIENTATION, written.tags.orientation);
  const std::uint64_t size = static_cast<std::uint64_t>(VIPS_IMAGE_SIZEOF_IMAGE(image.get_image()));
  VOption* options =
      VImage::option()->set("resunit", VIPS_FOREIGN_TIFF_RESUNIT_INCH)->set("bigtiff", !blackWhite && size > kBigTiff);
  if (blackWhite) {
    options->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_CCITTFAX4)->set("bitdepth", 1);
  } else {
    options->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_LZW)
        ->set("predictor", VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL);
  }
  Status status = SaveWithVips(draft, [&](const vips::VTarget& target) { image.tiffsave_target(target, options); });
  if (!status || exif == Exif::Drop) return status;
  return AddExifToTiff(CutExif(picture.tags.exif, {image.width(), image.height()}, dpi), draft);
}

Status Write(const Picture& picture, const EncodeOptions& options, const PixelSpace& space, host::Draft& draft) {
  Picture ready = picture;
  const bool cmyk = IsCmyk(picture.pixels);
  const int turn = options.orient == Orient::Apply ? picture.tags.orientation : 1;
  switch (options.encoder) {
    case Encoder::Jpeg:
      ready.pixels = EightBit(Flattened(ready.pixels, base::kWhite));
      return WriteJpeg(ready, options.quality, options.exif, draft);
    case Encoder::Png:
      return WritePng(cmyk ? Displayed(picture) : picture, options.exif, options.bits, draft);
    case Encoder::Gif:
      ready = Displayed(picture);
      ready.pixels = EightBit(ready.pixels);
      if (Status upright = MakeUpright(ready.pixels, turn, space); !upright) return upright;
      return WriteGif(ready, draft);
    case Encoder::Tiff:
      return WriteTiff(picture, options.blackWhite, options.exif, draft);
    case Encoder::Bmp:
      // Grey is written as RGB, and a grey profile does not apply to RGB.
      if (cmyk || IsGrey(picture.pixels)) ready = Displayed(picture);
      if (options.bits < kDeepBmp) ready.pixels = EightBit(ready.pixels);
      if (options.bits != kAlphaBmp) ready.pixels = Flattened(ready.pixels, base::kWhite);
      ready.pixels = AsRgb(ready.pixels);
      if (Status upright = MakeUpright(ready.pixels, turn, space); !upright) return upright;
      return WriteBmp(ready, options.bits, draft);
  }
  return fault::UnknownType();
}

}  // namespace

Status EncodePicture(const Picture& picture, const EncodeOptions& options, const PixelSpace& space,
                     host::Draft& draft) {
  Status status = Write(picture, options, space, draft);
  return status ? CheckOutput(options.encoder, draft) : status;
}

}  // namespace quillon::imaging
