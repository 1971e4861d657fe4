// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "host/files/files.h"
#include "imaging/types.h"

namespace quillon::imaging {

// What a thread does ahead. All but reads is guarded by the engine's mutex.
struct PrefetchTask {
  std::atomic<unsigned> reads = 0;  // counted up at the begin and at the end of each: odd during one
  std::thread::id thread;
  bool busy = false;
  bool abandoned = false;  // its thread hangs and counts no more

  // Seconds since it was first asked during the read under way; 0 where none is.
  double SilentFor(double now) {
    if (const unsigned newest = reads; newest != seen || newest % 2 == 0) {
      seen = newest;
      since = now;
    }
    return now - since;
  }

  unsigned seen = 0;
  double since = 0;
};

// All but request and stop is guarded by the engine's mutex, result while the crop is not running.
struct PrefetchCrop : PrefetchTask {
  enum class State { Waiting, Busy, Done, Failed };

  CropRequest request;
  std::optional<std::uint64_t> sourceSize;
  std::stop_source stop;
  State state = State::Waiting;
  bool running = false;       // more than the size of its source is looked at
  bool dropped = false;       // no longer planned
  bool awaited = false;       // the caller is waiting for it
  std::int64_t needs = 0;     // working memory it was refused
  std::int64_t admitted = 0;  // working memory it has
  std::int64_t held = 0;      // bytes of its result that are counted
  std::optional<host::FileFacts> before;
  std::string result;
};

struct PrefetchMeasure : PrefetchTask {
  std::string path;
};

using PrefetchCropPtr = std::shared_ptr<PrefetchCrop>;
using PrefetchCrops = std::vector<PrefetchCropPtr>;
using PrefetchMeasurePtr = std::shared_ptr<PrefetchMeasure>;

}  // namespace quillon::imaging
