// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillon::base {

// A colour as 0x00BBGGRR in a signed 32-bit value.
struct Colour {
  std::int32_t value = 0;

  std::uint8_t Red() const { return static_cast<std::uint8_t>(value & 0xFF); }
  std::uint8_t Green() const { return static_cast<std::uint8_t>((value >> 8) & 0xFF); }
  std::uint8_t Blue() const { return static_cast<std::uint8_t>((value >> 16) & 0xFF); }
  bool operator==(const Colour&) const = default;
};

inline constexpr Colour kWhite{0xFFFFFF};

}  // namespace quillon::base
