// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/rect.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace quillon::base {
namespace {

// Rounding errors of sine and cosine may leave a side slightly above a whole number; such a side is not rounded up.
constexpr double kTolerance = 1e-6;

}  // namespace

std::string SizeText(Size size) { return std::to_string(size.width) + "x" + std::to_string(size.height); }

Rect Intersection(Rect a, Rect b) {
  const std::int64_t left = std::max(a.left, b.left);
  const std::int64_t top = std::max(a.top, b.top);
  const std::int64_t right = std::min(std::int64_t{a.left} + a.width, std::int64_t{b.left} + b.width);
  const std::int64_t bottom = std::min(std::int64_t{a.top} + a.height, std::int64_t{b.top} + b.height);
  if (right <= left || bottom <= top) return {};
  return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right - left),
          static_cast<int>(bottom - top)};
}

Size TurnedSize(Size size, double angle) {
  const double radians = std::fmod(angle, 360) * std::numbers::pi / 180;
  const double cosine = std::abs(std::cos(radians));
  const double sine = std::abs(std::sin(radians));
  // A side of at least one pixel remains even for an empty picture, and the upper bound keeps the cast to int defined.
  const auto up = [](double side) { return static_cast<int>(std::clamp(std::ceil(side - kTolerance), 1.0, 2e9)); };
  return {up(size.width * cosine + size.height * sine), up(size.width * sine + size.height * cosine)};
}

}  // namespace quillon::base
