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

}  // namespace

MediaOrder ReadMediaOrder(const std::vector<std::string>& words) {
  MediaOrder order{.words = words};
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (!words[i].starts_with('/')) continue;
    if (i > 0 && words[i - 1] == "-i") {
      order.inputs.push_back({words[i], PlainName("CutMediaIn" + std::to_string(order.inputs.size() + 1), words[i])});
      order.words[i] = order.inputs.back().name;
    } else if (i + 1 == words.size()) {
      order.output = {words[i], PlainName("CutMediaOut", words[i])};
      order.words[i] = order.output.name;
    }
  }
  return order;
}

}  // namespace quillon::helpers
