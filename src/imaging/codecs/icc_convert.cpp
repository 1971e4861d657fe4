// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/icc_convert.h"

#include <lcms2.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "base/path_text.h"
#include "imaging/codecs/encode.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr std::uint64_t kLargestProfile = 64U << 20;
constexpr std::size_t kHeadBytes = 256U << 10;
constexpr int kDefaultQuality = 92;

struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct EndTransform {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using Profile = std::unique_ptr<void, CloseProfile>;
using Transform = std::unique_ptr<void, EndTransform>;

// An ICC file and its content.
struct IccFile {
  std::string path;
  std::string bytes;

  Status Unusable() const {
    return {host::Problem::Unsupported, "配置文件不能使用：" + path.substr(path.rfind('/') + 1)};
  }
};

Status ReadIcc(const host::Files& files, const std::string& path, IccFile& icc) {
  icc.path = path;
  const Status read = files.ReadFile(path, icc.bytes, kLargestProfile);
  return read ? read : Status{read.GetProblem(), icc.Unusable().Why()};
}

Profile OpenProfile(const std::string& bytes) {
  return Profile(cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
}

// Returns the 8-bit pixel format of lcms for the colour space of a profile, or 0 for an unsupported one.
cmsUInt32Number PixelsOf(const Profile& profile) {
  switch (cmsGetColorSpace(profile.get())) {
    case cmsSigRgbData:
      return TYPE_RGB_8;
    case cmsSigCmykData:
      return TYPE_CMYK_8;
    case cmsSigGrayData:
      return TYPE_GRAY_8;
    default:
      return 0;
  }
}

// Owned by the image that it computes.
struct Conversion {
  VImage pixels;
  Transform transform;
};

int Convert(VipsRegion* out, void* sequence, void*, void* conversion, gboolean*) {
  const Transform& transform = static_cast<Conversion*>(conversion)->transform;
  auto* in = static_cast<VipsRegion*>(sequence);
  const VipsRect& area = out->valid;
  if (vips_region_prepare(in, &area) != 0) return -1;
  for (int y = area.top; y < area.top + area.height; ++y) {
    cmsDoTransform(transform.get(), VIPS_REGION_ADDR(in, area.left, y), VIPS_REGION_ADDR(out, area.left, y),
                   static_cast<cmsUInt32Number>(area.width));
  }
  return 0;
}

// Returns an image that converts its pixels lazily; it owns the transform. inks selects CMYK or RGB output.
VImage Transformed(const VImage& pixels, Transform transform, bool inks) {
  VImage image(vips_image_new());
  if (vips_image_pipelinev(image.get_image(), VIPS_DEMAND_STYLE_THINSTRIP, pixels.get_image(), nullptr) != 0) {
    throw vips::VError();
  }
  image.get_image()->Bands = inks ? 4 : 3;
  image.get_image()->Type = inks ? VIPS_INTERPRETATION_CMYK : VIPS_INTERPRETATION_sRGB;
  auto* kept = std::make_unique<Conversion>(Conversion{pixels, std::move(transform)}).release();
  g_object_set_data_full(G_OBJECT(image.get_image()), "quillon-colours", kept,
                         [](gpointer data) { delete static_cast<Conversion*>(data); });
  if (vips_image_generate(image.get_image(), vips_start_one, Convert, vips_stop_one, pixels.get_image(), kept) != 0) {
    throw vips::VError();
  }
  return image;
}

// Converts the colours of picture from its own profile to screen and on to press.
Status Apply(Picture& picture, const IccFile& screen, const IccFile& press) {
  picture.pixels = EightBit(Flattened(picture.pixels, base::kWhite));
  const bool hasProfile = ProfileFits(picture.tags.profile, picture.pixels);
  if (!hasProfile && IsCmyk(picture.pixels)) return Status::Ok();
  const Profile middle = OpenProfile(screen.bytes);
  const Profile last = OpenProfile(press.bytes);
  if (!middle || PixelsOf(middle) != TYPE_RGB_8) return screen.Unusable();
  const cmsUInt32Number outKind = last ? PixelsOf(last) : 0;
  if (outKind != TYPE_CMYK_8 && outKind != TYPE_RGB_8) return press.Unusable();
  if (!hasProfile) picture.pixels = AsRgb(picture.pixels);
  const Profile own = hasProfile ? OpenProfile(picture.tags.profile) : Profile();
  std::vector<cmsHPROFILE> chain;
  // lcms expects a profile in the middle of the chain twice: as the output of one step and the input of the next.
  if (own) chain.insert(chain.end(), {own.get(), middle.get()});
  chain.push_back(middle.get());
  chain.push_back(last.get());
  const cmsUInt32Number inKind = own ? PixelsOf(own) : TYPE_RGB_8;
  Transform transform(cmsCreateMultiprofileTransform(chain.data(), static_cast<cmsUInt32Number>(chain.size()), inKind,
                                                     outKind, INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE));
  if (!transform) return press.Unusable();
  picture.pixels = Transformed(picture.pixels, std::move(transform), outKind == TYPE_CMYK_8);
  picture.tags.profile = press.bytes;
  return Status::Ok();
}

// Returns the estimated quality of a JPEG from its quantisation tables, or 0 if it cannot be read.
int QualityOf(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  if (!file) return 0;
  std::string head(kHeadBytes, '\0');
  head.resize(std::fread(head.data(), 1, head.size(), file.get()));
  return JpegQuality(head);
}

}  // namespace

Status ConvertByProfiles(host::Files& files, const ProfileRequest& request, const Limits& limits) {
  IccFile screen;
  IccFile press;
  if (Status read = ReadIcc(files, request.screen, screen); !read) return read;
  if (Status read = ReadIcc(files, request.press, press); !read) return read;
  const std::optional<host::FileFacts> facts = files.Stat(request.source);
  if (facts && facts->kind != host::FileKind::File) return fault::NotAFile();
  EncodeOptions options{.quality = request.quality, .exif = Exif::Keep};
  options.encoder = EncoderFor(base::SplitPath(request.destination).extension);
  if (options.quality == 0) options.quality = QualityOf(request.source);
  if (options.quality == 0) options.quality = kDefaultQuality;
  return files.Save(request.destination, [&](host::Draft& draft) {
    OpenedPicture opened;
    const Status status = Guarded(fault::DamagedPicture(), [&] {
      if (Status open = OpenPicture(files, request.source, limits, {}, opened); !open) return open;
      Picture picture;
      picture.tags = opened.tags;
      if (Status read = ReadRows(opened, 0, opened.original.height, picture.pixels); !read) return read;
      if (request.dpi > 0) picture.tags.dpi = request.dpi;
      if (Status applied = Apply(picture, screen, press); !applied) return applied;
      if (Status written = EncodePicture(picture, options, {files, limits}, draft); !written) return written;
      return CheckRemainingRows(opened);
    });
    return !status && opened.fault && !opened.fault->Get() ? opened.fault->Get() : status;
  });
}

Status ConvertByProfiles(const host::Files& files, Image& image, const std::string& screen, const std::string& press) {
  IccFile screenIcc;
  IccFile pressIcc;
  if (Status read = ReadIcc(files, screen, screenIcc); !read) return read;
  if (Status read = ReadIcc(files, press, pressIcc); !read) return read;
  return OnPicture(image, [&](Picture& picture) {
    Picture inks = picture;
    if (Status applied = Apply(inks, screenIcc, pressIcc); !applied) return applied;
    inks.pixels = inks.pixels.copy_memory();
    picture = inks;
    return Status::Ok();
  });
}

}  // namespace quillon::imaging
