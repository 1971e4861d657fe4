// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::tools {

// An order for DCTiffsMaker. Its file has one line for each value, in this order.
struct OkList {
  std::string application;  // the settings that receive the progress
  std::string target;
  bool compress = false;  // JPEG inside the TIFF instead of LZW
  int quality = 0;        // of the JPEG: 0, 1, 2 for 92, 70, 50
  bool colour = false;
  bool grey = false;  // black and white if neither is set
  bool resize = false;
  int width = 0;
  int height = 0;
  bool cut = false;
  int left = 0;  // pixels to crop at each side
  int right = 0;
  int top = 0;
  int bottom = 0;
  bool cutByRule = false;  // crop only pictures whose name matches cutRule
  std::string cutRule;
  bool matchCase = false;
  bool cutAll = false;     // crop every picture, regardless of the rule
  bool headFirst = false;  // pictures whose name matches headRule come first
  bool verify = false;
  std::string headRule;
  int dpi = 0;  // 0 keeps that of the picture
  bool adjust = false;
  int brightness = 0;
  int contrast = 0;
  bool adjustHeads = false;  // adjust only the pictures whose name matches headRule
  bool sharpen = false;
  std::vector<std::string> pictures;

  bool operator==(const OkList&) const = default;
};

// Returns the content of its file; nullopt if a text contains a line break or a zero byte.
std::optional<std::string> OkListText(const OkList& list);

}  // namespace quillon::tools
