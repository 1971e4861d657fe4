// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_img_tool/pages.h"

#include <algorithm>

#include "base/number_text.h"
#include "helpers/runtime/patience.h"

namespace quillon::helpers {
namespace {

constexpr double kSecondsBetweenLooks = 0.01;

}  // namespace

std::string PageName(int page) {
  std::string digits = std::to_string(page);
  digits.insert(0, 4 - std::min<std::size_t>(4, digits.size()), '0');
  return digits + ".jpg";
}

host::Status FollowPages(Helper& helper, const ToolOrder& order, const Follow& follow, Followed& followed) {
  Patience patience(helper);
  int taken = 0;
  std::string known;
  followed = Followed::Part;
  while (taken < follow.pages) {
    const bool busy = follow.idle(taken + 1);
    const std::string text = helper.Get(order.application, order.key);
    if (text == "end" || (text.empty() && taken > 0)) return host::Status::Ok();
    const int finished = std::min(base::ParseInteger(text).value_or(0), follow.pages);
    if (text != known) patience.Renew();
    known = text;
    while (taken < finished) {
      if (host::Status status = follow.take(++taken); !status) return status;
      patience.Renew();
    }
    if (taken >= follow.pages) break;
    if (patience.Over()) return host::Status::Ok();
    if (!busy) helper.World().clock.Sleep(kSecondsBetweenLooks);
  }
  followed = Followed::All;
  return host::Status::Ok();
}

host::Status MayReplace(Helper& helper, const std::string& target, bool whole) {
  if (whole || !helper.Files().Stat(target)) return host::Status::Ok();
  return {host::Problem::Stopped, "页面不完整，原有文件保持不变"};
}

}  // namespace quillon::helpers
