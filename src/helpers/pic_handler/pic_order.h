// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/status.h"

namespace quillon::helpers {

// A call of convert: a picture, options, and the picture to make.
struct PicOrder {
  std::string source;
  std::string target;
  std::vector<std::string> options;  // the words between

  // What the options say, as far as it is known here.
  bool plain = true;  // nothing else
  std::vector<std::string> profiles;
  int quality = 0;  // 1..100, 0: not told
  int dpi = 0;      // 0: not told
};

host::Status ReadPicOrder(const std::vector<std::string>& words, PicOrder& order);

}  // namespace quillon::helpers
