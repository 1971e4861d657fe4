// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <vips/vips8>

#include "host/saver.h"
#include "host/testing/test_host.h"
#include "imaging/services.h"

namespace quillon::imaging::testing {

// A picture as an array of samples, pixel by pixel and row by row.
struct Sheet {
  int width = 0;
  int height = 0;
  int bands = 1;
  std::vector<int> values;

  int At(int x, int y, int band = 0) const {
    const int place = (y * width + x) * bands + band;
    return values[static_cast<std::size_t>(place)];
  }
  std::vector<int> Pixel(int x, int y) const;
  bool operator==(const Sheet&) const = default;
};

void PrintTo(const Sheet& sheet, std::ostream* out);

// Smooth colours with noise; no two regions are alike.
Sheet PhotoLike(int width, int height, int bands, int most = 255);

// The same pixel everywhere.
Sheet Plain(int width, int height, std::vector<int> pixel);

vips::VImage ToVips(const Sheet& sheet, VipsInterpretation kind = VIPS_INTERPRETATION_sRGB);
vips::VImage ToVipsDeep(const Sheet& sheet, VipsInterpretation kind = VIPS_INTERPRETATION_RGB16);
Sheet FromVips(const vips::VImage& image);

// Reads a png, gif, tiff or jpeg with libvips, without the code under test.
vips::VImage LoadPlainly(const std::string& path);
Sheet ReadPlainly(const std::string& path);

Sheet PixelsOf(const Image& image);

// An ICC profile: "RGB " (of a wide screen), "CMYK", or one that only says it is "GRAY".
std::string ProfileFor(const std::string& colours);

// An EXIF block with an orientation, a maker's name "Camera" and the thumbnail "\xFF\xD8\xFF\xDBTHUMB\xFF\xD9".
std::string ExifWithThumbnail(int orientation);

// The largest difference of any sample; 1000 when the sizes differ.
int Difference(const Sheet& a, const Sheet& b);

// The part of a sheet.
Sheet Part(const Sheet& sheet, base::Rect rect);

class ServicesTest : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return world.folder.Path(name); }
  Image Load(const std::string& path);

  host::testing::TestHost world;
  bool stopped = false;
  host::Saver saver{world.boxes, world.files, [this] { stopped = true; }};
  Services services{world.files, world.host.programFolder};
};

}  // namespace quillon::imaging::testing
