// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/program.h"
#include "regions/regions.h"

namespace quillon::suite {

// A program with every part that is built above the job. What runs the program makes one beside it, before its start,
// and lets it go first.
class Suite {
 public:
  explicit Suite(job::Program& owner) : program(owner), regions(owner) {}

  job::Program& program;
  regions::Regions regions;
};

}  // namespace quillon::suite
