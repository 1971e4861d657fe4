// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/orders/gif_order.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace quillon::helpers {
namespace {

// Removes key and the number after it from the start of text. Returns false unless both are there.
bool ReadNumber(std::string_view& text, std::string_view key, int& number) {
  if (!text.starts_with(key)) return false;
  text.remove_prefix(key.size());
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < 0) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

// Reads the rectangle of a filter that begins with name and ends with end.
bool ReadFilter(std::string_view filter, const std::string& name, std::string_view end, base::Rect& window) {
  return ReadNumber(filter, name + "=x=", window.left) && ReadNumber(filter, ":y=", window.top) &&
         ReadNumber(filter, ":w=", window.width) && ReadNumber(filter, ":h=", window.height) && filter == end;
}

// Returns whether the words are those of pattern; an empty word of the pattern stands for any word.
bool Match(const std::vector<std::string>& words, const std::vector<std::string_view>& pattern) {
  return std::equal(words.begin(), words.end(), pattern.begin(), pattern.end(),
                    [](const std::string& word, std::string_view wanted) { return wanted.empty() || word == wanted; });
}

}  // namespace

std::optional<GifOrder> ReadGifOrder(const std::vector<std::string>& words) {
  const bool plain = Match(words, {"-i", "", "-vf", "", "-y", "-q:v", "0", ""});
  const bool palette = Match(words, {"-i", "", "-i", "", "-filter_complex", "", "-y", "-q:v", "0", ""});
  if (!plain && !palette) return std::nullopt;
  GifOrder order{.source = words[1], .target = words.back()};
  const std::string& filter = words[plain ? 3 : 5];
  const std::string_view end = plain ? "" : ",scale=-1:-1:flags=lanczos[x];[x][1:v]paletteuse";
  if (!ReadFilter(filter, "crop", end, order.window)) {
    if (!palette || !ReadFilter(filter, "delogo", end, order.window)) return std::nullopt;
    order.kind = GifOrder::Kind::RemoveLogo;
  }
  if (!order.source.starts_with('/') || !order.target.starts_with('/')) return std::nullopt;
  return order;
}

}  // namespace quillon::helpers
