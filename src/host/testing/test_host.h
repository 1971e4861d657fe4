// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"
#include "host/host.h"
#include "host/posix/posix_disk.h"
#include "host/testing/fakes.h"
#include "host/testing/faulty_disk.h"
#include "host/testing/scripted_boxes.h"
#include "host/testing/temp_folder.h"

namespace quillon::host::testing {

// A whole world for a test: real files in a folder of its own, everything else made up. Its members are there to be
// scripted and looked at:
//
//   TestHost world;
//   world.boxes.Answer("要覆盖吗", Reply::Yes);
//   world.faults.Set({.call = DiskCall::Write, .nth = 2, .error = ENOSPC});
//   RunSomething(world.host);
//   EXPECT_EQ(world.boxes.Count("完成"), 1);
//
// The program folder is "app" in the temporary folder, the trash lies under "data" or, where that one fails, at the top
// of the temporary folder. Every turn of the pump takes ten milliseconds of the clock, so that loops that wait by
// pumping come to their end.
class TestHost {
 public:
  TestHost();

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
