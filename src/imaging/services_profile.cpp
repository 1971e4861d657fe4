// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <memory>

#include "imaging/io/bytes.h"
#include "imaging/pixels/colours.h"
#include "imaging/services.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr std::uint64_t kLargestProfile = 64 << 20;

}  // namespace

Status Services::CheckProfile(const std::string& path, ProfileColours colours) {
  if (!parts_->files.IsFile(path)) return fault::NoProfile();
  std::shared_ptr<FileBytes> file;
  if (Status opened = FileBytes::Open(path, file); !opened) return opened;
  std::string profile(file->Size() <= kLargestProfile ? file->Size() : 0, '\0');
  const bool read = !profile.empty() && file->ReadAt(0, profile.data(), profile.size());
  const bool cmyk = colours == ProfileColours::Cmyk;
  if (!read || !ProfileFits(profile, cmyk ? RowLayout::Cmyk : RowLayout::Rgb)) return fault::NotAProfile();
  // The head may be valid in a damaged profile; only a conversion shows that the profile works.
  return Guarded(fault::NotAProfile(), [&] {
    const VImage dot = VImage::black(1, 1, VImage::option()->set("bands", 3))
                           .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    static_cast<void>(dot.icc_transform(path.c_str(), VImage::option()->set("input_profile", "srgb")).avg());
    return Status::Ok();
  });
}

}  // namespace quillon::imaging
