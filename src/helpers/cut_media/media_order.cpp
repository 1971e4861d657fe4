// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/cut_media/media_order.h"

#include "base/path_text.h"

namespace quillon::helpers {
namespace {

constexpr const char* kAside = "CutMedia.out";

// A path as an address of a file, which FFmpeg does not look into any further.
std::string FileAddress(const std::string& path) { return path.starts_with('/') ? "file:" + path : path; }

}  // namespace

MediaOrder ReadMediaOrder(const std::vector<std::string>& words) {
  MediaOrder order{.words = words};
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i - 1] == "-i") order.words[i] = FileAddress(words[i]);
  }
  const bool named =
      !words.empty() && words.back().starts_with('/') && (words.size() < 2 || words[words.size() - 2] != "-i");
  if (!named) return order;
  order.output = words.back();
  order.words.pop_back();
  const std::string extension = base::SplitPath(order.output).extension;
  order.aside = base::JoinPath(".", kAside, extension).substr(2);
  return order;
}

}  // namespace quillon::helpers
