// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/rows/lanczos.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quillon::imaging {
namespace {

constexpr double kLobes = 3;

}  // namespace

double Lanczos(double distance) {
  const double x = std::abs(distance) * std::numbers::pi;
  if (x < 1e-9) return 1;
  if (x >= kLobes * std::numbers::pi) return 0;
  return kLobes * std::sin(x) * std::sin(x / kLobes) / (x * x);
}

LanczosAxis::LanczosAxis(int source, int target) {
  // Sample i covers the interval [i, i + 1), so centres are mapped, not corners.
  const double step = static_cast<double>(source) / target;
  const double spread = std::max(1.0, step);
  places_.reserve(static_cast<std::size_t>(target));
  for (int i = 0; i < target; ++i) {
    const double centre = (i + 0.5) * step - 0.5;
    const int first = std::max(0, static_cast<int>(std::ceil(centre - kLobes * spread)));
    const int last = std::min(source - 1, static_cast<int>(std::floor(centre + kLobes * spread)));
    const std::size_t offset = weights_.size();
    double sum = 0;
    for (int at = first; at <= last; ++at) sum += Lanczos((at - centre) / spread);
    for (int at = first; at <= last; ++at) {
      weights_.push_back(static_cast<float>(Lanczos((at - centre) / spread) / sum));
    }
    places_.push_back({first, last - first + 1, offset});
  }
}

LanczosAxis::Taps LanczosAxis::At(int i) const {
  const Place& place = places_[static_cast<std::size_t>(i)];
  return {place.first, place.count, weights_.data() + place.offset};
}

}  // namespace quillon::imaging
