// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <limits>

namespace quillon::base {

// Returns value rounded to the nearest integer; ties go to the even neighbour (2.5 gives 2, 3.5 gives 4).
// Values beyond the range of int are clamped to its nearest end. NaN gives 0.
// This is the rounding of every pixel coordinate and length of the program.
inline int R(double value) {
  if (std::isnan(value)) return 0;
  // std::nearbyint would depend on the rounding mode of the calling thread.
  const double below = std::floor(value);
  const double fraction = value - below;
  const bool up = fraction > 0.5 || (fraction == 0.5 && std::fmod(below, 2.0) != 0.0);
  const double whole = up ? below + 1 : below;
  if (whole <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
  if (whole >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  return static_cast<int>(whole);
}

}  // namespace quillon::base
