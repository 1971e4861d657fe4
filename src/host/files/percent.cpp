// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/percent.h"

#include <string_view>

namespace quillon::host {

std::string PercentEncoded(const std::string& path) {
  constexpr std::string_view kPlain = "-_.!~*'()/";
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string text;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    if (plain || kPlain.find(c) != std::string_view::npos) {
      text += c;
    } else {
      text += {'%', kHex[byte >> 4], kHex[byte & 15]};
    }
  }
  return text;
}

}  // namespace quillon::host
