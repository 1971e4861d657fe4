// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pictures.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string_view>
#include <vips/vips8>

namespace quillon::helpers::testing {
namespace {

using vips::VImage;

void Ensure() {
  static const bool once = vips_init("test") == 0 && (vips_cache_set_max(0), true);
  if (!once) std::abort();
}

VImage Opened(const std::string& path, int page) {
  Ensure();
  const bool tiff = path.ends_with(".tif") || path.ends_with(".tiff");
  return tiff ? VImage::tiffload(path.c_str(), VImage::option()->set("page", page))
              : VImage::new_from_file(path.c_str());
}

// The library always writes a resolution. In a JFIF segment, if there is one, 1:1 then only means the aspect ratio.
void RemoveDensity(const std::string& path) {
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  std::array<char, 11> head{};
  file.read(head.data(), head.size());
  if (std::string_view(head.data() + 6, 5) != std::string_view("JFIF\0", 5)) return;
  file.seekp(13);
  file.write("\0\0\1\0\1", 5);
}

Pixels PixelsOf(const VImage& image) {
  const VImage bytes = image.cast(VIPS_FORMAT_UCHAR);
  std::size_t size = 0;
  const std::unique_ptr<void, decltype(&g_free)> memory(bytes.write_to_memory(&size), g_free);
  const auto* from = static_cast<const unsigned char*>(memory.get());
  return {image.width(), image.height(), image.bands(), {from, from + size}};
}

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

}  // namespace

std::vector<int> Pixels::At(int x, int y) const {
  const auto first = values.begin() + static_cast<std::ptrdiff_t>(y * width + x) * bands;
  return {first, first + bands};
}

Pixels Waves(int width, int height, int bands) {
  Pixels pixels{width, height, bands, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int band = 0; band < bands; ++band) {
        pixels.values.push_back(static_cast<int>(127 + 100 * std::sin(x * 0.04 + band) * std::cos(y * 0.03 - band)));
      }
    }
  }
  return pixels;
}

Pixels Plain(int width, int height, std::vector<int> pixel) {
  Pixels pixels{width, height, static_cast<int>(pixel.size()), {}};
  for (int i = 0; i < width * height; ++i) pixels.values.insert(pixels.values.end(), pixel.begin(), pixel.end());
  return pixels;
}

int Difference(const Pixels& a, const Pixels& b) {
  if (a.width != b.width || a.height != b.height || a.bands != b.bands) return 1000;
  int most = 0;
  for (std::size_t i = 0; i < a.values.size(); ++i) most = std::max(most, std::abs(a.values[i] - b.values[i]));
  return most;
}

void Save(const std::string& path, const Pixels& pixels, int dpi) {
  Ensure();
  std::vector<unsigned char> bytes(pixels.values.begin(), pixels.values.end());
  const bool cmyk = pixels.bands == 4 && path.ends_with(".jpg");
  const VipsInterpretation kind = cmyk                ? VIPS_INTERPRETATION_CMYK
                                  : pixels.bands <= 2 ? VIPS_INTERPRETATION_B_W
                                                      : VIPS_INTERPRETATION_sRGB;
  const VImage image =
      VImage::new_from_memory(bytes.data(), bytes.size(), pixels.width, pixels.height, pixels.bands, VIPS_FORMAT_UCHAR);
  const double perMillimetre = dpi > 0 ? dpi / 25.4 : 1;
  const VImage marked =
      image.copy(VImage::option()->set("interpretation", kind)->set("xres", perMillimetre)->set("yres", perMillimetre));
  if (path.ends_with(".jpg")) {
    // Its Exif block has a resolution too.
    marked.jpegsave(
        path.c_str(),
        VImage::option()->set("Q", 98)->set("subsample_mode", VIPS_FOREIGN_SUBSAMPLE_OFF)->set("strip", dpi == 0));
    if (dpi == 0) RemoveDensity(path);
  } else {
    marked.write_to_file(path.c_str());
  }
}

void SaveLarge(const std::string& pathAndOptions, int width, int height) {
  Ensure();
  const VImage pixel = VImage::black(1, 1, VImage::option()->set("bands", 3)) + std::vector<double>{200, 120, 40};
  pixel.cast(VIPS_FORMAT_UCHAR)
      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
      .embed(0, 0, width, height, VImage::option()->set("extend", VIPS_EXTEND_COPY))
      .write_to_file(pathAndOptions.c_str());
}

void SaveText(const std::string& path, const std::string& text) {
  Ensure();
  VImage::text(text.c_str(), VImage::option()->set("font", "Sans 48")->set("dpi", 96))
      .embed(40, 40, 900, 200)
      .invert()
      .write_to_file(path.c_str());
}

Pixels Load(const std::string& path, int page) { return PixelsOf(Opened(path, page)); }

int DpiOf(const std::string& path, int page) { return static_cast<int>(std::lround(Opened(path, page).xres() * 25.4)); }

int TiffPageCount(const std::string& path) {
  const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFOpen(path.c_str(), "r"));
  return tiff ? static_cast<int>(TIFFNumberOfDirectories(tiff.get())) : 0;
}

int TiffTag(const std::string& path, int page, unsigned tag) {
  const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFOpen(path.c_str(), "r"));
  std::uint16_t value = 0;
  const bool found = tiff && TIFFSetDirectory(tiff.get(), static_cast<tdir_t>(page)) == 1 &&
                     TIFFGetField(tiff.get(), tag, &value) == 1;
  return found ? value : -1;
}

Film LoadFilm(const std::string& path) {
  Ensure();
  const VImage film = VImage::gifload(path.c_str(), VImage::option()->set("n", -1));
  return {PixelsOf(film), film.get_typeof("n-pages") != 0 ? film.get_int("n-pages") : 1,
          film.get_typeof("page-height") != 0 ? film.get_int("page-height") : film.height(),
          film.get_array_int("delay")};
}

}  // namespace quillon::helpers::testing
