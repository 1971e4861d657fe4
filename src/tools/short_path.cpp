// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/short_path.h"

#include <string_view>

#include "base/path_text.h"

namespace quillon::tools {
namespace {

constexpr std::size_t kName = 8;
constexpr std::size_t kNumbered = 6;
constexpr std::size_t kExtension = 3;
constexpr std::string_view kRefused = "+,;=[]";

bool Continues(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Returns the first characters of UTF-8 text, without cutting one.
std::string First(const std::string& text, std::size_t characters) {
  std::size_t at = 0;
  while (at < text.size() && characters > 0) {
    ++at;
    while (at < text.size() && Continues(text[at])) ++at;
    --characters;
  }
  return text.substr(0, at);
}

// Returns the text without blanks and points, and with "_" for signs that short names must not contain.
std::string Cleaned(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == ' ' || c == '.') continue;
    out += kRefused.find(c) == std::string_view::npos ? c : '_';
  }
  return out;
}

}  // namespace

std::string ShortName(const std::string& name, int number) {
  const std::size_t point = name.rfind('.');
  const bool extended = point != std::string::npos && point > 0;
  const std::string stem = extended ? name.substr(0, point) : name;
  const std::string extension = extended ? name.substr(point + 1) : "";
  const std::string stemClean = Cleaned(stem);
  const std::string extensionClean = Cleaned(extension);
  const bool fits = !stem.empty() && stem == stemClean && extension == extensionClean && First(stem, kName) == stem &&
                    First(extension, kExtension) == extension && name.back() != '.';
  if (fits) return name;
  const std::string numbered = First(stemClean, kNumbered) + "~" + std::to_string(number);
  return base::JoinPath("", numbered, First(extensionClean, kExtension));
}

std::string ShortPath(const std::string& path, int number) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ShortName(path, number);
  return path.substr(0, slash + 1) + ShortName(path.substr(slash + 1), number);
}

}  // namespace quillon::tools
