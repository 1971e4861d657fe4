// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <memory>
#include <stop_token>
#include <string>

namespace quillon::imaging {

// How a picture's file is read by work that runs on a thread of its own. The defaults are right for a plain call.
struct ReadControl {
  // Makes the next read fail.
  std::stop_token stop = {};
  // Counted up when a read of the file begins and again when it ends: odd while the disk is waited for.
  std::atomic<unsigned>* reads = nullptr;
  // The bytes of the file, if they are in memory instead of on disk.
  std::shared_ptr<const std::string> content = {};
  // Threads that compute the picture's pixels; 0 for as many as the library takes by itself.
  int threads = 0;

  // Runs a call that the disk has to answer.
  template <class Call>
  auto Reading(Call call) const {
    if (reads) ++*reads;
    auto answer = call();
    if (reads) ++*reads;
    return answer;
  }
};

}  // namespace quillon::imaging
