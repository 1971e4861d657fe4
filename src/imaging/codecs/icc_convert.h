// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "imaging/image.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// One colour conversion from file to file. screen and press are paths of ICC profiles.
// Colours go from the profile of the picture to screen and from there to press. A picture without a profile is taken to
// have the profile screen. CMYK without a profile is not converted.
// The intent is perceptual; values equal those of ImageMagick with the same profiles.
struct ProfileRequest {
  std::string source;
  std::string destination;  // the extension selects the format; formats other than jpg and tif convert CMYK to sRGB
  std::string screen;       // RGB profile
  std::string press;        // RGB or CMYK profile
  int quality = 0;          // jpeg only, 1..100; 0 uses that of a source jpeg, or 92 if it is unknown
  int dpi = 0;              // 0 keeps the resolution of the source
};

// Converts the file strip by strip, without holding the picture in memory.
// Missing, Damaged or Unsupported: a profile cannot be used.
// If the call fails, an existing destination is not changed.
Status ConvertByProfiles(host::Files& files, const ProfileRequest& request, const Limits& limits = {});
// Converts a picture in memory. If the call fails, the image is not changed.
Status ConvertByProfiles(const host::Files& files, Image& image, const std::string& screen, const std::string& press);

}  // namespace quillon::imaging
