// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/command_text.h"

namespace quillon::helpers {

std::vector<std::string> Fields(std::string_view text) {
  std::vector<std::string> fields;
  if (text.empty()) return fields;
  for (std::size_t end; (end = text.find('\t')) != std::string_view::npos; text.remove_prefix(end + 1)) {
    fields.emplace_back(text.substr(0, end));
  }
  fields.emplace_back(text);
  return fields;
}

std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words;
  std::string word;
  bool begun = false;
  bool quoted = false;
  for (const char sign : text) {
    if (sign == '"') {
      quoted = !quoted;
      begun = true;
    } else if (sign != ' ' || quoted) {
      word += sign;
      begun = true;
    } else if (begun) {
      words.push_back(std::move(word));
      word.clear();
      begun = false;
    }
  }
  if (begun) words.push_back(std::move(word));
  return words;
}

}  // namespace quillon::helpers
