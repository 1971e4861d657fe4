// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/cut_media/media_order.h"

#include <algorithm>

#include "base/path_text.h"

namespace quillon::helpers {
namespace {

// stem with the extension of path, where that is made of nothing but letters and digits.
std::string PlainName(const std::string& stem, const std::string& path) {
  const std::string extension = base::SplitPath(path).extension;
  const bool plain = std::all_of(extension.begin(), extension.end(), [](char sign) {
    return (sign >= '0' && sign <= '9') || (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z');
  });
  return plain && !extension.empty() ? stem + "." + extension : stem;
}

// Whether a word that stays as it is names a file outside the program folder, be it as an address.
bool LeadsElsewhere(const std::string& word) {
  return word.starts_with('/') || word.starts_with("../") || word.find("/../") != std::string::npos ||
         word.find(":/") != std::string::npos || word.find(":..") != std::string::npos;
}

}  // namespace

MediaOrder ReadMediaOrder(const std::vector<std::string>& words) {
  MediaOrder order{.words = words};
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool input = i > 0 && words[i - 1] == "-i";
    const bool whole = words[i].starts_with('/');
    if (input && whole) {
      order.inputs.push_back({words[i], PlainName("CutMediaIn" + std::to_string(order.inputs.size() + 1), words[i])});
      order.words[i] = order.inputs.back().name;
    } else if (i + 1 == words.size() && whole) {
      order.output = {words[i], PlainName("CutMediaOut", words[i])};
      order.words[i] = order.output.name;
    } else if (!input && LeadsElsewhere(words[i])) {
      order.stray = words[i];
    }
  }
  return order;
}

}  // namespace quillon::helpers
