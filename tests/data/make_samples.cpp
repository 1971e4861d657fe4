// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Draws the sample pictures: the same bytes of every pixel at each run, nothing taken from anywhere.
#include <vips/vips.h>

#include <cstdio>
#include <string>
#include <vector>

#include "canvas.h"

namespace {

using quillon::samples::Canvas;
using quillon::samples::Pixel;

constexpr double kDotsPerMillimetre300 = 300 / 25.4;

// Hills under an evening sky, with the grain of a camera.
Canvas Landscape(int width, int height, unsigned seed) {
  Canvas canvas(width, height, {});
  canvas.Gradient({38, 74, 140}, {250, 190, 120});
  canvas.Disc(width * 0.68, height * 0.42, height * 0.07, {255, 244, 214});
  canvas.Hills(0.52, 0.10, {96, 110, 150}, seed);
  canvas.Hills(0.62, 0.14, {58, 84, 92}, seed + 1);
  canvas.Hills(0.78, 0.12, {28, 46, 34}, seed + 2);
  canvas.Grain(7, seed);
  return canvas;
}

// A head and shoulders before blurred lights.
Canvas Portrait(int width, int height, unsigned seed) {
  Canvas canvas(width, height, {});
  canvas.Gradient({60, 44, 70}, {26, 22, 34});
  for (int i = 0; i < 24; ++i) {
    const double x = width * canvas.Random(seed + 3 * i);
    const double y = height * 0.8 * canvas.Random(seed + 3 * i + 1);
    const double radius = width * (0.02 + 0.05 * canvas.Random(seed + 3 * i + 2));
    canvas.Glow(x, y, radius, {255, 200, 130}, 0.35);
  }
  canvas.Ellipse(width * 0.5, height * 1.02, width * 0.42, height * 0.34, {50, 62, 92});
  canvas.Ellipse(width * 0.5, height * 0.66, width * 0.10, height * 0.14, {206, 160, 134});
  canvas.Ellipse(width * 0.5, height * 0.42, width * 0.21, height * 0.19, {42, 28, 24});
  canvas.Ellipse(width * 0.5, height * 0.47, width * 0.17, height * 0.17, {226, 182, 154});
  canvas.Ellipse(width * 0.43, height * 0.45, width * 0.018, height * 0.010, {40, 30, 30});
  canvas.Ellipse(width * 0.57, height * 0.45, width * 0.018, height * 0.010, {40, 30, 30});
  canvas.Ellipse(width * 0.5, height * 0.56, width * 0.05, height * 0.010, {168, 84, 84});
  canvas.Grain(6, seed);
  return canvas;
}

// A scanned page: a heading, lines of strokes, a ruled table, slightly yellowed paper.
Canvas Page(int width, int height, unsigned seed) {
  Canvas canvas(width, height, {250, 247, 238});
  const int margin = width / 10;
  canvas.Writing(margin, height / 14, width - 2 * margin, height / 24, {30, 30, 36}, seed);
  const int line = height / 44;
  for (int row = 0; row < 20; ++row) {
    const int y = height / 6 + row * line * 3 / 2;
    const int end = row % 6 == 5 ? width / 2 : width - 2 * margin;
    canvas.Writing(margin, y, end, line, {44, 44, 50}, seed + 1 + static_cast<unsigned>(row));
  }
  const int tableTop = height * 7 / 8;
  for (int i = 0; i <= 4; ++i) {
    canvas.Box(margin, tableTop + i * height / 50, width - 2 * margin, 2, {90, 90, 90});
    canvas.Box(margin + i * (width - 2 * margin) / 4, tableTop, 2, height * 4 / 50, {90, 90, 90});
  }
  canvas.Grain(3, seed);
  return canvas;
}

// A round badge on a clear ground, with a soft edge.
Canvas Badge(int side) {
  Canvas canvas(side, side, {255, 255, 255, 0});
  const Pixel green = {24, 122, 96};
  const Pixel cream = {252, 246, 232};
  canvas.Disc(side * 0.5, side * 0.5, side * 0.46, green);
  canvas.Disc(side * 0.5, side * 0.5, side * 0.38, cream);
  canvas.Disc(side * 0.5, side * 0.5, side * 0.34, green);
  canvas.Ellipse(side * 0.5, side * 0.5, side * 0.12, side * 0.27, cream);
  canvas.Box(side * 99 / 200, side * 3 / 10, side / 100, side * 9 / 20, green);
  return canvas;
}

// Plates of flat colour, as a poster has them.
Canvas Poster(int width, int height) {
  const std::vector<Pixel> colours = {{230, 57, 70},  {241, 250, 238}, {168, 218, 220},
                                      {69, 123, 157}, {29, 53, 87},    {244, 162, 97}};
  Canvas canvas(width, height, {255, 255, 255});
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 3; ++column) {
      const Pixel colour = colours[static_cast<std::size_t>(row * 2 + column) % colours.size()];
      canvas.Box(column * width / 3, row * height / 4, width / 3 + 1, height / 4 + 1, colour);
      canvas.Disc((column + 0.5) * width / 3, (row + 0.5) * height / 4, height / 12.0,
                  colours[static_cast<std::size_t>(row + column + 4) % colours.size()]);
    }
  }
  canvas.Writing(width / 12, height * 9 / 10, width * 10 / 12, height / 20, {20, 20, 20}, 77);
  return canvas;
}

