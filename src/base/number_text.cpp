// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

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
  bool found = false;     // the text starts with a finite number
  std::string_view rest;  // what follows it
};

// Reads the number at the start of a text of ASCII digits. A plus sign is skipped.
Parsed ParseHead(std::string_view text, std::chars_format format) {
  const std::string_view body = WithoutPlus(text);
  Parsed parsed;
  const auto [end, error] = std::from_chars(body.data(), body.data() + body.size(), parsed.value, format);
  parsed.found = error == std::errc() && std::isfinite(parsed.value);
  parsed.rest = body.substr(static_cast<std::size_t>(end - body.data()));
  return parsed;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Returns whether three digits follow the comma and one to three others precede it, as in "1,500" or "-12,000 px".
bool SeparatesThousands(std::string_view text, std::size_t comma) {
  std::size_t first = comma;
  while (first > 0 && IsDigit(text[first - 1])) --first;
  std::size_t last = comma + 1;
  while (last < text.size() && IsDigit(text[last])) ++last;
  const std::size_t before = comma - first;
  return last - comma == 4 && before >= 1 && before <= 3 && text[first] != '0';
}

// Returns the text in ASCII, without blanks around it, and with a point for a decimal comma or a Chinese full stop.
std::string WithPoint(std::string_view text) {
  constexpr std::string_view kFullStop = "\u3002";
  std::string plain(TrimBlanks(ToHalfWidth(text)));
  if (const std::size_t at = plain.find(kFullStop); at != std::string::npos) plain.replace(at, kFullStop.size(), ".");
  const std::size_t comma = plain.find(',');
  if (comma != std::string::npos && !SeparatesThousands(plain, comma)) plain[comma] = '.';
  return plain;
}

constexpr std::pair<std::string_view, Unit> kUnits[] = {
    {"", Unit::None},           {"px", Unit::Pixel},      {"像素", Unit::Pixel},      {"mm", Unit::Millimetre},
    {"毫米", Unit::Millimetre}, {"cm", Unit::Centimetre}, {"厘米", Unit::Centimetre}, {"in", Unit::Inch},
    {"英寸", Unit::Inch},       {"\"", Unit::Inch},       {"%", Unit::Percent},
};

std::optional<Unit> UnitNamed(std::string_view name) {
  std::string lower(name);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  const auto* found =
      std::find_if(std::begin(kUnits), std::end(kUnits), [&lower](const auto& unit) { return unit.first == lower; });
  return found == std::end(kUnits) ? std::nullopt : std::optional(found->second);
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  const std::string plain = WithPoint(text);
  const Parsed parsed = ParseHead(plain, std::chars_format::fixed);
  if (!parsed.found || !parsed.rest.empty()) return std::nullopt;
  return parsed.value;
}

std::optional<Measure> ParseMeasure(std::string_view text) {
  const std::string plain = WithPoint(text);
  const Parsed parsed = ParseHead(plain, std::chars_format::fixed);
  const std::optional<Unit> unit = UnitNamed(TrimBlanks(parsed.rest));
  if (!parsed.found || !unit) return std::nullopt;
  return Measure{parsed.value, *unit};
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
  const std::string ascii = ToHalfWidth(text);
  const Parsed parsed = ParseHead(TrimBlanks(ascii), std::chars_format::general);
  return parsed.found ? parsed.value : 0.0;
}

std::string NumberText(double value) {
  if (value == 0.0 || !std::isfinite(value)) return "0";
  char buffer[400];
  const auto format = std::fabs(value) < 1e15 ? std::chars_format::fixed : std::chars_format::general;
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, format);
  return error == std::errc() ? std::string(buffer, end) : std::string("0");
}

std::string ShortNumberText(double value) {
  constexpr int kDigits = 6;
  if (value == 0.0 || !std::isfinite(value)) return "0";
  const int wholeDigits = static_cast<int>(std::floor(std::log10(std::fabs(value)))) + 1;
  const double scale = std::pow(10.0, std::max(0, kDigits - wholeDigits));
  return NumberText(std::isfinite(value * scale) ? std::round(value * scale) / scale : value);
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
