// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/qx_back_img/back_server.h"

int main(int count, char** arguments) {
  using namespace quillon::helpers;
  // It serves a whole batch.
  constexpr unsigned kDay = 24 * 3600;
  const auto work = [](Helper& helper) { return BackServer(helper).Serve(); };
  return RunHelper("QxBackImg", count, arguments, work, {.seconds = kDay});
}
