// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/orders/order_text.h"

#include <algorithm>
#include <cstdint>

namespace quillon::helpers {
namespace {

using namespace std::string_view_literals;

constexpr std::uint64_t kMaxBytes = 64 << 20;
constexpr std::string_view kMark8 = "\xEF\xBB\xBF";
// A character above the basic plane is a high surrogate followed by a low one.
constexpr char32_t kHighFirst = 0xD800;
constexpr char32_t kLowFirst = 0xDC00;
constexpr char32_t kLowEnd = 0xE000;
constexpr char32_t kPlane = 0x10000;

void AppendUtf8(char32_t letter, std::string& out) {
  const auto byte = [&](char32_t value) { out += static_cast<char>(value); };
  if (letter < 0x80) return byte(letter);
  if (letter < 0x800) {
    byte(0xC0 | letter >> 6);
  } else {
    if (letter < kPlane) {
      byte(0xE0 | letter >> 12);
    } else {
      byte(0xF0 | letter >> 18);
      byte(0x80 | (letter >> 12 & 0x3F));
    }
    byte(0x80 | (letter >> 6 & 0x3F));
  }
  byte(0x80 | (letter & 0x3F));
}

enum class ByteOrder { Little, Big };

std::optional<std::string> DecodeUtf16(std::string_view bytes, ByteOrder order) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::string text;
  char32_t high = 0;
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    const char32_t unit = order == ByteOrder::Big ? first << 8 | second : second << 8 | first;
    const bool low = unit >= kLowFirst && unit < kLowEnd;
    if (low != (high != 0)) return std::nullopt;
    if (low) {
      AppendUtf8(kPlane + ((high - kHighFirst) << 10) + (unit - kLowFirst), text);
      high = 0;
    } else if (unit >= kHighFirst && unit < kLowFirst) {
      high = unit;
    } else {
      AppendUtf8(unit, text);
    }
  }
  if (high != 0) return std::nullopt;
  return text;
}

}  // namespace

std::optional<std::string> DecodeOrder(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE"sv)) return DecodeUtf16(bytes.substr(2), ByteOrder::Little);
  if (bytes.starts_with("\xFE\xFF"sv)) return DecodeUtf16(bytes.substr(2), ByteOrder::Big);
  if (bytes.starts_with(kMark8)) bytes.remove_prefix(kMark8.size());
  return std::string(bytes);
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.emplace_back(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

host::Status ReadOrder(const host::Files& files, const std::string& path, std::vector<std::string>& lines) {
  std::string bytes;
  if (host::Status read = files.ReadFile(path, bytes, kMaxBytes); !read) return read;
  const std::optional<std::string> text = DecodeOrder(bytes);
  if (!text || text->find('\0') != std::string::npos) return {host::Problem::Damaged, "命令文件已损坏"};
  lines = LinesOf(*text);
  return host::Status::Ok();
}

bool IsPlainPath(std::string_view path) {
  if (!path.starts_with('/')) return false;
  while (!path.empty()) {
    path.remove_prefix(1);
    const std::size_t end = std::min(path.find('/'), path.size());
    if (path.substr(0, end) == "..") return false;
    path.remove_prefix(end);
  }
  return true;
}

}  // namespace quillon::helpers