bool Fail(const std::string& path) {
  std::fprintf(stderr, "make_samples: cannot write %s: %s\n", path.c_str(), vips_error_buffer());
  return false;
}

// Through libvips; the kind of file follows from the extension.
bool Save(const Canvas& canvas, const std::string& path) {
  const std::vector<unsigned char> bytes = canvas.Bytes();
  const int bands = canvas.Clear() ? 4 : 3;
  VipsImage* raw =
      vips_image_new_from_memory(bytes.data(), bytes.size(), canvas.Width(), canvas.Height(), bands, VIPS_FORMAT_UCHAR);
  VipsImage* image = nullptr;
  bool saved = raw && vips_copy(raw, &image, "interpretation", VIPS_INTERPRETATION_sRGB, "xres", kDotsPerMillimetre300,
                                "yres", kDotsPerMillimetre300, nullptr) == 0;
  const bool jpeg = path.ends_with(".jpg");
  const bool tiff = path.ends_with(".tif");
  saved =
      saved && (jpeg   ? vips_jpegsave(image, path.c_str(), "Q", 88, nullptr)
                : tiff ? vips_tiffsave(image, path.c_str(), "compression", VIPS_FOREIGN_TIFF_COMPRESSION_LZW, nullptr)
                       : vips_image_write_to_file(image, path.c_str(), nullptr)) == 0;
  if (image) g_object_unref(image);
  if (raw) g_object_unref(raw);
  return saved || Fail(path);
}

bool SaveBmp(const Canvas& canvas, const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) return Fail(path);
  const std::vector<unsigned char> bytes = canvas.BmpBytes();
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return (std::fclose(file) == 0 && written) || Fail(path);
}

bool DrawAll(const std::string& folder) {
  return Save(Landscape(1600, 1067, 11), folder + "/山间日落.jpg") &&
         Save(Landscape(1800, 600, 41), folder + "/远山 全景.jpg") &&
         Save(Portrait(1067, 1600, 23), folder + "/人像.jpg") && Save(Page(1240, 1754, 31), folder + "/文稿.tif") &&
         Save(Page(827, 1169, 37), folder + "/扫描页.png") && Save(Badge(512), folder + "/徽章.png") &&
         Save(Poster(480, 640), folder + "/色块.gif") && SaveBmp(Poster(600, 800), folder + "/海报.bmp");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_samples FOLDER\n");
    return 2;
  }
  if (VIPS_INIT(argv[0]) != 0) return 1;
  const bool drawn = DrawAll(argv[1]);
  vips_shutdown();
  return drawn ? 0 : 1;
}
