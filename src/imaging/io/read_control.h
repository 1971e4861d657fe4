// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <stop_token>
#include <string>

#include "host/files/disk_calls.h"

namespace quillon::imaging {

// How a picture's file is read by work that runs on a thread of its own. The defaults are right for a plain call.
struct ReadControl {
  // Makes the next read fail.
  std::stop_token stop = {};
  // Counts the reads of the file, if set.
  host::DiskCalls* calls = nullptr;
  // The bytes of the file, if they are in memory instead of on disk.
  std::shared_ptr<const std::string> content = {};
  // Threads that compute the picture's pixels; 0 for as many as the library takes by itself.
  int threads = 0;

  // Runs a call that the disk has to answer.
  template <class Call>
  auto Reading(Call call) const {
    const host::DiskCalls::Scope scope(calls);
    return call();
  }
};

}  // namespace quillon::imaging
