// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number_text.h"

#include <charconv>
#include <cmath>

namespace quillon::base {
namespace {

std::string_view TrimBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// from_chars knows no leading plus.
std::string_view WithoutPlus(std::string_view text) {
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
  return plus ? text.substr(1) : text;
}

struct Parsed {
  double value = 0;
  bool found = false;
  bool whole = false;
};

Parsed ParseHead(std::string_view text) {
  const std::string ascii = ToHalfWidth(text);
  const std::string_view body = WithoutPlus(TrimBlanks(ascii));
  Parsed parsed;
  const auto [end, error] = std::from_chars(body.data(), body.data() + body.size(), parsed.value);
  parsed.found = error == std::errc() && std::isfinite(parsed.value);
  parsed.whole = parsed.found && end == body.data() + body.size();
  return parsed;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  const Parsed parsed = ParseHead(text);
  if (!parsed.whole) return std::nullopt;
  return parsed.value;
}

std::optional<int> ParseInteger(std::string_view text) {
  const std::string ascii = ToHalfWidth(text);
  const std::string_view body = WithoutPlus(TrimBlanks(ascii));
  int value = 0;
  const auto [end, error] = std::from_chars(body.data(), body.data() + body.size(), value);
  if (error != std::errc() || end != body.data() + body.size()) return std::nullopt;
  return value;
}

double LeadingNumber(std::string_view text) {
  const Parsed parsed = ParseHead(text);
  return parsed.found ? parsed.value : 0.0;
}

std::string NumberText(double value) {
  if (value == 0.0) return "0";
  char buffer[400];
  const auto format = std::fabs(value) < 1e15 ? std::chars_format::fixed : std::chars_format::general;
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, format);
  return error == std::errc() ? std::string(buffer, end) : std::string("0");
}

std::string ToHalfWidth(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    if (i + 2 < text.size() && byte(i) == 0xEF && (byte(i + 1) == 0xBC || byte(i + 1) == 0xBD)) {
      // U+FF01..U+FF5E are 0xFEE0 above their ASCII twins.
      const unsigned code = 0xF000u | ((byte(i + 1) & 0x3Fu) << 6) | (byte(i + 2) & 0x3Fu);
      if (code >= 0xFF01 && code <= 0xFF5E) {
        out.push_back(static_cast<char>(code - 0xFEE0));
        i += 2;
        continue;
      }
    }
    if (text.substr(i, 3) == "\u3000") {
      out.push_back(' ');
      i += 2;
      continue;
    }
    out.push_back(text[i]);
  }
  return out;
}

}  // namespace quillon::base
