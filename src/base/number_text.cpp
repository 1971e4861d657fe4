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

// std::from_chars does not accept a leading plus. "+-1" and "++1" keep theirs, so that they stay invalid.
std::string_view WithoutPlus(std::string_view text) {
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
  return plus ? text.substr(1) : text;
}

// Returns the ASCII form of the full-width character at the start of the text, or 0 if there is none. All of them are
// three bytes long in UTF-8.
char HalfWidthForm(std::string_view text) {
  if (text.substr(0, 3) == "\u3000") return ' ';
  if (text.size() < 3 || text[0] != '\xEF') return 0;
  const auto second = static_cast<unsigned char>(text[1]);
  const auto third = static_cast<unsigned char>(text[2]);
  // U+FF01..U+FF3F are EF BC 81..BF, U+FF40..U+FF5E are EF BD 80..9E.
  if (second == 0xBC && third >= 0x81 && third <= 0xBF) return static_cast<char>(third - 0x60);
  if (second == 0xBD && third >= 0x80 && third <= 0x9E) return static_cast<char>(third - 0x20);
  return 0;
}

struct Parsed {
  double value = 0;
  bool found = false;  // the text starts with a finite number
  bool whole = false;  // and holds nothing else
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
  if (value == 0.0 || !std::isfinite(value)) return "0";
  char buffer[400];
  const auto format = std::fabs(value) < 1e15 ? std::chars_format::fixed : std::chars_format::general;
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, format);
  return error == std::errc() ? std::string(buffer, end) : std::string("0");
}

std::string ToHalfWidth(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const char ascii = HalfWidthForm(text);
    out.push_back(ascii != 0 ? ascii : text[0]);
    text.remove_prefix(ascii != 0 ? 3 : 1);
  }
  return out;
}

}  // namespace quillon::base
