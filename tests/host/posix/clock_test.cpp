// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/posix_clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace quillon::host::posix {
namespace {

TEST(PosixClock, ReturnsTheLocalTimeOfDay) {
  PosixClock clock;
  // Far from a jump of the day, both readings lie in the same second or in neighbouring ones.
  const double seconds = clock.SecondsOfDay();
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  double difference = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec - seconds;
  if (difference < -43200) difference += 86400;
  EXPECT_GT(difference, -1.5);
  EXPECT_LT(difference, 60);
  EXPECT_GE(seconds, 0);
  EXPECT_LT(seconds, 86400);
}

TEST(PosixClock, FollowsTheZone) {
  PosixClock clock;
  const char* const kept = std::getenv("TZ");
  const std::string zone = kept ? kept : "";
  setenv("TZ", "UTC0", 1);
  tzset();
  const double utc = clock.SecondsOfDay();
  setenv("TZ", "XYZ-3", 1);
  tzset();
  const double east = clock.SecondsOfDay();
  kept ? setenv("TZ", zone.c_str(), 1) : unsetenv("TZ");
  tzset();
  double ahead = east - utc;
  if (ahead < 0) ahead += 86400;
  EXPECT_NEAR(ahead, 3 * 3600, 60);
}

TEST(PosixClock, SleepsAtLeastAsLongAsAsked) {
  PosixClock clock;
  const double start = clock.Seconds();
  clock.Sleep(0.02);
  EXPECT_GE(clock.Seconds() - start, 0.02);
  clock.Sleep(0);
  clock.Sleep(-5);
}

}  // namespace
}  // namespace quillon::host::posix
