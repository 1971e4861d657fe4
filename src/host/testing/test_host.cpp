// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/testing/test_host.h"

#include <filesystem>

namespace quillon::host::testing {

TestHost::TestHost()
    : disk(folder.Path("data"), folder.Path()),
      faults(disk),
      files(faults),
      host{boxes, dialogs, pump, clock, files, settings, processes, shell, screen, instance, folder.Path("app")} {
  std::filesystem::create_directories(host.programFolder);
  pump.EveryTurn([this] { clock.Advance(0.01); });
}

}  // namespace quillon::host::testing
