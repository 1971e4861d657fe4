// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/bmp_light.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quillon::imaging {
namespace {

constexpr int kMost16 = 65535;
constexpr int kMost8 = 255;

// The curve of sRGB (IEC 61966-2-1) and its inverse, for 0 to 1.
double LightOf(double value) { return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4); }
double ValueOf(double light) { return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1 / 2.4) - 0.055; }

std::vector<std::uint16_t> MakeLights() {
  std::vector<std::uint16_t> lights(kMost16 + 1);
  for (int i = 0; i <= kMost16; ++i) {
    lights[static_cast<std::size_t>(i)] =
        static_cast<std::uint16_t>(std::lround(LightOf(static_cast<double>(i) / kMost16) * kBmpWhite));
  }
  return lights;
}

std::vector<unsigned char> MakeValues() {
  std::vector<unsigned char> values(kBmpWhite + 1);
  for (int i = 0; i <= kBmpWhite; ++i) {
    values[static_cast<std::size_t>(i)] =
        static_cast<unsigned char>(std::lround(ValueOf(static_cast<double>(i) / kBmpWhite) * kMost8));
  }
  return values;
}

}  // namespace

std::uint16_t BmpLightOf(std::uint16_t value) {
  static const std::vector<std::uint16_t> kLights = MakeLights();
  return kLights[value];
}

unsigned char ValueOfBmpLight(std::int16_t light) {
  static const std::vector<unsigned char> kValues = MakeValues();
  return kValues[static_cast<std::size_t>(std::clamp<int>(light, 0, kBmpWhite))];
}

std::uint16_t BmpAlphaOf(std::uint16_t alpha) {
  return static_cast<std::uint16_t>((alpha * kBmpWhite + kMost16 / 2) / kMost16);
}

unsigned char ValueOfBmpAlpha(std::int16_t alpha) {
  return static_cast<unsigned char>((std::clamp<int>(alpha, 0, kBmpWhite) * kMost8 + kBmpWhite / 2) / kBmpWhite);
}

}  // namespace quillon::imaging
