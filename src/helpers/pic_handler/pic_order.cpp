// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pic_handler/pic_order.h"

#include <algorithm>
#include <array>

#include "base/number_text.h"
#include "base/rounding.h"
#include "helpers/orders/order_text.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

// Options, each followed by one word, that do not affect the results made here.
constexpr std::array kIdle = {"-interlace", "-units", "-depth", "-colorspace"};

bool IsProfile(const std::string& path, const std::string& folder) {
  if (!path.starts_with(folder + "/")) return false;
  const std::string name = path.substr(folder.size() + 1);
  return !name.empty() && name != ".." && name.find('/') == std::string::npos;
}

host::Status ApplyOption(const std::string& option, const std::string& value, const std::string& profiles,
                         PicOrder& order) {
  if (option == "-profile") {
    if (!IsProfile(value, profiles)) return UsageError("配置文件不在 ColorConfigs 文件夹里：" + value);
    order.profiles.push_back(value);
  } else if (option == "-quality") {
    order.quality = std::clamp(base::ParseInteger(value).value_or(0), 0, 100);
  } else if (option == "-density") {
    order.dpi = std::max(0, base::R(base::LeadingNumber(value)));
  } else if (std::find(kIdle.begin(), kIdle.end(), option) == kIdle.end()) {
    return UsageError("不支持的选项：" + option);
  }
  return host::Status::Ok();
}

}  // namespace

host::Status ReadPicOrder(const Helper& helper, PicOrder& order) {
  const std::vector<std::string> words = helper.Words();
  if (words.size() < 2) return UsageError("需要源文件和目标文件");
  order = {words.front(), words.back(), {}};
  if (!IsPlainPath(order.source) || !IsPlainPath(order.target)) return UsageError("源文件和目标文件的路径必须完整");
  const std::string profiles = helper.AppPath("ColorConfigs");
  for (std::size_t i = 1; i + 1 < words.size(); ++i) {
    if (words[i] == "-verbose") continue;
    if (i + 2 == words.size()) return UsageError("选项没有值：" + words[i]);
    const std::string& option = words[i++];
    if (host::Status applied = ApplyOption(option, words[i], profiles, order); !applied) return applied;
  }
  return host::Status::Ok();
}

}  // namespace quillon::helpers
