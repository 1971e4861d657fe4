// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <ctime>
#include <thread>

#include "host/host.h"

namespace quillon::host::posix {

// The system clock. The time of day is that of the local time zone; Seconds() is monotonic.
class PosixClock final : public Clock {
 public:
  double SecondsOfDay() override {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    // A leap second (60) counts as second 59, which keeps the result below one day.
    const int second = local.tm_sec < 60 ? local.tm_sec : 59;
    return local.tm_hour * 3600 + local.tm_min * 60 + second + static_cast<double>(now.tv_nsec) / 1e9;
  }

  double Seconds() override {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
  }

  void Sleep(double seconds) override {
    if (seconds > 0) std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  }
};

}  // namespace quillon::host::posix
