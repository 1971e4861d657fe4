// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pic_handler/pic_order.h"

#include <algorithm>
#include <array>

#include "base/number_text.h"
#include "base/rounding.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

// Options, each followed by one word, that do not affect the results made here.
constexpr std::array kIdle = {"-interlace", "-units", "-depth", "-colorspace"};

void ApplyOption(const std::string& option, const std::string& value, PicOrder& order) {
  if (option == "-profile") {
    order.profiles.push_back(value);
  } else if (option == "-quality") {
    order.quality = std::clamp(base::ParseInteger(value).value_or(0), 0, 100);
  } else if (option == "-density") {
    order.dpi = std::max(0, base::R(base::LeadingNumber(value)));
  } else if (std::find(kIdle.begin(), kIdle.end(), option) == kIdle.end()) {
    order.plain = false;
  }
}

}  // namespace

host::Status ReadPicOrder(const std::vector<std::string>& words, PicOrder& order) {
  if (words.size() < 2) return UsageError("需要源文件和目标文件");
  order = {words.front(), words.back(), {words.begin() + 1, words.end() - 1}};
  for (const std::string& path : {order.source, order.target}) {
    if (path.empty() || path.starts_with('-')) return UsageError("需要源文件和目标文件");
  }
  for (std::size_t i = 0; i < order.options.size(); ++i) {
    if (order.options[i] == "-verbose") continue;
    const std::string option = order.options[i];
    if (++i == order.options.size()) {
      order.plain = false;
    } else {
      ApplyOption(option, order.options[i], order);
    }
  }
  return host::Status::Ok();
}

}  // namespace quillon::helpers
