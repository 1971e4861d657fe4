// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/tessa_exif_handler/exif_order.h"

#include <algorithm>
#include <string_view>

namespace quillon::helpers {
namespace {

constexpr std::string_view kMarker = "|Tessa批量处理系列软件";

}  // namespace

bool ReadExifOrder(const std::string& text, ExifOrder& order) {
  if (!text.ends_with(kMarker)) return false;
  const std::string names = text.substr(0, text.size() - kMarker.size());
  const std::size_t bar = names.find('|');
  if (std::count(names.begin(), names.end(), '|') != 1 || bar == 0 || bar + 1 == names.size()) return false;
  order = {names.substr(0, bar), names.substr(bar + 1)};
  return true;
}

}  // namespace quillon::helpers
