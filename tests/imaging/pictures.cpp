// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pictures.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <ostream>

#include "imaging/byte_text.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging::testing {

using vips::VImage;

std::vector<int> Sheet::Pixel(int x, int y) const {
  std::vector<int> pixel;
  for (int band = 0; band < bands; ++band) pixel.push_back(At(x, y, band));
  return pixel;
}

void PrintTo(const Sheet& sheet, std::ostream* out) {
  *out << sheet.width << " x " << sheet.height << " x " << sheet.bands << ":";
  for (std::size_t i = 0; i < std::min<std::size_t>(sheet.values.size(), 48); ++i) *out << ' ' << sheet.values[i];
}

Sheet PhotoLike(int width, int height, int bands, int most) {
  Sheet sheet{width, height, bands, {}};
  unsigned noise = 12345;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int band = 0; band < bands; ++band) {
        noise = noise * 1664525u + 1013904223u;
        const double wave = std::sin(x * 0.05 + band) * std::cos(y * 0.03 - band * 0.7);
        const double value = most * (0.5 + 0.4 * wave) + (noise >> 24) * most / 255.0 * 0.08 - most * 0.04;
        sheet.values.push_back(std::clamp(static_cast<int>(value), 0, most));
      }
    }
  }
  return sheet;
}

Sheet Plain(int width, int height, std::vector<int> pixel) {
  Sheet sheet{width, height, static_cast<int>(pixel.size()), {}};
  for (int i = 0; i < width * height; ++i) sheet.values.insert(sheet.values.end(), pixel.begin(), pixel.end());
  return sheet;
}

namespace {

template <class Sample>
VImage Made(const Sheet& sheet, VipsBandFormat format, VipsInterpretation kind) {
  EnsureVips();
  const std::vector<Sample> samples(sheet.values.begin(), sheet.values.end());
  const std::size_t size = samples.size() * sizeof(Sample);
  return VImage::new_from_memory_steal(g_memdup2(samples.data(), size), size, sheet.width, sheet.height, sheet.bands,
                                       format)
      .copy(VImage::option()->set("interpretation", kind))
      .copy_memory();
}

}  // namespace

VImage ToVips(const Sheet& sheet, VipsInterpretation kind) {
  return Made<unsigned char>(sheet, VIPS_FORMAT_UCHAR, kind);
}

VImage ToVipsDeep(const Sheet& sheet, VipsInterpretation kind) {
  return Made<unsigned short>(sheet, VIPS_FORMAT_USHORT, kind);
}

Sheet FromVips(const VImage& image) {
  const VImage ints = image.cast(VIPS_FORMAT_INT);
  std::size_t size = 0;
  const std::unique_ptr<void, decltype(&g_free)> bytes(ints.write_to_memory(&size), g_free);
  const auto* from = static_cast<const int*>(bytes.get());
  return {image.width(), image.height(), image.bands(), std::vector<int>(from, from + size / sizeof(int))};
}

VImage LoadPlainly(const std::string& path) {
  EnsureVips();
  return VImage::new_from_file(path.c_str());
}

Sheet ReadPlainly(const std::string& path) { return FromVips(LoadPlainly(path)); }

Sheet PixelsOf(const Image& image) { return FromVips(image.Data()->picture.pixels); }

std::string ProfileFor(const std::string& colours) {
  EnsureVips();
  VipsBlob* blob = nullptr;
  if (vips_profile_load(colours == "CMYK" ? "cmyk" : "p3", &blob, nullptr) != 0) throw vips::VError();
  std::size_t size = 0;
  const void* data = vips_blob_get(blob, &size);
  std::string bytes(static_cast<const char*>(data), size);
  vips_area_unref(VIPS_AREA(blob));
  if (colours == "GRAY") bytes.replace(16, 4, "GRAY");
  return bytes;
}

std::string ExifWithThumbnail(int orientation) {
  const std::string thumbnail = "\xFF\xD8\xFF\xDBTHUMB\xFF\xD9";
  ByteText block;
  block.U8({'I', 'I', 42, 0}).Little32(8);
  block.Little16(2);
  block.Little16(0x010F).Little16(2).Little32(7).Little32(38);  // maker's name
  block.Little16(0x0112).Little16(3).Little32(1).Little32(static_cast<unsigned>(orientation));
  block.Little32(46);  // next directory
  block.Text("Camera").Zeros(2);
  block.Little16(2);
  block.Little16(0x0201).Little16(4).Little32(1).Little32(76);
  block.Little16(0x0202).Little16(4).Little32(1).Little32(static_cast<unsigned>(thumbnail.size()));
  block.Little32(0);
  return block.Text(thumbnail).Bytes();
}

int Difference(const Sheet& a, const Sheet& b) {
  if (a.width != b.width || a.height != b.height || a.bands != b.bands) return 1000;
  int most = 0;
  for (std::size_t i = 0; i < a.values.size(); ++i) most = std::max(most, std::abs(a.values[i] - b.values[i]));
  return most;
}

Sheet Part(const Sheet& sheet, base::Rect rect) {
  Sheet part{rect.width, rect.height, sheet.bands, {}};
  for (int y = rect.top; y < rect.top + rect.height; ++y) {
    for (int x = rect.left; x < rect.left + rect.width; ++x) {
      const std::vector<int> pixel = sheet.Pixel(x, y);
      part.values.insert(part.values.end(), pixel.begin(), pixel.end());
    }
  }
  return part;
}

Image ServicesTest::Load(const std::string& path) {
  Image image;
  const Status status = services.LoadImageFromFile(path, image);
  EXPECT_TRUE(status) << path << ": " << status.Why();
  return image;
}

}  // namespace quillon::imaging::testing
