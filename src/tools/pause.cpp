// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/pause.h"

namespace quillon::tools {
namespace {

constexpr double kSecondsBetweenTurns = 0.005;

}  // namespace

void PauseSeconds(host::Host& host, float seconds) {
  const auto start = static_cast<float>(host.clock.SecondsOfDay());
  for (;;) {
    host.pump.Turn();
    const auto now = static_cast<float>(host.clock.SecondsOfDay());
    if (now < start || now - start >= seconds) return;
    host.clock.Sleep(kSecondsBetweenTurns);
  }
}

}  // namespace quillon::tools
