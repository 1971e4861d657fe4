// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/program.h"
#include "regions/frame/cut_frame.h"
#include "regions/lists/fmultcut.h"
#include "regions/timed/fcuttime.h"

namespace quillon::regions {

// The cuts whose regions the user draws, joined to a program. Lives shorter than that.
class Regions {
 public:
  explicit Regions(job::Program& program);
  Regions(const Regions&) = delete;
  Regions& operator=(const Regions&) = delete;

  CutFrame cutFrame;
  FMultCut fMultCut;
  FCutTime fCutTime;
};

}  // namespace quillon::regions
