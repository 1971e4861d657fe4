// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "helpers/frame/helper.h"

namespace quillon::helpers {

// One order to the TIFF maker, value by value as its file has them, a line each, in this order.
struct OkList {
  std::string application;  // whose settings are told the progress
  std::string target;
  bool compress = false;  // JPEG inside the TIFF instead of LZW
  int quality = 92;       // of that: 92, 70, 50 for the indexes 0, 1, 2
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
};

// Fails where the file is missing, torn, holds too few lines or names a target or picture by a path that may not be.
host::Status ReadOkList(const host::Files& files, const std::string& path, OkList& order);

// Whether the name of a picture, without folder and extension, fits a regular expression; a rule that is none fits the
// names that hold it. An empty rule fits none.
enum class Letters { AsTheyAre, UpperIsLower };
bool NameFits(const std::string& picture, const std::string& rule, Letters letters);

// Head pictures first, each kind in the order that it had.
void PutHeadsFirst(OkList& order);

}  // namespace quillon::helpers
