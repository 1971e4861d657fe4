// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::helpers::testing {

// Pixels of 8-bit samples, row by row.
struct Pixels {
  int width = 0;
  int height = 0;
  int bands = 3;
  std::vector<int> values;

  std::vector<int> At(int x, int y) const;
  bool operator==(const Pixels&) const = default;
};

// Different everywhere, smooth enough for JPEG.
Pixels Waves(int width, int height, int bands = 3);
Pixels Plain(int width, int height, std::vector<int> pixel);

// The largest difference of any sample; 1000 when the sizes differ.
int Difference(const Pixels& a, const Pixels& b);

// Written and read by the image library alone, in the format of the extension. A dpi of 0 means none. Four bands in a
// JPEG are CMYK.
void Save(const std::string& path, const Pixels& pixels, int dpi = 0);
Pixels Load(const std::string& path, int page = 0);
int DpiOf(const std::string& path, int page = 0);

// A picture of one colour, of any size. Options of the saver may follow the name: "a.tif[compression=lzw]".
void SaveLarge(const std::string& pathAndOptions, int width, int height);

// Black letters on white, large enough to be read.
void SaveText(const std::string& path, const std::string& text);

// A TIFF as its own library sees it.
int TiffPageCount(const std::string& path);
int TiffTag(const std::string& path, int page, unsigned tag);

// The frames of a GIF, on top of each other.
struct Film {
  Pixels pixels;
  int frames = 0;
  int height = 0;
  std::vector<int> milliseconds;
};
Film LoadFilm(const std::string& path);

}  // namespace quillon::helpers::testing
