// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "imaging/image.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Turns the colours of a picture into those of another device. screen and press are ICC files. A picture with a profile
// of its own goes from that to screen and on to press; one without is taken for screen; CMYK without one stays as it
// is. Perceptual, to the value what ImageMagick makes of these profiles.
struct ProfileRequest {
  std::string source;
  std::string destination;  // its extension tells the format; only jpg and tif hold CMYK, the others show it in sRGB
  std::string screen;
  std::string press;
  int quality = 0;  // of a jpeg, 1..100; 0: that of the source, or 92 where it tells none
  int dpi = 0;      // 0 keeps the source's
};

// The picture is streamed and not held whole. Missing, Damaged or Unsupported where a profile is none that serves; what
// stood at destination stays when it fails.
Status ConvertByProfiles(host::Files& files, const ProfileRequest& request, const Limits& limits = {});
// The same for a picture in memory, which stays as it is when that fails.
Status ConvertByProfiles(const host::Files& files, Image& image, const std::string& screen, const std::string& press);

}  // namespace quillon::imaging
