// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_img_tool/pages.h"

#include <algorithm>

#include "base/number_text.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

constexpr double kPollInterval = 0.01;  // seconds

}  // namespace

std::string PageName(int page) {
  std::string digits = std::to_string(page);
  digits.insert(0, 4 - std::min<std::size_t>(4, digits.size()), '0');
  return digits + ".jpg";
}

host::Status FollowPages(Helper& helper, const ToolOrder& order, const Follow& follow, FollowEnd& end) {
  IdleTimeout timeout(helper);
  int done = 0;
  std::string known;
  end = FollowEnd::Part;
  while (done < follow.pages) {
    const bool busy = follow.onIdle(done + 1);
    const std::string text = helper.Get(order.application, order.key);
    if (text == "end" || (text.empty() && done > 0)) return host::Status::Ok();
    const int finished = std::min(base::ParseInteger(text).value_or(0), follow.pages);
    if (text != known) timeout.Restart();
    known = text;
    while (done < finished) {
      if (host::Status status = follow.onPage(++done); !status) return status;
      timeout.Restart();
    }
    if (done >= follow.pages) break;
    if (timeout.Expired()) return host::Status::Ok();
    if (!busy) helper.World().clock.Sleep(kPollInterval);
  }
  end = FollowEnd::All;
  return host::Status::Ok();
}

host::Status CheckReplace(Helper& helper, const std::string& target, Complete complete) {
  if (complete == Complete::Yes || !helper.Files().Stat(target)) return host::Status::Ok();
  return {host::Problem::Stopped, "页面不完整，原有文件保持不变"};
}

}  // namespace quillon::helpers
