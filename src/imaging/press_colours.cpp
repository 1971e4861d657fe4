// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/press_colours.h"

#include "imaging/colours.h"
#include "imaging/services_parts.h"

namespace quillon::imaging {

using vips::VImage;

Status ConvertToCmyk(Image& image, const std::string& profile) {
  return OnPicture(image, [&](Picture& picture) {
    if (IsCmyk(picture.pixels)) return Status::Ok();
    Picture press;
    press.pixels = VImage::black(1, 1, VImage::option()->set("bands", 4))
                       .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_CMYK));
    if (ProfileFits(profile, press.pixels)) press.tags.profile = profile;
    Picture flat = picture;
    flat.pixels = Flattened(picture.pixels, base::kWhite);
    picture = InColoursOf(flat, press);
    picture.pixels = picture.pixels.copy_memory();
    return Status::Ok();
  });
}

}  // namespace quillon::imaging
