// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace quillon::base {

// An opaque colour of 24 bits, packed as 0x00BBGGRR: red is the lowest byte, the highest byte is 0.
// Signed, because settings and order files store it as a signed decimal number.
struct Colour {
  std::int32_t value = 0;

  // Each channel ranges from 0 to 255.
  std::uint8_t Red() const { return static_cast<std::uint8_t>(value & 0xFF); }
  std::uint8_t Green() const { return static_cast<std::uint8_t>((value >> 8) & 0xFF); }
  std::uint8_t Blue() const { return static_cast<std::uint8_t>((value >> 16) & 0xFF); }
  bool operator==(const Colour&) const = default;
};

inline constexpr Colour kWhite{0xFFFFFF};

}  // namespace quillon::base
