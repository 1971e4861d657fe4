// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/program.h"
#include "regions/frame/cut_frame.h"
#include "regions/lists/fmultcut.h"
#include "regions/timed/fcuttime.h"

namespace quillon::regions {

// The cuts whose regions the user draws: the manual frame, region lists and the watched folder.
// The constructor adds their windows to the program, so that they are found by name. The program must outlive the
// object.
class Regions {
 public:
  explicit Regions(job::Program& program) : cutFrame(program), fMultCut(program), fCutTime(program) {
    program.windows.Add(fMultCut);
    program.windows.Add(fCutTime);
  }
  Regions(const Regions&) = delete;
  Regions& operator=(const Regions&) = delete;

  CutFrame cutFrame;
  FMultCut fMultCut;
  FCutTime fCutTime;
};

}  // namespace quillon::regions
