// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// How close resampled pictures come to a reference: a sinc of 12 lobes in double precision, rounded nowhere. Only what
// lies clear of the rim counts.
//
// usage: resample_quality middle PHOTO OUT.png            the middle of a photo, at most 600 x 400
//        resample_quality zoom PERCENT IN.png PEER.png    prints the PSNR of Quillon and of the peer's result, in dB
//        resample_quality turn DEGREES IN.png PEER.png    as well; the peer's canvas may have any size, centre on
//        centre
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

#include <vips/vips8>

#include "imaging/pixels/geometry.h"
#include "imaging/pixels/picture.h"

namespace {

using quillon::base::Size;
using vips::VImage;

constexpr int kLobes = 12;
constexpr int kBands = 3;
constexpr int kStride = 7;

double Sinc(double distance) {
  const double x = std::abs(distance) * std::numbers::pi;
  if (x < 1e-9) return 1;
  return x >= kLobes * std::numbers::pi ? 0 : kLobes * std::sin(x) * std::sin(x / kLobes) / (x * x);
}

struct Grid {
  int width = 0;
  int height = 0;
  std::vector<double> values;

  double At(int x, int y, int band) const {
    return values[(static_cast<std::size_t>(y) * static_cast<unsigned>(width) + static_cast<unsigned>(x)) * kBands +
                  static_cast<unsigned>(band)];
  }
};

Grid GridOf(const VImage& image) {
  const VImage rgb = image.extract_band(0, VImage::option()->set("n", kBands)).cast(VIPS_FORMAT_DOUBLE);
  std::size_t size = 0;
  auto* data = static_cast<double*>(rgb.write_to_memory(&size));
  Grid grid{rgb.width(), rgb.height(), std::vector<double>(data, data + size / sizeof(double))};
  g_free(data);
  return grid;
}

// The weights of the samples, from `first` on, at a place between them.
struct Weights {
  int first = 0;
  std::vector<double> values;

  Weights(double at, double spread, int size) {
    const double reach = kLobes * spread;
    first = std::max(0, static_cast<int>(std::ceil(at - reach)));
    for (int i = first; i <= at + reach && i < size; ++i) values.push_back(Sinc((i - at) / spread));
    double sum = 0;
    for (const double value : values) sum += value;
    for (double& value : values) value /= sum;
  }
};

// Returns the ideal value at a place between the samples. spread is the number of source pixels for one of the result.
double Ideal(const Grid& grid, double x, double y, int band, double spread) {
  const Weights across(x, spread, grid.width);
  const Weights down(y, spread, grid.height);
  double sum = 0;
  for (std::size_t j = 0; j < down.values.size(); ++j) {
    double row = 0;
    for (std::size_t i = 0; i < across.values.size(); ++i) {
      row += across.values[i] * grid.At(across.first + static_cast<int>(i), down.first + static_cast<int>(j), band);
    }
    sum += down.values[j] * row;
  }
  return std::clamp(sum, 0.0, 255.0);
}

class Error {
 public:
  void Add(double difference) {
    squares_ += difference * difference;
    ++count_;
  }
  double Psnr() const { return 10 * std::log10(255.0 * 255.0 * static_cast<double>(count_) / squares_); }

 private:
  double squares_ = 0;
  long count_ = 0;
};

struct Place {
  double x;
  double y;
};

// Returns the PSNR of a result in dB. placeOf returns the place in the source of a pixel of the result. Only every
// seventh pixel of a row is compared.
template <class PlaceOf>
double Psnr(const Grid& source, const Grid& result, double spread, PlaceOf placeOf) {
  const double clear = 4 * spread + 2;
  Error error;
  for (int y = 0; y < result.height; ++y) {
    for (int x = y % kStride; x < result.width; x += kStride) {
      const Place at = placeOf(x, y);
      if (at.x < clear || at.y < clear || at.x > source.width - clear || at.y > source.height - clear) continue;
      const int band = (x + y) % kBands;
      error.Add(result.At(x, y, band) - Ideal(source, at.x, at.y, band, spread));
    }
  }
  return error.Psnr();
}

void Zoom(double percent, const VImage& source, const VImage& peer) {
  const Size size{static_cast<int>(std::lround(source.width() * percent / 100)),
                  static_cast<int>(std::lround(source.height() * percent / 100))};
  const Grid grid = GridOf(source);
  const double across = static_cast<double>(grid.width) / size.width;
  const double down = static_cast<double>(grid.height) / size.height;
  const auto placeOf = [&](int x, int y) { return Place{(x + 0.5) * across - 0.5, (y + 0.5) * down - 0.5}; };
  const double spread = std::max(1.0, across);
  std::printf("%.2f %.2f\n", Psnr(grid, GridOf(quillon::imaging::Scaled(source, size)), spread, placeOf),
              Psnr(grid, GridOf(peer), spread, placeOf));
}

// off is the distance from the centre of the source to the centre of the result, in pixels.
double PsnrTurned(double degrees, const Grid& source, const Grid& result, Place off) {
  const double cosine = std::cos(degrees * std::numbers::pi / 180);
  const double sine = std::sin(degrees * std::numbers::pi / 180);
  return Psnr(source, result, 1, [&](int x, int y) {
    const double dx = x - (result.width - 1) / 2.0 + off.x;
    const double dy = y - (result.height - 1) / 2.0 + off.y;
    return Place{(source.width - 1) / 2.0 + cosine * dx - sine * dy,
                 (source.height - 1) / 2.0 + sine * dx + cosine * dy};
  });
}

// The canvas of the peer may be off by half a pixel; the best of nine positions counts.
void Turn(double degrees, const VImage& source, const VImage& peer) {
  const Grid grid = GridOf(source);
  const Grid other = GridOf(peer);
  double best = 0;
  for (const double x : {-0.5, 0.0, 0.5}) {
    for (const double y : {-0.5, 0.0, 0.5}) best = std::max(best, PsnrTurned(degrees, grid, other, {x, y}));
  }
  const VImage turned = quillon::imaging::Turned(source, degrees, quillon::base::kWhite);
  std::printf("%.2f %.2f\n", PsnrTurned(degrees, grid, GridOf(turned), {0, 0}), best);
}

int Usage() {
  std::fprintf(stderr, "usage: resample_quality middle PHOTO OUT.png | zoom PERCENT IN PEER | turn DEGREES IN PEER\n");
  return 2;
}

int Run(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  if (what == "middle" && argc == 4) {
    const VImage photo = VImage::new_from_file(argv[2]);
    const int width = std::min(600, photo.width());
    const int height = std::min(400, photo.height());
    photo.extract_area((photo.width() - width) / 2, (photo.height() - height) / 2, width, height).pngsave(argv[3]);
    return 0;
  }
  if (argc != 5 || (what != "zoom" && what != "turn")) return Usage();
  const VImage source = VImage::new_from_file(argv[3]);
  const VImage peer = VImage::new_from_file(argv[4]);
  what == "zoom" ? Zoom(std::atof(argv[2]), source, peer) : Turn(std::atof(argv[2]), source, peer);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  quillon::imaging::EnsureVips();
  try {
    return Run(argc, argv);
  } catch (const vips::VError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
