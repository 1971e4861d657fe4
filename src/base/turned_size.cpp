// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/turned_size.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quillon::base {
namespace {

// Sides that sine and cosine leave a hair above a whole number are that number.
constexpr double kHair = 1e-6;

}  // namespace

base::Size TurnedSize(base::Size size, double angle) {
  const double radians = std::fmod(angle, 360) * std::numbers::pi / 180;
  const double cosine = std::abs(std::cos(radians));
  const double sine = std::abs(std::sin(radians));
  const auto up = [](double side) { return static_cast<int>(std::clamp(std::ceil(side - kHair), 1.0, 2e9)); };
  return {up(size.width * cosine + size.height * sine), up(size.width * sine + size.height * cosine)};
}

}  // namespace quillon::base
