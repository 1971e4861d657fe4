// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/utf16.h"

#include <cstddef>

#include "base/utf8.h"

namespace quillon::base {
namespace {

void Append(std::string& out, unsigned unit) {
  out += static_cast<char>(unit & 0xFF);
  out += static_cast<char>(unit >> 8);
}

struct Letter {
  unsigned value = 0;
  std::size_t length = 0;
};

Letter FirstOf(std::string_view bytes) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[i])); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (length > bytes.size()) return {};
  unsigned value = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) value = value << 6 | (byte(i) & 0x3F);
  return {value, length};
}

}  // namespace

std::string Utf16WithMark(std::string_view utf8) {
  std::string out = "\xFF\xFE";
  while (!utf8.empty()) {
    const auto [value, length] = FirstOf(utf8);
    if (length == 0 || !IsUtf8(utf8.substr(0, length))) break;
    if (value < 0x10000) {
      Append(out, value);
    } else {
      Append(out, 0xD800 + ((value - 0x10000) >> 10));
      Append(out, 0xDC00 + ((value - 0x10000) & 0x3FF));
    }
    utf8.remove_prefix(length);
  }
  return out;
}

}  // namespace quillon::base
