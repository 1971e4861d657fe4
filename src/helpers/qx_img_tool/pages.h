// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "helpers/qx_img_tool/operations.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// Returns "0001.jpg" for page 1 and so on, with at least four digits.
std::string PageName(int page);

// How following the page count of the program ended: with all pages, or too early.
enum class FollowEnd { All, Part };

// Follows a key in which the program counts finished pages, and calls onPage for each of them in order.
// onIdle is called in each poll with the next expected page and returns whether it had something to do.
// Ends early (Part) if the program starts another run ("" after a count), writes "end" or sends nothing for too long.
// A failure of onPage ends it too.
struct Follow {
  int pages = 0;
  std::function<host::Status(int page)> onPage;
  std::function<bool(int page)> onIdle = [](int) { return false; };
};
host::Status FollowPages(Helper& helper, const ToolOrder& order, const Follow& follow, FollowEnd& end);

// Fails if the run ended early and target exists: an incomplete result must not replace a file.
enum class Complete { No, Yes };
host::Status CheckReplace(Helper& helper, const std::string& target, Complete complete);

// Runs work and writes the text of its failure into the key of the order.
template <class Work>
host::Status ReportingKey(Helper& helper, const ToolOrder& order, Work work) {
  host::Status status = work();
  if (!status) helper.Set(order.application, order.key, status.Why());
  return status;
}

}  // namespace quillon::helpers
