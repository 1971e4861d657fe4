// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/rounding.h"

#include <cmath>
#include <limits>

namespace quillon::base {
namespace {

int ClampToInt(double whole) {
  constexpr double kLowest = std::numeric_limits<int>::min();
  constexpr double kHighest = std::numeric_limits<int>::max();
  if (std::isnan(whole)) return 0;
  if (whole <= kLowest) return std::numeric_limits<int>::min();
  if (whole >= kHighest) return std::numeric_limits<int>::max();
  return static_cast<int>(whole);
}

// std::nearbyint would depend on the rounding mode of the calling thread.
double RoundTiesToEven(double value) {
  const double below = std::floor(value);
  const double fraction = value - below;
  if (fraction < 0.5) return below;
  if (fraction > 0.5) return below + 1;
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1;
}

}  // namespace

int R(double value) { return ClampToInt(RoundTiesToEven(value)); }

}  // namespace quillon::base
