// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbered_name.h"

#include <algorithm>

namespace quillon::base {
namespace {

constexpr std::size_t kLeastDigits = 2;

}  // namespace

std::string NumberedName(const std::string& name, std::size_t number, std::size_t count) {
  const std::string digits = std::to_string(number);
  const std::size_t width = std::max(kLeastDigits, std::to_string(count).size());
  return name + "_" + std::string(width - digits.size(), '0') + digits;
}

}  // namespace quillon::base
