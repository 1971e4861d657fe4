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
