// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/path_text.h"

#include <algorithm>

namespace quillon::base {
namespace {

constexpr std::size_t kMinDigits = 2;

template <typename Change>
std::string MapBytes(std::string_view text, Change change) {
  std::string out(text);
  for (char& c : out) c = change(c);
  return out;
}

}  // namespace

PathParts SplitPath(std::string_view path) {
  PathParts parts;
  const auto slash = path.rfind('/');
  const std::string_view file = slash == std::string_view::npos ? path : path.substr(slash + 1);
  // The separator is kept for the call, so that the folder of "/name" is "/" and not "".
  if (slash != std::string_view::npos) parts.folder = TrimTrailingSeparator(path.substr(0, slash + 1));
  const auto point = file.rfind('.');
  const bool hasExtension = point != std::string_view::npos && point > 0 && file != "..";
  parts.name = std::string(hasExtension ? file.substr(0, point) : file);
  if (hasExtension) parts.extension = std::string(file.substr(point + 1));
  return parts;
}

std::string JoinPath(std::string_view folder, std::string_view entry) {
  std::string path(folder);
  if (!path.empty() && path.back() != '/') path += '/';
  path += entry;
  return path;
}

std::string JoinPath(std::string_view folder, std::string_view name, std::string_view extension) {
  std::string path = JoinPath(folder, name);
  if (!extension.empty()) path.append(".").append(extension);
  return path;
}

std::string TrimTrailingSeparator(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return std::string(path);
}

std::string WithoutPsd(std::string path) {
  const std::size_t slash = path.rfind('/');
  const std::size_t start = slash == std::string::npos ? 0 : slash + 1;
  const std::string lower = ToLowerAscii(path);
  for (std::size_t at = lower.find(".psd", start); at != std::string::npos; at = lower.find(".psd", at + 4)) {
    // Both extensions have four bytes, so positions found in the lower-case copy stay valid.
    path.replace(at, 4, path.compare(at, 4, ".PSD") == 0 ? ".JPG" : ".jpg");
  }
  return path;
}

std::string ToLowerAscii(std::string_view text) {
  return MapBytes(text, [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
}

std::string ToUpperAscii(std::string_view text) {
  return MapBytes(text, [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; });
}

bool NaturalLess(std::string_view left, std::string_view right) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  // Returns the digits at the start of text without leading zeros, and removes all of them from text.
  const auto popNumber = [&](std::string_view& text) {
    const auto* end = std::find_if_not(text.begin(), text.end(), isDigit);
    std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
  };
  std::string_view a = left;
  std::string_view b = right;
  while (!a.empty() && !b.empty()) {
    if (isDigit(a[0]) && isDigit(b[0])) {
      const std::string_view first = popNumber(a);
      const std::string_view second = popNumber(b);
      if (first.size() != second.size()) return first.size() < second.size();
      if (first != second) return first < second;
      continue;
    }
    const auto first = static_cast<unsigned char>(lower(a[0]));
    const auto second = static_cast<unsigned char>(lower(b[0]));
    if (first != second) return first < second;
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  return a.empty() && b.empty() ? left < right : a.empty();
}

std::string PercentEncoded(std::string_view path) {
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

std::string NumberedName(const std::string& name, std::size_t number, std::size_t count) {
  const std::string digits = std::to_string(number);
  const std::size_t width = std::max(kMinDigits, std::to_string(count).size());
  return name + "_" + std::string(width - digits.size(), '0') + digits;
}

}  // namespace quillon::base
