// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/disk_timeout.h"

#include "job/program.h"

namespace quillon::job {
namespace {

// In seconds. Most disks answer at once, and a window that stands still for so short a time is no matter.
constexpr double kFirstWait = 0.1;
constexpr double kPumpInterval = 0.01;

}  // namespace

DiskTimeout::DiskTimeout(Program& program)
    : program_(program), stopped_(program.flags.StopRequested), lately_(program.host.clock.Seconds()) {}

host::Status DiskTimeout::Await(const host::BackgroundCall& errand, const std::atomic<std::size_t>& heard) {
  std::size_t before = 0;
  for (double wait = kFirstWait; !errand.Done(wait); wait = kPumpInterval) {
    program_.host.pump.Turn();
    if (program_.flags.StopRequested && !stopped_) return {host::Problem::Stopped, "已停止"};
    const double now = program_.host.clock.Seconds();
    if (const std::size_t newest = heard; newest != before) {
      before = newest;
      lately_ = now;
    }
    if (now - lately_ >= host::kDiskTimeoutSeconds) return {host::Problem::Other, "没有响应"};
  }
  return host::Status::Ok();
}

}  // namespace quillon::job
