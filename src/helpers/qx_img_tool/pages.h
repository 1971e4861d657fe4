// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "helpers/qx_img_tool/operations.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// "0001.jpg" and on: at least four digits.
std::string PageName(int page);

// How following the program's page count came to its end.
enum class Followed { All, Part };

// Follows a key in which the program counts finished pages, calling take for each of them in order. idle is called at
// every look with the page that is awaited, and tells whether it had something to do. Part: the program began another
// run ("" after a count), said "end", or gave no sign for too long. A failure of take ends it too.
struct Follow {
  int pages = 0;
  std::function<host::Status(int page)> take;
  std::function<bool(int page)> idle = [](int) { return false; };
};
host::Status FollowPages(Helper& helper, const ToolOrder& order, const Follow& follow, Followed& followed);

// A run that ended early must not replace a file that is there already.
host::Status MayReplace(Helper& helper, const std::string& target, bool whole);

// Runs work, and tells in the order's key what it failed with.
template <class Work>
host::Status ReportingKey(Helper& helper, const ToolOrder& order, Work work) {
  host::Status status = work();
  if (!status) helper.Set(order.application, order.key, status.Why());
  return status;
}

}  // namespace quillon::helpers
