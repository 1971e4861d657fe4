// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::tools {

// One order to DCTiffsMaker, value by value as its file has them, a line each, in this order.
struct OkList {
  std::string application;  // whose settings are told the progress
  std::string target;
  bool compress = false;  // JPEG inside the TIFF instead of LZW
  int quality = 0;        // of that: 92, 70, 50 for 0, 1, 2
  bool colour = false;
  bool grey = false;  // black and white where neither is set
  bool resize = false;
  int width = 0;
  int height = 0;
  bool cut = false;
  int left = 0;  // pixels that are taken off at each side
  int right = 0;
  int top = 0;
  int bottom = 0;
  bool cutByRule = false;  // only pictures whose name fits cutRule
  std::string cutRule;
  bool matchCase = false;
  bool cutAll = false;     // every picture, whatever the rule
  bool headFirst = false;  // pictures whose name fits headRule come first
  bool verify = false;
  std::string headRule;
  int dpi = 0;  // 0: the picture's own
  bool adjust = false;
  int brightness = 0;
  int contrast = 0;
  bool adjustHeads = false;  // only the pictures whose name fits headRule
  bool sharpen = false;
  std::vector<std::string> pictures;

  bool operator==(const OkList&) const = default;
};

// The content of its file. Nothing where a text cannot stand on a line of its own.
std::optional<std::string> OkListText(const OkList& list);

}  // namespace quillon::tools
