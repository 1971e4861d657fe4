// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/host.h"

namespace quillon::host::posix {

// The system clock. The time of day is that of the local time zone; Seconds() is monotonic.
class PosixClock final : public Clock {
 public:
  double SecondsOfDay() override;
  double Seconds() override;
  void Sleep(double seconds) override;
};

}  // namespace quillon::host::posix
