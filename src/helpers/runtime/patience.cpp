// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/patience.h"

#include "host/posix/posix_instance.h"

namespace quillon::helpers {
namespace {

constexpr double kSeconds = 1800;

}  // namespace

Patience::Patience(Helper& helper) : world_(helper.World()), last_(world_.clock.Seconds()) {}

void Patience::Renew() { last_ = world_.clock.Seconds(); }

bool Patience::Over() {
  if (world_.clock.Seconds() - last_ <= kSeconds) return false;
  if (!host::posix::IsClaimed(world_.programFolder)) return true;
  Renew();
  return false;
}

}  // namespace quillon::helpers
