// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "base/rect.h"
#include "host/host.h"

namespace quillon::tools {

// Measures files by MediaInfo, in the helper MediaInfoT, which is started with the first file and again if it has
// ended. The functions may be called from any thread; files are measured one at a time.
class MediaInfo {
 public:
  // programFolder holds the helper's twin, which is run as it is.
  MediaInfo(host::Shell& shell, const std::string& programFolder);

  // Stores the size in pixels; on failure size is unchanged. keepWaiting is called every few milliseconds, and ends the
  // wait when it returns false; it may be empty.
  // Missing: the file or the helper is missing. Unsupported: MediaInfo reports no size.
  // Damaged: a side is 0, or the helper ended or used up its time over the file.
  // Stopped: keepWaiting returned false, or it is a call of keepWaiting that asks.
  host::Status Measure(const std::string& path, const host::Companion::KeepWaiting& keepWaiting, base::Size& size);

 private:
  host::Status Ask(const std::string& path, const host::Companion::KeepWaiting& keepWaiting, std::string& answer);

  host::Shell& shell_;
  const std::string program_;
  std::timed_mutex mutex_;
  std::atomic<std::thread::id> asking_;      // the thread that holds the mutex
  std::unique_ptr<host::Companion> helper_;  // from the first file on
};

}  // namespace quillon::tools
