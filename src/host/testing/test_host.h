// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

#include "host/files/files.h"
#include "host/host.h"
#include "host/posix/posix_disk.h"
#include "host/testing/fakes.h"
#include "host/testing/faulty_disk.h"
#include "host/testing/scripted_boxes.h"
#include "host/testing/temp_folder.h"

namespace quillon::host::testing {

// A complete Host for a test: real files in a temporary folder, and doubles for everything else. The members are
// public, so that a test can script and inspect them:
//
//   TestHost world;
//   world.boxes.Answer("要覆盖吗", Reply::Yes);
//   world.faults.Set({.call = DiskCall::Write, .nth = 2, .error = ENOSPC});
//   RunSomething(world.host);
//   EXPECT_EQ(world.boxes.Count("完成"), 1);
//
// The program folder is "app" in the temporary folder. The trash is in "data" or, if that fails, at the top of the
// temporary folder. Every turn of the pump advances the clock by ten milliseconds, so that loops that wait by pumping
// end.
class TestHost {
 public:
  TestHost()
      : disk(folder.Path("data"), folder.Path()),
        faults(disk),
        files(faults),
        host{boxes, dialogs, pump, clock, files, settings, processes, shell, screen, instance, folder.Path("app")} {
    std::filesystem::create_directories(host.programFolder);
    pump.EveryTurn([this] { clock.Advance(0.01); });
  }

  TempFolder folder;
  posix::PosixDisk disk;
  FaultyDisk faults;
  Files files;
  ScriptedBoxes boxes;
  ScriptedDialogs dialogs;
  CountingPump pump;
  FakeClock clock;
  MemorySettings settings;
  ScriptedProcesses processes;
  RecordingShell shell;
  FixedScreen screen;
  FakeInstance instance;
  Host host;
};

}  // namespace quillon::host::testing
